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
}

void OptionsPanel::addPage (const juce::String& title, std::unique_ptr<juce::Component> page)
{
    addTab (title, panelBackground, page.release(), true);
}

juce::Font OptionsPanel::getFont (float fontHeight)
{
    static const bool hasTahoma = juce::Font::findAllTypefaceNames().contains ("Tahoma");
    return hasTahoma ? juce::Font ("Tahoma", fontHeight, juce::Font::plain)
                     : juce::Font (juce::Font::getDefaultSansSerifFontName(), fontHeight, juce::Font::plain);
}
