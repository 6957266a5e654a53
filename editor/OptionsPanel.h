#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

// The options shown below the skin: one tab per page, the pages added by the
// editors of the chain. Every tab is a stop of the Tab key and opens its page
// on Space or Return; Tab then goes on into the page.
class OptionsPanel : public juce::TabbedComponent
{
public:
    OptionsPanel();

    void addPage (const juce::String& title, std::unique_ptr<juce::Component> page);

    // Tahoma where installed; otherwise the closest sans-serif face.
    static juce::Font getFont (float height);

    // The text of a settings page: a bold title, a label left of each row's
    // control (at the given tops) and a dimmer note under them.
    struct PageText
    {
        juce::String title;
        std::vector<std::pair<juce::String, int>> labels;
        juce::String note;
        int noteTop;
    };

    static void drawPageText (juce::Graphics& g, const PageText& text, int pageWidth);

    static constexpr int height = 280;

private:
    juce::TabBarButton* createTabButton (const juce::String& tabName, int tabIndex) override;
};
