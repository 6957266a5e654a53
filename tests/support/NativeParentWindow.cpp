#include "NativeParentWindow.h"

#if defined(_WIN32)
 #include <windows.h>

NativeParentWindow::NativeParentWindow()
{
    WNDCLASSW windowClass {};
    windowClass.lpfnWndProc = DefWindowProcW;
    windowClass.hInstance = GetModuleHandleW (nullptr);
    windowClass.lpszClassName = L"QuorlaneTestHost";
    RegisterClassW (&windowClass);

    window = CreateWindowExW (0, windowClass.lpszClassName, L"Test host", WS_OVERLAPPEDWINDOW | WS_VISIBLE,
                              0, 0, 800, 400, nullptr, nullptr, windowClass.hInstance, nullptr);
}

NativeParentWindow::~NativeParentWindow()
{
    if (window != nullptr)
        DestroyWindow (static_cast<HWND> (window));
}

void NativeParentWindow::dispatchEvents()
{
    MSG message;

    while (PeekMessageW (&message, nullptr, 0, 0, PM_REMOVE))
    {
        TranslateMessage (&message);
        DispatchMessageW (&message);
    }
}
#else
 #include <X11/Xlib.h>

 #include <cstdint>

NativeParentWindow::NativeParentWindow()
{
    auto* x = XOpenDisplay (nullptr);

    if (x == nullptr)
        return;

    display = x;
    const auto id = XCreateSimpleWindow (x, DefaultRootWindow (x), 0, 0, 800, 400, 0, 0, 0);
    XMapWindow (x, id);
    XSync (x, False);
    window = reinterpret_cast<void*> (static_cast<std::uintptr_t> (id));
}

NativeParentWindow::~NativeParentWindow()
{
    if (display == nullptr)
        return;

    auto* x = static_cast<Display*> (display);
    XDestroyWindow (x, static_cast<Window> (reinterpret_cast<std::uintptr_t> (window)));
    XCloseDisplay (x);
}

void NativeParentWindow::dispatchEvents()
{
    if (auto* x = static_cast<Display*> (display))
    {
        XSync (x, False);

        while (XPending (x) > 0)
        {
            XEvent event;
            XNextEvent (x, &event);
        }
    }
}
#endif
