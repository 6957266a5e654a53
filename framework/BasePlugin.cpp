#include "BasePlugin.h"

#include "HostParameter.h"
#include "Resources.h"
#include "UserSettingsFolder.h"
#include "XmlReading.h"

#include <cmath>
#include <limits>
#include <mutex>

namespace
{
    juce::String identifierFor (const juce::String& name, int index)
    {
        juce::String id;

        for (auto c : name.toLowerCase())
            id << (juce::CharacterFunctions::isLetterOrDigit (c) ? juce::String::charToString (c) : juce::String ("_"));

        return id.isNotEmpty() ? id : "parameter_" + juce::String (index + 1);
    }
}

// Runs the plug-in's poll on whichever thread runs JUCE's message loop: a
// timer may be started from any thread, and its callbacks come on the message
// thread even when that thread changes (a VST3 host on Linux hands it from
// the wrapper's own thread to its GUI thread once an editor opens).
class BasePlugin::MessageThreadPoll : private juce::Timer
{
public:
    explicit MessageThreadPoll (BasePlugin& o) : owner (&o)
    {
        startTimer (intervalMilliseconds);
    }

    ~MessageThreadPoll() override { stopTimer(); }

    // After this no callback reaches the owner: one under way on the message
    // thread is waited for.
    void detach()
    {
        stopTimer();
        const std::lock_guard<std::mutex> lock (callbackLock);
        owner = nullptr;
    }

private:
    static constexpr int intervalMilliseconds = 20;

    void timerCallback() override
    {
        const std::lock_guard<std::mutex> lock (callbackLock);

        if (owner != nullptr)
            owner->pollMessageThread();
    }

    BasePlugin* owner;
    std::mutex callbackLock;
};

BasePlugin::BasePlugin()
    : AudioProcessor (BusesProperties().withInput ("Input", juce::AudioChannelSet::stereo(), true)
                                       .withOutput ("Output", juce::AudioChannelSet::stereo(), true))
{
    parameterManager.load ("parameters.xml");
    createHostParameters();
    buildEventRegistry();
}

BasePlugin::~BasePlugin()
{
    stopMessageThreadPoll();

    for (auto* p : parameterManager.getAllParameters())
        p->removeImmediateListener (this);
}

void BasePlugin::createHostParameters()
{
    for (int i = 0; i < hostParameterCount; ++i)
    {
        const auto* p = getPluginParameter ((uint32_t) i);
        auto hostParameter = std::make_unique<HostParameter> (*this, i,
                                                              identifierFor (p != nullptr ? p->getName() : juce::String(), i),
                                                              getHostParameterValue (i));
        hostParameters[(size_t) i] = hostParameter.get();
        addParameter (hostParameter.release());
    }
}

void BasePlugin::parameterAdded (Parameter& parameter)
{
    parameter.addImmediateListener (this);
}

// Every change of every parameter comes through here, from any thread: the
// host hears of it unless it made it, the engine gets the value in its inbox,
// the preset manager sees what concerns it, and the parameter's deferred
// listeners wait for the poll. Nothing on this path posts, waits or
// allocates, except what the preset manager does for the editor's changes.
void BasePlugin::parameterChanged (Parameter& parameter, ChangeOrigin origin)
{
    const auto index = (int) parameter.getIndex();

    if (index < hostParameterCount && origin != ChangeOrigin::host)
        if (auto* hostParameter = hostParameters[(size_t) index])
            hostParameter->sendValueChangedMessageToListeners (parameter.getNormalisedValue());

    postToEngine (parameter);
    presetParameterChanged (parameter, origin);
}

juce::String BasePlugin::getHostParameterName (int index) const
{
    if (index < 0 || index >= hostParameterCount)
        return {};

    if (! parameterManager.hasParameter ((uint32_t) index))
        return "Parameter " + juce::String (index + 1);

    const auto* p = getPluginParameter ((uint32_t) index);
    return p != nullptr ? p->getName() : juce::String();
}

juce::String BasePlugin::getHostParameterText (int index) const
{
    return getHostParameterText (index, getHostParameterValue (index));
}

juce::String BasePlugin::getHostParameterText (int index, float normalisedValue) const
{
    if (index < 0 || index >= hostParameterCount)
        return {};

    if (! parameterManager.hasParameter ((uint32_t) index))
        return juce::String (normalisedValue, 9);

    return getParameterDisplayText (index, normalisedValue);
}

