#pragma once

#include "BitmapFont.h"
#include "GUIController.h"

// A parameter's text drawn in a bitmap font. An embedded text editor (with
// the skin's caret and background colours) does the editing: a click, or
// Return while the display has the keyboard focus, starts an edit; Return or
// leaving the field commits the text to the parameter, Escape restores it.
// While not editing, the arrow keys fire the "onPrevious" and "onNext"
// actions and F4 or Alt+Down the "onOpen" action (the preset display steps
// presets and opens the browser with them).
class GFXDisplay : public juce::Component,
                   public GUIController
{
public:
    explicit GFXDisplay (const juce::String& name);
    ~GFXDisplay() override;

    juce::Component& getComponent() override { return *this; }

    void assignAction (const juce::String& type, int eventId, const juce::String& eventName) override;

    const BitmapFont& getFont() const noexcept { return font; }
    juce::TextEditor& getTextEditor() noexcept { return textEditor; }
    juce::String getShownText() const { return textEditor.getText(); }

    bool isReadOnly() const { return textEditor.isReadOnly(); }
    bool isEditing() const { return textEditor.hasKeyboardFocus (false); }
    void beginEditing();

    // Commits a text as if typed (an editable display only).
    void enterText (const juce::String& text);

    // Fires the "onOpen" action; false when the display has none.
    bool open();

    void resized() override;
    void paintOverChildren (juce::Graphics& g) override;
    bool keyPressed (const juce::KeyPress& key) override;

protected:
    // The bound parameter's text as the display shows it.
    virtual juce::String getParameterText() const;

    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

private:
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    void commit();
    void stopEditing();

    juce::TextEditor textEditor;
    BitmapFont font;
    juce::Rectangle<int> skinBounds;
    int previousEvent = noEvent, nextEvent = noEvent, openEvent = noEvent;
};
