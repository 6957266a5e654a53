#pragma once

#include <cstdint>
#include <vector>

// The pixels a window shows in a rectangle of its own coordinates, child
// windows of other programs' toolkits included (a plug-in's editor embedded
// in a host's window): an X11 Window or a Windows HWND. Empty when the window
// system cannot be reached.
std::vector<uint32_t> windowPixels (void* nativeWindow, int x, int y, int width, int height);

// How many pixels differ between two captures of the same rectangle.
int pixelsChanged (const std::vector<uint32_t>& before, const std::vector<uint32_t>& after);
