#pragma once

#include "PanelArt.h"

// The application's icon at the sizes desktops look for, each drawn afresh
// at its size, stored as "quorlane-<size>.png".
std::vector<ArtFile> drawIconArt();
