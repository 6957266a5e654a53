#pragma once

#include "FileRenderPlan.h"

// Renders the planned files, several at once (each with its own plug-in
// instance), with a progress bar while it works. Each result or failure is
// reported as it happens; returns false when any file failed.
bool renderFiles (const std::vector<FileRender>& renders, const RenderOptions& options);
