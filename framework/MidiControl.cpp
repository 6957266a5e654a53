#include "MidiControl.h"

#include "XmlReading.h"

namespace
{
    bool isController (int controller) noexcept
    {
        return controller >= 0 && controller < MidiControl::numControllers;
    }

    // Plain decimal digits only, so that "12abc", "-1" or a number too long
    // for an int can never be read as a valid controller.
    int parseController (const juce::String& text)
    {
        const auto trimmed = text.trim();

        if (trimmed.isEmpty() || trimmed.length() > 3 || ! trimmed.containsOnly ("0123456789"))
            return -1;

        const int controller = trimmed.getIntValue();
        return isController (controller) ? controller : -1;
    }
}

MidiControl::MidiControl (ParameterManager& parameterManager, std::function<juce::String()> application)
    : parameters (parameterManager), applicationName (std::move (application))
{
}

MidiControl::~MidiControl() = default;

void MidiControl::handleMessage (const juce::MidiMessage& message)
{
    if (! message.isController())
        return;

    const int controller = message.getControllerNumber();

    // Learning waits for the next poll, which takes the controllers in the
    // order they came; the slot is read without the lock.
    if (learnMode.load())
        learnQueue.push ({ (uint8_t) controller, (uint8_t) message.getControllerValue() });

    if (auto* p = slots[(size_t) controller].load())
    {
        p->setNormalisedValue ((float) message.getControllerValue() * valueScale, ChangeOrigin::midi);
        lastMoved.store (p);
        activity.store (true);
    }
}

void MidiControl::pollMessageThread()
{
    // A controller that completes a binding moves its new parameter, as it
    // would have had it been bound already.
    for (ControllerMove move; learnQueue.pop (move);)
    {
        const auto* before = getParameterAt (move.controller);
        learnFromController (move.controller);

        if (auto* bound = getParameterAt (move.controller); bound != nullptr && bound != before)
        {
            bound->setNormalisedValue ((float) move.value * valueScale, ChangeOrigin::midi);
            lastMoved.store (bound);
            activity.store (true);
        }
    }

    if (mapChanged.load() || learnChanged.load() || activity.load())
        reportChanges();
}

//==============================================================================
void MidiControl::setLearnMode (bool shouldLearn)
{
    {
        const juce::ScopedLock sl (lock);

        if (learnMode == shouldLearn)
            return;

        switchLearnModeLocked (shouldLearn);
    }

    tellLearnModeListeners (shouldLearn);
}

bool MidiControl::toggleLearnMode()
{
    bool isOn;

    {
        const juce::ScopedLock sl (lock);
        isOn = ! learnMode;
        switchLearnModeLocked (isOn);
    }

    tellLearnModeListeners (isOn);
    return isOn;
}

void MidiControl::switchLearnModeLocked (bool shouldLearn)
{
    learnMode = shouldLearn;
    learnParameter = nullptr;
    learnController = -1;
}

void MidiControl::tellLearnModeListeners (bool isOn)
{
    const juce::ScopedLock sl (listenerLock);

    for (int i = listeners.size(); --i >= 0;)
        if (auto* listener = listeners[i])
            listener->midiLearnModeChanged (isOn);
}

bool MidiControl::isLearnMode() const
{
    const juce::ScopedLock sl (lock);
    return learnMode;
}

void MidiControl::learnFromController (int controller)
{
    if (! isController (controller))
        return;

    const juce::ScopedLock sl (lock);

    if (! learnMode || controller == learnController)
        return;

    // A parameter touched first, with no controller yet, stays the choice.
    if (learnParameter == nullptr || learnController != -1)
        learnParameter = slots[(size_t) controller].load();

    learnController = controller;
    learnCheck();
}

void MidiControl::learnFromParameter (Parameter& parameter)
{
    const juce::ScopedLock sl (lock);

    if (! learnMode || &parameter == learnParameter)
        return;

    // A controller moved first, with no parameter yet, stays the choice.
    if (learnController == -1 || learnParameter != nullptr)
        learnController = getControllerOf (&parameter);

    learnParameter = &parameter;
    learnCheck();
}

void MidiControl::learnCheck()
{
    if (learnController != -1 && learnParameter != nullptr && slots[(size_t) learnController].load() == nullptr)
        assignLocked (learnController, learnParameter, true);

    learnChanged = true;
}

Parameter* MidiControl::getLearnParameter() const
{
    const juce::ScopedLock sl (lock);
    return learnParameter;
}

int MidiControl::getLearnController() const
{
    const juce::ScopedLock sl (lock);
    return learnController;
}

//==============================================================================
void MidiControl::assign (int controller, Parameter* parameter, bool notify)
{
    if (! isController (controller))
        return;

    const juce::ScopedLock sl (lock);
    assignLocked (controller, parameter, notify);
}

