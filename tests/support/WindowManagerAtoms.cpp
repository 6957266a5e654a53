#include "WindowManagerAtoms.h"

#if defined(__linux__)
 #include <X11/Xlib.h>

 #include <iterator>

void createWindowManagerAtoms()
{
    // The connection stays open for the whole run: Xvfb forgets its atoms
    // when its last client leaves.
    static Display* const display = XOpenDisplay (nullptr);

    if (display == nullptr)
        return;

    static const char* names[] = { "WM_PROTOCOLS", "WM_TAKE_FOCUS", "WM_DELETE_WINDOW", "_NET_WM_PING",
                                   "WM_CHANGE_STATE", "WM_STATE", "_NET_WM_WINDOW_TYPE", "_NET_WM_STATE",
                                   "_NET_WM_STATE_HIDDEN", "_NET_WM_WINDOW_TYPE_NORMAL",
                                   "_NET_WM_WINDOW_TYPE_DIALOG", "_NET_WM_STATE_SKIP_TASKBAR",
                                   "_NET_WM_STATE_ABOVE", "_MOTIF_WM_HINTS", "_NET_FRAME_EXTENTS" };
    Atom atoms[std::size (names)];
    XInternAtoms (display, const_cast<char**> (names), (int) std::size (names), False, atoms);
    XSync (display, False);
}
#else
void createWindowManagerAtoms() {}
#endif
