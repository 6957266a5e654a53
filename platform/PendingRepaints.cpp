#include "PendingRepaints.h"

#include <juce_gui_basics/juce_gui_basics.h>

void drawPendingRepaints()
{
   #if JUCE_WINDOWS
    // Every window of this plug-in's: the editor and any browser or dialog it opened.
    for (int i = 0; i < juce::ComponentPeer::getNumPeers(); ++i)
        juce::ComponentPeer::getPeer (i)->performAnyPendingRepaintsNow();
   #endif
}
