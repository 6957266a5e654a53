#include "ClapEditor.h"

#include "ClapMessageLoop.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <cmath>
#include <cstring>

namespace
{
    // The window system's pixels per pixel of JUCE's; JUCE scales its own
    // windows by the desktop's scale, so only what the host asks beyond that
    // goes into the editor.
    double displayScale()
    {
        const auto* display = juce::Desktop::getInstance().getDisplays().getPrimaryDisplay();
        return display != nullptr && display->scale > 0.0 ? display->scale : 1.0;
    }
}

// The component JUCE puts in the host's window, holding the editor at its
// transformed size.
class ClapEditor::Holder : public juce::Component
{
public:
    Holder (juce::AudioProcessor& p, const clap_host_t& h) : processor (p), host (h)
    {
        if (host.get_extension != nullptr)
            hostGui = static_cast<const clap_host_gui_t*> (host.get_extension (&host, CLAP_EXT_GUI));

        editor.reset (processor.createEditorIfNeeded());

        if (editor != nullptr)
        {
            editor->setScaleFactor (1.0f);
            addAndMakeVisible (*editor);
            fitEditor();
        }

        setOpaque (true);
    }

    ~Holder() override
    {
        if (editor != nullptr)
        {
            removeChildComponent (editor.get());
            processor.editorBeingDeleted (editor.get());
            editor.reset();
        }
    }

    void setHostScale (double scale)
    {
        if (editor != nullptr)
            editor->setScaleFactor ((float) (scale / displayScale()));
    }

    juce::Point<uint32_t> getPixelSize() const
    {
        const auto scale = displayScale();
        return { (uint32_t) std::lround (getWidth() * scale), (uint32_t) std::lround (getHeight() * scale) };
    }

    bool hasEditor() const noexcept { return editor != nullptr; }

    void paint (juce::Graphics& g) override { g.fillAll (juce::Colours::black); }

    // A new scale, zoom or the options shown below the skin: the holder
    // takes the editor's new size and asks the host for it.
    void childBoundsChanged (juce::Component*) override
    {
        const auto before = getPixelSize();
        fitEditor();
        const auto after = getPixelSize();

        if (after != before && isOnDesktop() && hostGui != nullptr && hostGui->request_resize != nullptr)
            hostGui->request_resize (&host, after.x, after.y);
    }

private:
    void fitEditor()
    {
        if (editor == nullptr)
            return;

        const auto bounds = editor->getBoundsInParent();
        editor->setTopLeftPosition (0, 0);
        setSize (bounds.getWidth(), bounds.getHeight());
    }

    juce::AudioProcessor& processor;
    const clap_host_t& host;
    const clap_host_gui_t* hostGui = nullptr;
    std::unique_ptr<juce::AudioProcessorEditor> editor;
};

ClapEditor::ClapEditor (juce::AudioProcessor& processor, const clap_host_t& host)
{
    ClapMessageLoop::runOnMessageThread ([&] { holder = std::make_unique<Holder> (processor, host); });
}

ClapEditor::~ClapEditor()
{
    ClapMessageLoop::runOnMessageThread ([this] { holder.reset(); });
}

bool ClapEditor::hasEditor() const
{
    return holder != nullptr && holder->hasEditor();
}

const char* ClapEditor::windowApi()
{
   #if JUCE_WINDOWS
    return CLAP_WINDOW_API_WIN32;
   #else
    return CLAP_WINDOW_API_X11;
   #endif
}

bool ClapEditor::setScale (double scale)
{
    if (! (scale > 0.0) || ! std::isfinite (scale))
        return false;

    ClapMessageLoop::runOnMessageThread ([this, scale] { holder->setHostScale (scale); });
    return true;
}

void ClapEditor::getSize (uint32_t& width, uint32_t& height) const
{
    ClapMessageLoop::runOnMessageThread ([&]
    {
        const auto size = holder->getPixelSize();
        width = size.x;
        height = size.y;
    });
}

bool ClapEditor::setParent (const clap_window_t& window)
{
    if (window.api == nullptr || std::strcmp (window.api, windowApi()) != 0 || window.ptr == nullptr)
        return false;

    bool attached = false;
    ClapMessageLoop::runOnMessageThread ([&]
    {
        holder->setVisible (false);
        holder->addToDesktop (0, window.ptr);
        holder->setVisible (true);
        attached = holder->isOnDesktop();
    });
    return attached;
}

void ClapEditor::setVisible (bool shouldBeVisible)
{
    ClapMessageLoop::runOnMessageThread ([this, shouldBeVisible] { holder->setVisible (shouldBeVisible); });
}
