#include "BasePluginEditor.h"

#include "AboutWindow.h"
#include "ControlFactory.h"
#include "DisplaySettingsPage.h"
#include "GFXDisplay.h"
#include "KeyboardClick.h"
#include "MidiSettingsPage.h"
#include "SkinValues.h"

#include "framework/Resources.h"
#include "framework/StringParameter.h"

namespace
{
    std::unique_ptr<juce::XmlElement> parseSkin()
    {
        return juce::parseXML (Resources::getText ("skin.xml"));
    }

    constexpr int activityBlinkMs = 120;
}

BasePluginEditor::BasePluginEditor (BasePlugin& p)
    : BasePluginEditor (p, parseSkin().get())
{
}

BasePluginEditor::BasePluginEditor (BasePlugin& p, const juce::XmlElement* skin)
    : AudioProcessorEditor (p), plugin (p)
{
    // The editor itself takes the focus when the host's window does, so that
    // nothing inside is picked for the user; Tab goes on from here.
    setWantsKeyboardFocus (true);
    setFocusContainerType (FocusContainerType::keyboardFocusContainer);
    setTitle (plugin.getPluginName());
    setSize (skinWidth, skinHeight);

    if (skin != nullptr)
        buildFromSkin (*skin);

    midiLearnButton = findController ("MidiLearnButton");
    midiActivityLed = findController ("MidiActivityLed");

    addChildComponent (statusBar);
    plugin.getMidiControl().addListener (this);
    handleAsyncUpdate();
    applyScale();
}

BasePluginEditor::~BasePluginEditor()
{
    cancelPendingUpdate();
    plugin.getMidiControl().removeListener (this);
}

void BasePluginEditor::buildFromSkin (const juce::XmlElement& root)
{
    if (root.getTagName() != "PluginEditor")
        return;

    auto image = SkinImage::load (root.getStringAttribute ("background", "Background.png"));

    if (image.isValid() && image != background)
    {
        background = image;
        skinWidth = background.getWidth();
        skinHeight = background.getHeight();
        updateSize();
    }

    for (auto* element : root.getChildIterator())
    {
        auto control = ControlFactory::createTopLevel (element->getTagName(), element->getStringAttribute ("name"));

        if (control == nullptr)
            continue;

        auto* created = control.get();
        ownedControllers.push_back (std::move (control));
        registerController (*created);
        created->loadFromSkin (*element, plugin.getParameterManager(), plugin.getEventRegistry(), *this);
        created->getComponent().setExplicitFocusOrder ((int) ownedControllers.size());
        addAndMakeVisible (created->getComponent());
    }

    for (int i = 0;; ++i)
    {
        GUIController* control = nullptr;

        {
            const juce::ScopedLock sl (controllerLock);

            if (i >= controllers.size())
                break;

            control = controllers.getUnchecked (i);
        }

        control->addListener (this);
    }

    statusBar.toFront (false);
}

void BasePluginEditor::registerController (GUIController& controller)
{
    const juce::ScopedLock sl (controllerLock);
    controllers.add (&controller);
}

GUIController* BasePluginEditor::findController (const juce::String& name) const
{
    const juce::ScopedLock sl (controllerLock);

    for (auto* control : controllers)
        if (control->getComponent().getName() == name)
            return control;

    return nullptr;
}

juce::Array<GUIController*> BasePluginEditor::getControllers() const
{
    const juce::ScopedLock sl (controllerLock);
    return controllers;
}

//==============================================================================
void BasePluginEditor::controllerEvent (GUIController& source, int eventId)
{
    handleEvent (eventId, &source);
}

void BasePluginEditor::controllerMoved (GUIController& source)
{
    if (auto* p = source.getParameter())
        reportParameter (*p);
}

void BasePluginEditor::handleEvent (int eventId, GUIController* source)
{
    switch (eventId)
    {
        case EventRegistry::options:
            optionsOpener = source != nullptr ? &source->getComponent() : nullptr;
            setOptionsVisible (! isShowingOptions());
            return;
        case EventRegistry::about:           showAbout(); return;
        case EventRegistry::toggleMidiLearn: toggleMidiLearn(); return;
        default: break;
    }

    plugin.handleEvent (eventId);

    if (source != nullptr)
        if (auto* p = source->getParameter())
            reportParameter (*p);
}

void BasePluginEditor::reportParameter (Parameter& parameter)
{
    auto& midi = plugin.getMidiControl();

    if (midi.isLearnMode())
        midi.learnFromParameter (parameter);

    statusBar.showMessage (parameter.getName() + ": " + getValueText (parameter), statusTimeMs);
}

juce::String BasePluginEditor::getValueText (const Parameter& parameter) const
{
    if (dynamic_cast<const StringParameter*> (&parameter) != nullptr)
        return parameter.getText();

    return plugin.getParameterDisplayText ((int) parameter.getIndex(), parameter.getNormalisedValue());
}

void BasePluginEditor::commitDisplayText (GFXDisplay& display, const juce::String& text)
{
    if (auto* p = display.getParameter())
        p->setText (text, ChangeOrigin::editor);
}

//==============================================================================
// One read-and-flip under the map's lock, so no other switch can slip in
// between the read and the write.
void BasePluginEditor::toggleMidiLearn()
{
    plugin.getMidiControl().toggleLearnMode();
}

