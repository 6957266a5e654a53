#include "WindowPixels.h"

#include <algorithm>

#if defined(_WIN32)
 #include <windows.h>

// From the screen, where the embedded child windows are drawn over the parent.
std::vector<uint32_t> windowPixels (void* nativeWindow, int x, int y, int width, int height)
{
    POINT origin { x, y };

    if (! ClientToScreen (static_cast<HWND> (nativeWindow), &origin))
        return {};

    auto* screen = GetDC (nullptr);
    auto* memory = CreateCompatibleDC (screen);
    auto* bitmap = CreateCompatibleBitmap (screen, width, height);
    auto* previous = SelectObject (memory, bitmap);
    BitBlt (memory, 0, 0, width, height, screen, origin.x, origin.y, SRCCOPY);
    SelectObject (memory, previous);

    BITMAPINFO info {};
    info.bmiHeader.biSize = sizeof (info.bmiHeader);
    info.bmiHeader.biWidth = width;
    info.bmiHeader.biHeight = -height;
    info.bmiHeader.biPlanes = 1;
    info.bmiHeader.biBitCount = 32;
    info.bmiHeader.biCompression = BI_RGB;
    std::vector<uint32_t> pixels ((size_t) (width * height));
    GetDIBits (memory, bitmap, 0, (UINT) height, pixels.data(), &info, DIB_RGB_COLORS);

    DeleteObject (bitmap);
    DeleteDC (memory);
    ReleaseDC (nullptr, screen);
    return pixels;
}
#else
 #include <X11/Xlib.h>
 #include <X11/Xutil.h>

 #include <cstdint>

std::vector<uint32_t> windowPixels (void* nativeWindow, int x, int y, int width, int height)
{
    auto* display = XOpenDisplay (nullptr);

    if (display == nullptr)
        return {};

    std::vector<uint32_t> pixels;
    const auto window = static_cast<Window> (reinterpret_cast<std::uintptr_t> (nativeWindow));

    // What the screen shows there: child windows of the same depth (the
    // plug-in's own) are part of the picture.
    if (auto* image = XGetImage (display, window, x, y, (unsigned) width, (unsigned) height, AllPlanes, ZPixmap))
    {
        pixels.reserve ((size_t) (width * height));

        for (int row = 0; row < height; ++row)
            for (int column = 0; column < width; ++column)
                pixels.push_back ((uint32_t) XGetPixel (image, column, row));

        XDestroyImage (image);
    }

    XCloseDisplay (display);
    return pixels;
}
#endif

int pixelsChanged (const std::vector<uint32_t>& before, const std::vector<uint32_t>& after)
{
    if (before.size() != after.size())
        return (int) std::max (before.size(), after.size());

    int changed = 0;

    for (size_t i = 0; i < before.size(); ++i)
        changed += before[i] != after[i] ? 1 : 0;

    return changed;
}
