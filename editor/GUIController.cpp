#include "GUIController.h"

#include "BasePluginEditor.h"

#include "framework/EventRegistry.h"
#include "framework/ParameterManager.h"

GUIController::~GUIController()
{
    bindTo (nullptr);
}

void GUIController::assignAction (const juce::String&, int, const juce::String&) {}

void GUIController::addListener (Listener* listener)
{
    listeners.addIfNotAlreadyThere (listener);
}

void GUIController::loadFromSkin (const juce::XmlElement& element, const ParameterManager& parameters,
                                  const EventRegistry& events, BasePluginEditor& owner)
{
    editor = &owner;
    loadLinks (element, parameters);
    loadActions (element, events);
    nameForAccessibility();
    loadOwnAttributes (element);
    loadGeometry (element);

    if (parameter != nullptr)
        showParameterValue();
}

void GUIController::loadOwnAttributes (const juce::XmlElement&) {}

// A screen reader says the parameter's name; a control without one keeps
// the title its kind gave it from its actions, or else its skin name.
void GUIController::nameForAccessibility()
{
    auto& component = getComponent();

    if (parameter != nullptr)
        component.setTitle (parameter->getName());
    else if (component.getTitle().isEmpty())
        component.setTitle (component.getName());
}

void GUIController::loadLinks (const juce::XmlElement& element, const ParameterManager& parameters)
{
    const auto* links = element.getChildByName ("links");

    if (links == nullptr)
        return;

    for (auto* link : links->getChildWithTagNameIterator ("link"))
    {
        auto* found = parameters.findParameter (link->getStringAttribute ("param"));

        if (found != nullptr && link->getStringAttribute ("as") == "connectedTo")
            bindTo (found);
    }
}

void GUIController::loadActions (const juce::XmlElement& element, const EventRegistry& events)
{
    const auto* actions = element.getChildByName ("actions");

    if (actions == nullptr)
        return;

    for (auto* action : actions->getChildWithTagNameIterator ("action"))
    {
        const auto type = action->getStringAttribute ("type");
        const auto name = action->getStringAttribute ("event");
        const int id = events.getId (name);

        if (type.isNotEmpty() && id != EventRegistry::unknownEvent)
            assignAction (type, id, name);
    }
}

void GUIController::bindTo (Parameter* newParameter)
{
    if (parameter != nullptr)
        parameter->removeDeferredListener (this);

    parameter = newParameter;

    if (parameter != nullptr)
        parameter->addDeferredListener (this);
}

void GUIController::parameterChanged (Parameter&)
{
    showParameterValue();
}

void GUIController::fireEvent (int eventId)
{
    if (eventId == noEvent)
        return;

    for (int i = 0; i < listeners.size(); ++i)
        listeners.getUnchecked (i)->controllerEvent (*this, eventId);
}

void GUIController::reportMovement()
{
    for (int i = 0; i < listeners.size(); ++i)
        listeners.getUnchecked (i)->controllerMoved (*this);
}

void GUIController::setParameterFromUser (float normalisedValue)
{
    if (parameter == nullptr)
        return;

    parameter->setNormalisedValue (normalisedValue, ChangeOrigin::editor);
    reportMovement();
}

void GUIController::beginUserGesture()
{
    if (parameter != nullptr && editor != nullptr)
        if (auto* hostParameter = editor->getPlugin().getHostParameter ((int) parameter->getIndex()))
            hostParameter->beginChangeGesture();
}

void GUIController::endUserGesture()
{
    if (parameter != nullptr && editor != nullptr)
        if (auto* hostParameter = editor->getPlugin().getHostParameter ((int) parameter->getIndex()))
            hostParameter->endChangeGesture();
}

void GUIController::drawFallback (juce::Graphics& g, float proportion)
{
    auto& component = getComponent();
    const auto area = component.getLocalBounds().toFloat().reduced (0.5f);

    g.setColour (juce::Colour (0xff2b2d31));
    g.fillRoundedRectangle (area, 3.0f);

    if (parameter != nullptr)
    {
        g.setColour (juce::Colour (0xff5d8fb0));
        g.fillRect (area.withWidth (area.getWidth() * juce::jlimit (0.0f, 1.0f, proportion)).reduced (2.0f));
    }

    g.setColour (isBlinkLit() ? juce::Colours::orange : juce::Colour (0xff8a8f98));
    g.drawRoundedRectangle (area, 3.0f, 1.0f);
    g.setColour (juce::Colours::white);
    g.setFont (juce::jmin (12.0f, area.getHeight() * 0.6f));
    g.drawFittedText (component.getName(), component.getLocalBounds().reduced (2), juce::Justification::centred, 2);
}