juce::String BasePluginEditor::describeMidiLearn() const
{
    const auto& midi = plugin.getMidiControl();

    if (! midi.isLearnMode())
        return {};

    const int controller = midi.getLearnController();
    const auto* parameter = midi.getLearnParameter();

    if (controller < 0 && parameter == nullptr)
        return "Waiting for a controller or parameter movement...";

    if (controller < 0)
        return "'" + parameter->getName() + "' parameter is free. Waiting for a free controller now...";

    const auto cc = "CC#" + juce::String (controller) + " ";

    if (const auto* assigned = midi.getParameterAt (controller))
        return cc + "is assigned to parameter '" + assigned->getName() + "'";

    return cc + "is free. Waiting for a parameter now...";
}

// Learn mode may be switched on any thread (a restored project switches it
// off); the editor catches up on the message thread.
void BasePluginEditor::midiLearnModeChanged (bool)
{
    triggerAsyncUpdate();
}

void BasePluginEditor::midiLearnChoiceChanged()
{
    handleAsyncUpdate();
}

// The learn texts are the only guidance while learning, so a screen reader
// is told each new one too.
void BasePluginEditor::handleAsyncUpdate()
{
    const bool learning = plugin.getMidiControl().isLearnMode();
    const auto learnText = describeMidiLearn();

    if (learnText.isNotEmpty() && learnText != statusBar.getRestingText())
        juce::AccessibilityHandler::postAnnouncement (learnText, juce::AccessibilityHandler::AnnouncementPriority::medium);

    statusBar.setRestingText (learnText);

    if (midiLearnButton != nullptr)
        midiLearnButton->setBlinking (learning);
}

void BasePluginEditor::midiControllerMoved (Parameter& lastMoved)
{
    if (midiActivityLed != nullptr)
        midiActivityLed->blink (activityBlinkMs);

    statusBar.showMessage (lastMoved.getName() + ": " + getValueText (lastMoved), statusTimeMs);
}

//==============================================================================
void BasePluginEditor::setOptionsVisible (bool shouldShow)
{
    if (shouldShow == isShowingOptions())
        return;

    if (shouldShow && optionsPanel == nullptr)
    {
        optionsPanel = std::make_unique<OptionsPanel>();
        addOptionsPages (*optionsPanel);
        addChildComponent (*optionsPanel);
    }

    optionsPanel->setVisible (shouldShow);
    updateSize();
}

void BasePluginEditor::addOptionsPages (OptionsPanel& panel)
{
    panel.addPage ("MIDI", std::make_unique<MidiSettingsPage> (plugin.getMidiControl(), plugin.getParameterManager()));
    panel.addPage ("Display", std::make_unique<DisplaySettingsPage> (getZoom(), [this] (int percent) { setZoom (percent); }));
}

//==============================================================================
void BasePluginEditor::setScaleFactor (float newScale)
{
    if (newScale > 0.0f)
        hostScale = newScale;

    applyScale();
}

void BasePluginEditor::setZoom (int percent)
{
    plugin.setEditorZoom (percent);
    applyScale();
}

// The wrappers size the host's window from the editor's transformed bounds,
// so a new transform is also the request to resize it.
void BasePluginEditor::applyScale()
{
    AudioProcessorEditor::setScaleFactor (hostScale * (float) getZoom() / 100.0f);
}

int BasePluginEditor::getHeightBelowSkin() const
{
    return isShowingOptions() ? OptionsPanel::height : 0;
}

void BasePluginEditor::updateSize()
{
    setSize (skinWidth, skinHeight + getHeightBelowSkin());
}

void BasePluginEditor::showAbout()
{
    AboutWindow::show (plugin.getPluginName(), getAboutText(), this);
}

juce::String BasePluginEditor::getAboutText() const
{
    return {};
}

//==============================================================================
void BasePluginEditor::paint (juce::Graphics& g)
{
    g.fillAll (juce::Colour (0xff1d1e21));

    if (background.isValid())
        background.draw (g, { skinWidth, skinHeight }, { skinWidth, skinHeight });
}

bool BasePluginEditor::keyPressed (const juce::KeyPress& key)
{
    auto* focused = getCurrentlyFocusedComponent();

    if (key.isKeyCode (juce::KeyPress::tabKey) && focused == this)
    {
        if (auto traverser = createKeyboardFocusTraverser())
        {
            const auto all = traverser->getAllComponents (this);

            if (! all.empty())
                (key.getModifiers().isShiftDown() ? all.back() : all.front())->grabKeyboardFocus();
        }

        return true;
    }

    if (key.isKeyCode (juce::KeyPress::escapeKey) && isShowingOptions() && optionsPanel->isParentOf (focused))
    {
        setOptionsVisible (false);

        if (optionsOpener != nullptr)
            optionsOpener->grabKeyboardFocus();

        return true;
    }

    return KeyboardClick::clickFocusedButton (key);
}

std::unique_ptr<juce::AccessibilityHandler> BasePluginEditor::createAccessibilityHandler()
{
    return std::make_unique<juce::AccessibilityHandler> (*this, juce::AccessibilityRole::group);
}

void BasePluginEditor::resized()
{
    statusBar.setBounds (0, skinHeight - StatusBar::height, getWidth(), StatusBar::height);

    if (optionsPanel != nullptr)
        optionsPanel->setBounds (0, skinHeight, getWidth(), OptionsPanel::height);
}
