#pragma once

// JUCE's Windows windows hand their repaints to the system only at a
// display's vertical blank. Where none arrives (Wine's Direct3D, a session
// without a display adapter) an open editor would never redraw what changed:
// a knob following automation stays where it was. Called from the editor's
// timer, this draws whatever is pending at once; elsewhere it does nothing.
void drawPendingRepaints();
