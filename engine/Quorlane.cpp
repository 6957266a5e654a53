#include "Quorlane.h"

#include "QuorlaneCore.h"
#include "QuorlaneParameterText.h"

#include "framework/AudioCallbackScope.h"
#include "framework/FloatParameter.h"

Quorlane::Quorlane()
{
    // "Decay Time" is the plug-in's own output: publishing it tells its
    // deferred listeners (the editor) and need not run the chain again.
    if (auto* decayTime = getPluginParameter (decayTimeIndex))
        decayTime->removeImmediateListener (this);

    initialise();
    publishDecayTime();
}

Quorlane::~Quorlane() = default;

std::unique_ptr<CorvelleEffect::Core> Quorlane::createCore()
{
    return std::make_unique<QuorlaneCore>();
}

void Quorlane::parameterChanged (Parameter& parameter)
{
    CorvelleEffect::parameterChanged (parameter);

    if (! QuorlaneCore::affectsDecayEstimate (parameter.getIndex()))
        return;

    if (AudioCallbackScope::isActive())
        decayStale.store (true, std::memory_order_relaxed);
    else
        publishDecayTime();
}

void Quorlane::processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midiMessages)
{
    if (decayStale.exchange (false, std::memory_order_relaxed))
        publishDecayTime();

    CorvelleEffect::processBlock (buffer, midiMessages);
}

void Quorlane::prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock)
{
    decayRate.store (sampleRate);
    CorvelleEffect::prepareToPlay (sampleRate, maximumExpectedSamplesPerBlock);
    publishDecayTime();
}

// From the parameters' values, on whichever thread changed one of them; the
// core keeps no say in it, so nothing waits for the core to take the change.
void Quorlane::publishDecayTime()
{
    std::array<double, QuorlaneMapping::parameterCount> values = QuorlaneMapping::defaultValues;

    for (uint32_t i = 0; i < values.size(); ++i)
        if (const auto* p = getPluginParameter (i))
            values[i] = juce::jlimit (0.0, 1.0, (double) p->getNormalisedValue());

    const double seconds = QuorlaneCore::estimateDecaySeconds (values, decayRate.load());
    decaySeconds.store (seconds);

    if (auto* decayTime = getPluginParameter (decayTimeIndex))
        decayTime->setValue ((float) seconds, true);
}

juce::String Quorlane::getParameterDisplayText (int index, float normalisedValue) const
{
    if (index >= 0 && index < hostParameterCount)
        return quorlaneParameterText (index, normalisedValue);

    if (index == (int) decayTimeIndex)
        if (const auto* decayTime = dynamic_cast<const FloatParameter*> (getPluginParameter (decayTimeIndex)))
            return juce::String (juce::jlimit (0.0f, 1.0f, normalisedValue) * decayTime->getMaximum(), 2) + "s";

    return CorvelleEffect::getParameterDisplayText (index, normalisedValue);
}

double Quorlane::getTailLengthSeconds() const
{
    return juce::jlimit (0.0, 1000.0, decaySeconds.load());
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter()
{
    return new Quorlane();
}
