#include "GFXDisplay.h"

#include "BasePluginEditor.h"
#include "SkinValues.h"

GFXDisplay::GFXDisplay (const juce::String& name)
    : juce::Component (name)
{
    textEditor.setBorder ({});
    textEditor.setMultiLine (false);
    textEditor.setScrollbarsShown (false);
    textEditor.setPopupMenuEnabled (false);
    textEditor.setColour (juce::TextEditor::textColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::outlineColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::focusedOutlineColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::highlightColourId, juce::Colours::white.withAlpha (0.25f));
    textEditor.onReturnKey = [this] { commit(); unfocusAllComponents(); };
    textEditor.onFocusLost = [this] { commit(); };
    textEditor.onEscapeKey = [this] { showParameterValue(); unfocusAllComponents(); };
    addAndMakeVisible (textEditor);
}

// Losing focus while the window closes must not commit into a half-destroyed editor.
GFXDisplay::~GFXDisplay()
{
    textEditor.onFocusLost = nullptr;
}

void GFXDisplay::loadOwnAttributes (const juce::XmlElement& element)
{
    const auto caret = SkinValues::readColour (element, "caretColour", juce::Colours::white);
    textEditor.setColour (juce::CaretComponent::caretColourId, caret);
    textEditor.setColour (juce::TextEditor::backgroundColourId,
                          SkinValues::readColour (element, "backgroundColour", juce::Colours::black));

    const bool readOnly = element.getStringAttribute ("readonly") == "yes";
    textEditor.setReadOnly (readOnly);
    textEditor.setCaretVisible (! readOnly);
    textEditor.setInterceptsMouseClicks (! readOnly, ! readOnly);
    setInterceptsMouseClicks (! readOnly, ! readOnly);
}

void GFXDisplay::loadGeometry (const juce::XmlElement& element)
{
    if (const auto* gfx = element.getChildByName ("gfx"))
    {
        const auto image = SkinImage::load (gfx->getStringAttribute ("resource"));
        const auto firstASCII = gfx->getStringAttribute ("firstASCII");
        font.setStrip (image, firstASCII.isEmpty() ? (juce::juce_wchar) ' ' : firstASCII[0],
                       SkinValues::readInt (*gfx, "fontHeight"));

        if (font.isValid())
            textEditor.applyFontToAllText (font.createLayoutFont(), true);
    }

    skinBounds = SkinValues::readBounds (element, skinBounds);
    setBounds (skinBounds);
}

void GFXDisplay::resized()
{
    textEditor.setBounds (getLocalBounds());

    // Text sits on the vertical middle, one pixel in from the left.
    const int glyphHeight = font.isValid() ? font.getGlyphHeight() : juce::roundToInt (textEditor.getFont().getHeight());
    textEditor.setIndents (1, juce::jmax (0, (getHeight() - glyphHeight) / 2));
}

juce::String GFXDisplay::getParameterText() const
{
    auto* p = getParameter();
    return p != nullptr ? p->getText() : juce::String();
}

void GFXDisplay::showParameterValue()
{
    if (! textEditor.hasKeyboardFocus (true))
        textEditor.setText (getParameterText(), false);

    repaint();
}

void GFXDisplay::commit()
{
    auto* editor = getEditor();

    if (editor != nullptr && getParameter() != nullptr && ! textEditor.isReadOnly()
        && textEditor.getText() != getParameterText())
        editor->commitDisplayText (*this, textEditor.getText());
}

void GFXDisplay::paintOverChildren (juce::Graphics& g)
{
    if (! font.isValid())
        return;

    const auto text = textEditor.getText();
    const auto origin = textEditor.getPosition();

    for (int i = 0; i < text.length(); ++i)
    {
        const auto cell = textEditor.getTextBounds ({ i, i + 1 }).getBounds();

        if (! cell.isEmpty())
            font.drawGlyph (g, text[i], origin.x + cell.getX(), origin.y + cell.getY());
    }
}
