#include "BasePlugin.h"

#include "HostParameter.h"

namespace
{
    // The index a host call is currently setting on this thread, so that the
    // change is not echoed back to the host that made it.
    thread_local int indexBeingSetByHost = -1;

    juce::String identifierFor (const juce::String& name, int index)
    {
        juce::String id;

        for (auto c : name.toLowerCase())
            id << (juce::CharacterFunctions::isLetterOrDigit (c) ? juce::String::charToString (c) : juce::String ("_"));

        return id.isNotEmpty() ? id : "parameter_" + juce::String (index + 1);
    }
}

BasePlugin::BasePlugin()
    : AudioProcessor (BusesProperties().withInput ("Input", juce::AudioChannelSet::stereo(), true)
                                       .withOutput ("Output", juce::AudioChannelSet::stereo(), true))
{
    parameterManager.load ("parameters.xml");
    createHostParameters();
}

BasePlugin::~BasePlugin()
{
    for (auto* p : parameterManager.getAllParameters())
        p->removeImmediateListener (this);
}

void BasePlugin::createHostParameters()
{
    for (int i = 0; i < hostParameterCount; ++i)
    {
        const auto* p = getParameter ((uint32_t) i);
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

void BasePlugin::parameterChanged (Parameter& parameter)
{
    const auto index = (int) parameter.getIndex();

    if (index < hostParameterCount && index != indexBeingSetByHost)
        if (auto* hostParameter = hostParameters[(size_t) index])
            hostParameter->sendValueChangedMessageToListeners (parameter.getNormalisedValue());
}

juce::String BasePlugin::getHostParameterName (int index) const
{
    if (index < 0 || index >= hostParameterCount)
        return {};

    if (! parameterManager.hasParameter ((uint32_t) index))
        return "Parameter " + juce::String (index + 1);

    const auto* p = getParameter ((uint32_t) index);
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

    return getParameterText (index, normalisedValue);
}

float BasePlugin::getHostParameterValue (int index) const
{
    if (index < 0 || index >= hostParameterCount)
        return 0.0f;

    if (! parameterManager.hasParameter ((uint32_t) index))
        return fallbackValues[(size_t) index].load();

    const auto* p = getParameter ((uint32_t) index);
    return p != nullptr ? p->getNormalisedValue() : 0.0f;
}

void BasePlugin::setHostParameterValue (int index, float normalisedValue)
{
    if (index < 0 || index >= hostParameterCount)
        return;

    if (auto* p = getParameter ((uint32_t) index))
    {
        const auto previous = indexBeingSetByHost;
        indexBeingSetByHost = index;
        p->setNormalisedValue (normalisedValue, true);
        indexBeingSetByHost = previous;
    }
    else
    {
        fallbackValues[(size_t) index].store (juce::jlimit (0.0f, 1.0f, normalisedValue));
    }
}

float BasePlugin::getHostParameterValueForText (int index, const juce::String& text) const
{
    const auto* p = index >= 0 && index < hostParameterCount ? getParameter ((uint32_t) index) : nullptr;

    if (p == nullptr)
        return juce::jlimit (0.0f, 1.0f, text.getFloatValue());

    auto scratch = p->clone();
    scratch->setText (text, false);
    return scratch->getNormalisedValue();
}

juce::String BasePlugin::getParameterText (int index, float normalisedValue) const
{
    const auto* p = getParameter ((uint32_t) index);

    if (p == nullptr)
        return {};

    auto scratch = p->clone();
    scratch->setNormalisedValue (normalisedValue, false);
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

bool BasePlugin::restoreStateElement (const juce::XmlElement&)
{
    return false;
}

void BasePlugin::getStateInformation (juce::MemoryBlock& destData)
{
    if (auto state = buildState())
        copyXmlToBinary (*state, destData);
}

void BasePlugin::setStateInformation (const void* data, int sizeInBytes)
{
    if (data == nullptr || sizeInBytes <= 0)
        return;

    if (auto state = getXmlFromBinary (data, sizeInBytes))
        restoreState (*state);
}

//==============================================================================
void BasePlugin::handleControllerMessage (const juce::MidiMessage&) {}

int BasePlugin::getNumPresets() const { return 0; }

void BasePlugin::selectPresetFromProgramChange (int) {}
