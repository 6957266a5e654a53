#include "DisplayAccessibilityHandler.h"

#include "GFXDisplay.h"

namespace
{
    class DisplayValue : public juce::AccessibilityTextValueInterface
    {
    public:
        explicit DisplayValue (GFXDisplay& d) : display (d) {}

        bool isReadOnly() const override { return display.isReadOnly(); }
        juce::String getCurrentValueAsString() const override { return display.getShownText(); }
        void setValueAsString (const juce::String& text) override { display.enterText (text); }

    private:
        GFXDisplay& display;
    };

    juce::AccessibilityRole roleOf (const GFXDisplay& display, bool opens)
    {
        if (display.isReadOnly())
            return juce::AccessibilityRole::label;

        return opens ? juce::AccessibilityRole::comboBox : juce::AccessibilityRole::editableText;
    }

    juce::AccessibilityActions actionsOf (GFXDisplay& display, bool opens)
    {
        if (display.isReadOnly())
            return {};

        if (opens)
            return juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [&display] { display.open(); })
                                               .addAction (juce::AccessibilityActionType::showMenu, [&display] { display.open(); });

        return juce::AccessibilityActions().addAction (juce::AccessibilityActionType::press, [&display] { display.beginEditing(); });
    }
}

DisplayAccessibilityHandler::DisplayAccessibilityHandler (GFXDisplay& display, bool opensSomething)
    : juce::AccessibilityHandler (display, roleOf (display, opensSomething), actionsOf (display, opensSomething),
                                  { std::make_unique<DisplayValue> (display) }),
      opens (opensSomething)
{
}

juce::AccessibleState DisplayAccessibilityHandler::getCurrentState() const
{
    const auto state = AccessibilityHandler::getCurrentState();
    return opens ? state.withExpandable() : state;
}
