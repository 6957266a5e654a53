#pragma once

#include "BitmapFont.h"
#include "GUIController.h"

// A parameter's text drawn in a bitmap font. An embedded text editor (with
// the skin's caret and background colours) does the editing; Return or
// leaving the field commits the text to the parameter, Escape restores it.
class GFXDisplay : public juce::Component,
                   public GUIController
{
public:
    explicit GFXDisplay (const juce::String& name);
    ~GFXDisplay() override;

    juce::Component& getComponent() override { return *this; }

    const BitmapFont& getFont() const noexcept { return font; }
    juce::TextEditor& getTextEditor() noexcept { return textEditor; }
    juce::String getShownText() const { return textEditor.getText(); }

    void resized() override;
    void paintOverChildren (juce::Graphics& g) override;

protected:
    // The bound parameter's text as the display shows it.
    virtual juce::String getParameterText() const;

    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override;

private:
    void commit();

    juce::TextEditor textEditor;
    BitmapFont font;
    juce::Rectangle<int> skinBounds;
};
