#include "OptionsPanel.h"

namespace
{
    const juce::Colour panelBackground (0xff232224);
}

OptionsPanel::OptionsPanel()
    : juce::TabbedComponent (juce::TabbedButtonBar::TabsAtTop)
{
    setTabBarDepth (26);
    setOutline (0);
    setColour (backgroundColourId, panelBackground);

    // The bar would keep Tab among its own tabs; screen readers still see it as a group.
    getTabbedButtonBar().setFocusContainerType (FocusContainerType::focusContainer);
}

juce::TabBarButton* OptionsPanel::createTabButton (const juce::String& tabName, int tabIndex)
{
    auto* button = juce::TabbedComponent::createTabButton (tabName, tabIndex);
    button->setWantsKeyboardFocus (true);
    return button;
}

void OptionsPanel::addPage (const juce::String& title, std::unique_ptr<juce::Component> page)
{
    addTab (title, panelBackground, page.release(), true);
}

void OptionsPanel::drawPageText (juce::Graphics& g, const PageText& text, int pageWidth)
{
    const juce::Colour textColour (0xffbef6ff);

    g.setColour (textColour);
    g.setFont (getFont (16.0f).boldened());
    g.drawText (text.title, 20, 12, 300, 22, juce::Justification::centredLeft);

    g.setFont (getFont (13.0f));
    for (const auto& [label, top] : text.labels)
        g.drawText (label, 20, top, 140, 24, juce::Justification::centredLeft);

    g.setColour (textColour.withAlpha (0.75f));
    g.drawFittedText (text.note, juce::Rectangle<int> (20, text.noteTop, pageWidth - 40, 40), juce::Justification::topLeft, 2);
}

juce::Font OptionsPanel::getFont (float fontHeight)
{
    static const bool hasTahoma = juce::Font::findAllTypefaceNames().contains ("Tahoma");
    return hasTahoma ? juce::Font ("Tahoma", fontHeight, juce::Font::plain)
                     : juce::Font (juce::Font::getDefaultSansSerifFontName(), fontHeight, juce::Font::plain);
}
