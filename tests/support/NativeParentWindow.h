#pragma once

// A plain top-level window of the platform's own kind (an HWND on Windows, an
// X11 window elsewhere) for a plug-in editor to open inside, as a host gives
// one through the VST2 interface.
class NativeParentWindow
{
public:
    NativeParentWindow();
    ~NativeParentWindow();

    NativeParentWindow (const NativeParentWindow&) = delete;
    NativeParentWindow& operator= (const NativeParentWindow&) = delete;

    // What a VST2 host passes with effEditOpen; null when no window could be made.
    void* handle() const noexcept { return window; }

    // Handles whatever the window system has queued, as a host's event loop does.
    void dispatchEvents();

private:
    void* window = nullptr;
    void* display = nullptr;
};
