#include "SystemFocus.h"

#if defined(__linux__)
 #include <X11/Xatom.h>
 #include <X11/Xlib.h>

void giveSystemFocus (juce::ComponentPeer& peer)
{
    static Display* const display = XOpenDisplay (nullptr);

    if (display == nullptr)
        return;

    const auto window = (Window) peer.getNativeHandle();
    static const Atom nudge = XInternAtom (display, "QUORLANE_TEST_NUDGE", False);
    const long value = 1;

    XSetInputFocus (display, window, RevertToParent, CurrentTime);
    XChangeProperty (display, window, nudge, XA_INTEGER, 32, PropModeReplace, (const unsigned char*) &value, 1);
    XSync (display, False);
}
#else
void giveSystemFocus (juce::ComponentPeer& peer)
{
    peer.grabFocus();
}
#endif
