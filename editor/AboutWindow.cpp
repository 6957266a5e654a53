#include "AboutWindow.h"

#include "OptionsPanel.h"

namespace
{
    class AboutContent : public juce::Component
    {
    public:
        // The text is painted; a screen reader reads it from the title and description.
        AboutContent (const juce::String& t, const juce::String& body) : title (t), text (body)
        {
            setTitle (title);
            setDescription (text);
            setSize (360, 190);
        }

        void paint (juce::Graphics& g) override
        {
            g.fillAll (juce::Colour (0xff232224));
            auto area = getLocalBounds().reduced (20, 16);

            g.setColour (juce::Colour (0xffbef6ff));
            g.setFont (OptionsPanel::getFont (28.0f).boldened());
            g.drawText (title, area.removeFromTop (36), juce::Justification::centredLeft);

            g.setColour (juce::Colour (0xffd8dadf));
            g.setFont (OptionsPanel::getFont (14.0f));
            g.drawFittedText (text, area.withTrimmedTop (8), juce::Justification::topLeft, 8);
        }

    private:
        std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override
        {
            return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::staticText);
        }

        juce::String title, text;
    };
}

void AboutWindow::show (const juce::String& title, const juce::String& text, juce::Component* parent)
{
    juce::DialogWindow::LaunchOptions options;
    options.content.setOwned (new AboutContent (title, text));
    options.dialogTitle = "About " + title;
    options.dialogBackgroundColour = juce::Colour (0xff232224);
    options.componentToCentreAround = parent;
    options.escapeKeyTriggersCloseButton = true;
    options.useNativeTitleBar = false;
    options.resizable = false;
    options.launchAsync();
}