float BasePlugin::getHostParameterValue (int index) const
{
    if (index < 0 || index >= hostParameterCount)
        return 0.0f;

    if (! parameterManager.hasParameter ((uint32_t) index))
        return fallbackValues[(size_t) index].load();

    const auto* p = getPluginParameter ((uint32_t) index);
    return p != nullptr ? p->getNormalisedValue() : 0.0f;
}

void BasePlugin::setHostParameterValue (int index, float normalisedValue)
{
    if (index < 0 || index >= hostParameterCount)
        return;

    if (auto* p = getPluginParameter ((uint32_t) index))
        p->setNormalisedValue (normalisedValue, ChangeOrigin::host);
    else
    {
        fallbackValues[(size_t) index].store (juce::jlimit (0.0f, 1.0f, normalisedValue));
    }
}

// Hosts hand back what they showed: a display text with its units, which
// only the product's own texts can read. The value is looked up through them:
// the first value that shows the text given, or else the one whose leading
// number comes nearest. A host asks on its GUI thread, and rarely.
float BasePlugin::getHostParameterValueForText (int index, const juce::String& text) const
{
    const auto* p = index >= 0 && index < hostParameterCount ? getPluginParameter ((uint32_t) index) : nullptr;

    if (p == nullptr)
        return juce::jlimit (0.0f, 1.0f, text.getFloatValue());

    constexpr int searchSteps = 1000;
    const auto wanted = text.trim();
    const double wantedNumber = wanted.getDoubleValue();
    float nearest = p->getNormalisedValue();
    double nearestDistance = std::numeric_limits<double>::infinity();

    for (int step = 0; step <= searchSteps; ++step)
    {
        const float value = (float) step / (float) searchSteps;
        const auto shown = getParameterDisplayText (index, value);

        if (shown.trim().equalsIgnoreCase (wanted))
            return value;

        const double distance = std::abs (shown.getDoubleValue() - wantedNumber);

        if (distance < nearestDistance)
        {
            nearestDistance = distance;
            nearest = value;
        }
    }

    return nearest;
}

juce::String BasePlugin::getParameterDisplayText (int index, float normalisedValue) const
{
    const auto* p = getPluginParameter ((uint32_t) index);

    if (p == nullptr)
        return {};

    auto scratch = p->clone();
    scratch->setNormalisedValue (normalisedValue, ChangeOrigin::quiet);
    return scratch->getText();
}

bool BasePlugin::isBusesLayoutSupported (const BusesLayout& layouts) const
{
    const auto in = layouts.getMainInputChannelSet();
    const auto out = layouts.getMainOutputChannelSet();
    const auto mono = juce::AudioChannelSet::mono();
    const auto stereo = juce::AudioChannelSet::stereo();

    return (in == stereo && out == stereo) || (in == mono && out == mono) || (in == mono && out == stereo);
}

//==============================================================================
std::unique_ptr<juce::XmlElement> BasePlugin::buildState()
{
    auto state = std::make_unique<juce::XmlElement> ("PluginState");
    state->setAttribute ("application", getPluginName());
    return state;
}

bool BasePlugin::isPluginState (const juce::XmlElement& element) const
{
    return element.getTagName() == "PluginState" && element.getStringAttribute ("application") == getPluginName();
}

bool BasePlugin::restoreState (const juce::XmlElement& state)
{
    if (! isPluginState (state))
        return false;

    for (auto* child : state.getChildIterator())
        restoreStateElement (*child);

    return true;
}

bool BasePlugin::restoreStateElement (const juce::XmlElement& element)
{
    if (! MidiControl::acceptsElement (element))
        return false;

    midiControl.readMap (element);
    return true;
}

void BasePlugin::getStateInformation (juce::MemoryBlock& destData)
{
    if (auto state = buildState())
        copyXmlToBinary (*state, destData);
}

void BasePlugin::setStateInformation (const void* data, int sizeInBytes)
{
    if (auto state = parseXmlChunk (data, sizeInBytes))
        restoreState (*state);
}

//==============================================================================
// <ResourcesSettings><MidiCCMap file="..."/></ResourcesSettings>: the map
// file a new instance starts with. The presets write their own element into
// the same ResourcesSettings, so it is looked up before it is created.
void BasePlugin::readUserSettings (const juce::XmlElement& settings)
{
    for (auto* resources : settings.getChildIterator())
    {
        if (resources->getTagName() != "ResourcesSettings")
            continue;

        for (auto* map : resources->getChildIterator())
        {
            const auto path = map->getStringAttribute ("file");

            if (map->getTagName() == "MidiCCMap" && (path.isEmpty() || juce::File::isAbsolutePath (path)))
                defaultMidiMapPath = path;
        }
    }

    if (defaultMidiMapPath.isNotEmpty())
        midiControl.loadFile (juce::File (defaultMidiMapPath));

    if (const auto* editorSettings = settings.getChildByName ("EditorSettings"))
        editorZoom = EditorZoom::fromText (editorSettings->getStringAttribute ("zoom"));
}

