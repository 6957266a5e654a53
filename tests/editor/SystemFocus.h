#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// Gives a window the system's keyboard focus, as a click on it would. Under X
// the focus event may be read into JUCE's queue during an unrelated round trip
// and then wait there for the next event; a property change on the window,
// made from a connection of our own, sends one along.
void giveSystemFocus (juce::ComponentPeer& peer);
