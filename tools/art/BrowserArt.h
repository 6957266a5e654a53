#pragma once

#include "PanelArt.h"

// The preset browser's image buttons, keys like the panel's, drawn from the
// browser's own button table. `scale` as for drawPanelArt.
std::vector<ArtFile> drawBrowserArt (float scale);
