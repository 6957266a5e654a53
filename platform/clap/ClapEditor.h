#pragma once

#include <clap/ext/gui.h>
#include <clap/host.h>

#include <memory>

namespace juce { class AudioProcessor; }

// The plug-in's editor in a window of the host's: an X11 window on Linux, an
// HWND on Windows, never floating. Its size is fixed for a given scale and
// zoom; the host's scale (set_scale) multiplies the user's zoom, and when
// either changes the size, the host is asked to resize its window. Sizes are
// in the window system's pixels. Every call comes on the host's main thread
// and is run on JUCE's message thread.
class ClapEditor
{
public:
    ClapEditor (juce::AudioProcessor& processor, const clap_host_t& host);
    ~ClapEditor();

    // False when the processor made no editor.
    bool hasEditor() const;

    static const char* windowApi();

    bool setScale (double scale);
    void getSize (uint32_t& width, uint32_t& height) const;
    bool setParent (const clap_window_t& window);
    void setVisible (bool shouldBeVisible);

private:
    class Holder;
    std::unique_ptr<Holder> holder;
};
