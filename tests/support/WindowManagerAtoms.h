#pragma once

// A bare X server (Xvfb, as the tests run under) has none of the atoms that a
// desktop's window manager creates, and JUCE, outside a standalone app, lets
// the resulting X error end the process when a top-level window opens. The
// tests create those atoms first, as any desktop session would have. Does
// nothing where there is no X display.
void createWindowManagerAtoms();
