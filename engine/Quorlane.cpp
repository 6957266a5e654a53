#include "Quorlane.h"

Quorlane::Quorlane()
{
    initialise();
}

Quorlane::~Quorlane() = default;

std::unique_ptr<CorvelleEffect::Core> Quorlane::createCore()
{
    return nullptr;
}

juce::String Quorlane::getParameterText (int index, float normalisedValue) const
{
    return CorvelleEffect::getParameterText (index, normalisedValue);
}

double Quorlane::getTailLengthSeconds() const
{
    return 0.0;
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter()
{
    return new Quorlane();
}
