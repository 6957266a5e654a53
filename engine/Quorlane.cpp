#include "Quorlane.h"

#include "QuorlaneCore.h"
#include "QuorlaneParameterText.h"

#include "framework/FloatParameter.h"

namespace
{
    // The parameters the decay-time estimate depends on.
    bool affectsDecayEstimate (uint32_t index)
    {
        switch (index)
        {
            case 0: case 1: case 6: case 7: case 8: case 14: case 15: case 16: return true;
            default: return false;
        }
    }
}

Quorlane::Quorlane()
{
    initialise();
    publishDecayTime();
}

Quorlane::~Quorlane() = default;

std::unique_ptr<CorvelleEffect::Core> Quorlane::createCore()
{
    auto core = std::make_unique<QuorlaneCore>();
    reverb = core.get();
    return core;
}

void Quorlane::parameterChanged (Parameter& parameter)
{
    CorvelleEffect::parameterChanged (parameter);

    if (affectsDecayEstimate (parameter.getIndex()))
        publishDecayTime();
}

void Quorlane::prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock)
{
    CorvelleEffect::prepareToPlay (sampleRate, maximumExpectedSamplesPerBlock);
    publishDecayTime();
}

void Quorlane::publishDecayTime()
{
    if (reverb == nullptr)
        return;

    if (auto* decayTime = getPluginParameter (decayTimeIndex))
        decayTime->setValue ((float) reverb->getDecayEstimateSeconds(), true);
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
    return reverb != nullptr ? juce::jlimit (0.0, 1000.0, reverb->getDecayEstimateSeconds()) : 0.0;
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter()
{
    return new Quorlane();
}