void BasePlugin::writeUserSettings (juce::XmlElement& settings)
{
    auto* resources = settings.getChildByName ("ResourcesSettings");

    if (resources == nullptr)
        resources = settings.createNewChildElement ("ResourcesSettings");

    resources->createNewChildElement ("MidiCCMap")->setAttribute ("file", defaultMidiMapPath);
    settings.createNewChildElement ("EditorSettings")->setAttribute ("zoom", editorZoom);
}

void BasePlugin::setEditorZoom (int percent)
{
    if (! EditorZoom::isStep (percent) || percent == editorZoom)
        return;

    editorZoom = percent;
    saveUserSettings();
}

juce::File BasePlugin::getDefaultMidiMapFile() const
{
    return defaultMidiMapPath.isNotEmpty() ? juce::File (defaultMidiMapPath) : juce::File();
}

void BasePlugin::setDefaultMidiMapFile (const juce::File& file)
{
    defaultMidiMapPath = file.getFullPathName();
    saveUserSettings();
}

bool BasePlugin::isUserSettings (const juce::XmlElement& element) const
{
    return element.getTagName() == "UserSettings" && element.getStringAttribute ("application") == getPluginName();
}

// <user settings folder>/<name>/<name>.ini
juce::File BasePlugin::getUserSettingsFile() const
{
    return userSettingsFolder().getChildFile (getPluginName())
        .getChildFile (getPluginName() + ".ini");
}

bool BasePlugin::loadUserSettings()
{
    const auto settings = parseXmlFile (getUserSettingsFile());

    if (settings == nullptr || ! isUserSettings (*settings))
        return false;

    readUserSettings (*settings);
    return true;
}

bool BasePlugin::saveUserSettings()
{
    juce::XmlElement settings ("UserSettings");
    settings.setAttribute ("application", getPluginName());
    writeUserSettings (settings);

    const auto file = getUserSettingsFile();

    if (! file.getParentDirectory().createDirectory())
        return false;

    juce::XmlElement::TextFormat format;
    format.customEncoding = "UTF-8";
    return settings.writeTo (file, format);
}

//==============================================================================
void BasePlugin::handleControllerMessage (const juce::MidiMessage& message)
{
    midiControl.handleMessage (message);
}

int BasePlugin::getNumPresets() const { return 0; }

void BasePlugin::startMessageThreadPoll()
{
    if (messageThreadPoll == nullptr && juce::MessageManager::getInstanceWithoutCreating() != nullptr)
        messageThreadPoll = std::make_unique<MessageThreadPoll> (*this);
}

// Off the message thread a timer callback may already be on its way into the
// poll object (JUCE calls timers outside its timer lock), so the detached
// object is deleted on the message thread, after anything already under way.
void BasePlugin::stopMessageThreadPoll()
{
    if (messageThreadPoll == nullptr)
        return;

    messageThreadPoll->detach();
    auto* messageManager = juce::MessageManager::getInstanceWithoutCreating();

    if (messageManager == nullptr || messageManager->isThisTheMessageThread())
        messageThreadPoll.reset();
    else
        juce::MessageManager::callAsync ([poll = std::shared_ptr<MessageThreadPoll> (messageThreadPoll.release())] {});
}

void BasePlugin::pollMessageThread()
{
    parameterManager.flushDeferredNotifications();
    midiControl.pollMessageThread();
}

void BasePlugin::selectPresetFromProgramChange (int) {}

//==============================================================================
// A product may add its own events in "events.xml"; the framework's fixed
// events are registered last so that they keep their ids.
void BasePlugin::buildEventRegistry()
{
    eventRegistry.clear();

    if (const auto events = juce::parseXML (Resources::getText ("events.xml")))
        eventRegistry.merge (*events);

    eventRegistry.registerFixedEvents();
}

void BasePlugin::handleEvent (int) {}

juce::AudioProcessorParameter* BasePlugin::getHostParameter (int index) const
{
    return index >= 0 && index < hostParameterCount ? hostParameters[(size_t) index] : nullptr;
}
