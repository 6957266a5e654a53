#include "GFXDisplay.h"

#include "BasePluginEditor.h"
#include "DisplayAccessibilityHandler.h"
#include "SkinValues.h"

GFXDisplay::GFXDisplay (const juce::String& name)
    : juce::Component (name)
{
    // Tab stops at the display itself; the text editor is reached by a click
    // or by Return, so that the arrow keys step rather than move a caret.
    setWantsKeyboardFocus (true);
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);

    textEditor.setBorder ({});
    textEditor.setMultiLine (false);
    textEditor.setScrollbarsShown (false);
    textEditor.setPopupMenuEnabled (false);
    textEditor.setColour (juce::TextEditor::textColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::outlineColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::focusedOutlineColourId, juce::Colours::transparentBlack);
    textEditor.setColour (juce::TextEditor::highlightColourId, juce::Colours::white.withAlpha (0.25f));
    textEditor.onReturnKey = [this] { commit(); stopEditing(); };
    textEditor.onFocusLost = [this] { commit(); };
    textEditor.onEscapeKey = [this] { stopEditing(); showParameterValue(); };
    addAndMakeVisible (textEditor);
}

// Losing focus while the window closes must not commit into a half-destroyed editor.
GFXDisplay::~GFXDisplay()
{
    textEditor.onFocusLost = nullptr;
}

void GFXDisplay::assignAction (const juce::String& type, int eventId, const juce::String&)
{
    if (type == "onPrevious")    previousEvent = eventId;
    else if (type == "onNext")   nextEvent = eventId;
    else if (type == "onOpen")   openEvent = eventId;
    else return;

    invalidateAccessibilityHandler();
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
    textEditor.setWantsKeyboardFocus (! readOnly);
    textEditor.setInterceptsMouseClicks (! readOnly, ! readOnly);
    textEditor.setAccessible (! readOnly);
    setInterceptsMouseClicks (! readOnly, ! readOnly);
    invalidateAccessibilityHandler();
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
    textEditor.setTitle (getTitle());
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
    if (! isEditing())
    {
        const auto text = getParameterText();

        if (text != textEditor.getText())
        {
            textEditor.setText (text, false);

            if (auto* handler = getAccessibilityHandler())
                handler->notifyAccessibilityEvent (juce::AccessibilityEvent::valueChanged);
        }
    }

    repaint();
}

void GFXDisplay::beginEditing()
{
    if (isReadOnly())
        return;

    textEditor.grabKeyboardFocus();
    textEditor.selectAll();
}

// The keyboard stays on the display, so the next key steps or edits again.
void GFXDisplay::stopEditing()
{
    if (isShowing())
        grabKeyboardFocus();
    else
        textEditor.giveAwayKeyboardFocus();
}

void GFXDisplay::commit()
{
    if (textEditor.getText() != getParameterText())
        enterText (textEditor.getText());
}

void GFXDisplay::enterText (const juce::String& text)
{
    auto* editor = getEditor();

    if (editor != nullptr && getParameter() != nullptr && ! isReadOnly())
        editor->commitDisplayText (*this, text);
}

bool GFXDisplay::open()
{
    if (openEvent == noEvent)
        return false;

    fireEvent (openEvent);
    return true;
}

bool GFXDisplay::keyPressed (const juce::KeyPress& key)
{
    // Tab from the text editor leaves the display, not just the edit.
    if (key.isKeyCode (juce::KeyPress::tabKey) && isEditing())
    {
        grabKeyboardFocus();
        moveKeyboardFocusToSibling (! key.getModifiers().isShiftDown());
        return true;
    }

    if (isEditing())
        return false;

    const auto mods = key.getModifiers();
    const int code = key.getKeyCode();
    const bool plain = ! (mods.isCtrlDown() || mods.isAltDown() || mods.isCommandDown());

    if (plain && (code == juce::KeyPress::returnKey || code == juce::KeyPress::F2Key) && ! isReadOnly())
    {
        beginEditing();
        return true;
    }

    if (code == juce::KeyPress::F4Key || (mods.isAltDown() && code == juce::KeyPress::downKey))
        return open();

    const int event = ! plain ? noEvent
                    : code == juce::KeyPress::upKey || code == juce::KeyPress::leftKey    ? previousEvent
                    : code == juce::KeyPress::downKey || code == juce::KeyPress::rightKey ? nextEvent
                    : noEvent;

    if (event == noEvent)
        return false;

    fireEvent (event);
    return true;
}

std::unique_ptr<juce::AccessibilityHandler> GFXDisplay::createAccessibilityHandler()
{
    return std::make_unique<DisplayAccessibilityHandler> (*this, openEvent != noEvent && ! isReadOnly());
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
