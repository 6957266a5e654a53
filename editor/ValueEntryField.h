#pragma once

#include <juce_gui_basics/juce_gui_basics.h>

#include <functional>

// A small text field laid over a control for typing its value: Return hands
// the text over, Escape or leaving the field drops it. It sits in the
// control's parent so that it may be wider than the control; once done it
// hides and the control has the focus again.
class ValueEntryField : public juce::TextEditor
{
public:
    ValueEntryField();

    // Shows the field centred on `control` holding `text`: all of it selected
    // when `selectWholeText`, else with the caret after it, ready to type on.
    void open (juce::Component& control, const juce::String& text, bool selectWholeText);

    // Receives the text on Return, after the field has closed.
    std::function<void (const juce::String&)> onEntered;

    static constexpr int width = 96, height = 15;

private:
    void close (bool refocusControl);

    juce::Component::SafePointer<juce::Component> control;
};