void MidiControl::assignLocked (int controller, Parameter* parameter, bool notify)
{
    auto& slot = slots[(size_t) controller];

    if (slot.load() == parameter)
        return;

    if (parameter != nullptr)
    {
        const int previous = getControllerOf (parameter);

        if (previous >= 0)
        {
            slots[(size_t) previous].store (nullptr);
            --mappedCount;
        }
    }

    mappedCount += (parameter != nullptr ? 1 : 0) - (slot.load() != nullptr ? 1 : 0);
    slot.store (parameter);

    if (notify)
    {
        mapChanged = true;
    }
}

void MidiControl::remove (int controller)
{
    if (! isController (controller))
        return;

    const juce::ScopedLock sl (lock);

    if (slots[(size_t) controller].load() != nullptr)
        assignLocked (controller, nullptr, true);

    if (learnMode)
    {
        learnParameter = nullptr;
        learnController = -1;
        learnCheck();
    }
}

void MidiControl::clear()
{
    const juce::ScopedLock sl (lock);

    for (int controller = 0; controller < numControllers; ++controller)
        if (slots[(size_t) controller].load() != nullptr)
            assignLocked (controller, nullptr, true);
}

Parameter* MidiControl::getParameterAt (int controller) const
{
    if (! isController (controller))
        return nullptr;

    return slots[(size_t) controller].load();
}

int MidiControl::getControllerOf (const Parameter* parameter) const
{
    const juce::ScopedLock sl (lock);

    if (parameter != nullptr)
        for (int controller = 0; controller < numControllers; ++controller)
            if (slots[(size_t) controller].load() == parameter)
                return controller;

    return -1;
}

int MidiControl::getMappedCount() const
{
    const juce::ScopedLock sl (lock);
    return mappedCount;
}

//==============================================================================
bool MidiControl::acceptsElement (const juce::XmlElement& element)
{
    return element.getTagName() == "MidiControlMap" || element.getTagName() == "MidiCCMap";
}

void MidiControl::readMap (const juce::XmlElement& element)
{
    setLearnMode (false);

    if (! acceptsElement (element))
        return;

    const juce::ScopedLock sl (lock);
    clear();

    for (auto* assignment : element.getChildIterator())
    {
        if (assignment->getTagName() != "assign")
            continue;

        auto* p = parameters.findParameter (assignment->getStringAttribute ("param"));
        const int controller = parseController (assignment->getStringAttribute ("CC"));

        if (p != nullptr && p->isAutomatable() && controller >= 0)
            assignLocked (controller, p, true);
    }
}

std::unique_ptr<juce::XmlElement> MidiControl::writeMap (const juce::String& name) const
{
    auto map = std::make_unique<juce::XmlElement> ("MidiControlMap");
    map->setAttribute ("name", name);

    const juce::ScopedLock sl (lock);

    for (int controller = 0; controller < numControllers; ++controller)
    {
        if (const auto* p = slots[(size_t) controller].load())
        {
            auto* assignment = map->createNewChildElement ("assign");
            assignment->setAttribute ("param", p->getName());
            assignment->setAttribute ("CC", controller);
        }
    }

    return map;
}

bool MidiControl::loadFile (const juce::File& file)
{
    const auto map = parseXmlFile (file);

    if (map == nullptr || ! acceptsElement (*map) || map->getStringAttribute ("application") != applicationName())
        return false;

    readMap (*map);
    lastFolder = file.getParentDirectory();
    return true;
}

bool MidiControl::saveFile (const juce::File& file)
{
    auto map = writeMap (file.getFileNameWithoutExtension());
    map->setAttribute ("application", applicationName());

    juce::XmlElement::TextFormat format;
    format.customEncoding = "UTF-8";

    if (! map->writeTo (file, format))
        return false;

    lastFolder = file.getParentDirectory();
    return true;
}

//==============================================================================
void MidiControl::addListener (Listener* listener)
{
    const juce::ScopedLock sl (listenerLock);
    listeners.addIfNotAlreadyThere (listener);
}

void MidiControl::removeListener (Listener* listener)
{
    const juce::ScopedLock sl (listenerLock);
    listeners.removeAllInstancesOf (listener);
}

void MidiControl::reportChanges()
{
    bool mapWasChanged, learnWasChanged;
    Parameter* moved = nullptr;

    mapWasChanged = mapChanged.exchange (false);
    learnWasChanged = learnChanged.exchange (false);

    if (activity.exchange (false))
        moved = lastMoved.load();

    const juce::ScopedLock sl (listenerLock);

    for (int i = listeners.size(); --i >= 0;)
    {
        auto* listener = listeners[i];

        if (listener == nullptr)
            continue;

        if (mapWasChanged)
            listener->midiMapChanged();

        if (learnWasChanged)
            listener->midiLearnChoiceChanged();

        if (moved != nullptr)
            listener->midiControllerMoved (*moved);
    }
}
