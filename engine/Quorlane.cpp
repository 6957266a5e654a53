#include "Quorlane.h"

#include "QuorlaneCore.h"
#include "QuorlaneParameterText.h"

#include "editor/QuorlaneEditor.h"
#include "framework/FloatParameter.h"

Quorlane::Quorlane()
{
    initialise();
    publishDecayTime();
}

Quorlane::~Quorlane()
{
    stopMessageThreadPoll();
}

std::unique_ptr<CorvelleEffect::Core> Quorlane::createCore()
{
    return std::make_unique<QuorlaneCore>();
}

juce::AudioProcessorEditor* Quorlane::createEditor()
{
    return new QuorlaneEditor (*this);
}

void Quorlane::pollMessageThread()
{
    publishDecayTime();
    CorvelleEffect::pollMessageThread();
}

void Quorlane::prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock)
{
    decayRate.store (sampleRate);
    CorvelleEffect::prepareToPlay (sampleRate, maximumExpectedSamplesPerBlock);
    publishDecayTime();
}

std::unique_ptr<juce::XmlElement> Quorlane::buildState()
{
    publishDecayTime();
    return CorvelleEffect::buildState();
}

double Quorlane::estimateDecaySeconds() const
{
    std::array<double, QuorlaneMapping::parameterCount> values = QuorlaneMapping::defaultValues;

    for (uint32_t i = 0; i < values.size(); ++i)
        if (const auto* p = getPluginParameter (i))
            values[i] = juce::jlimit (0.0, 1.0, (double) p->getNormalisedValue());

    return QuorlaneCore::estimateDecaySeconds (values, decayRate.load());
}

// Unchanged values leave the parameter alone, so the poll tells the editor
// only of real changes.
void Quorlane::publishDecayTime()
{
    if (auto* decayTime = getPluginParameter (decayTimeIndex))
        decayTime->setValue ((float) estimateDecaySeconds(), ChangeOrigin::internal);
}

juce::String Quorlane::getParameterDisplayText (int index, float normalisedValue) const
{
    if (index == (int) QuorlaneMapping::lateBassCut)
        if (const auto* p = getPluginParameter ((uint32_t) index); p != nullptr && p->getNormalisedValue() == normalisedValue)
            if (const auto* engine = static_cast<const QuorlaneCore*> (getCore()); engine != nullptr && engine->isBassCutOnPreparedCurve())
                return quorlanePreparedBassCutText (normalisedValue);

    if (index >= 0 && index < hostParameterCount)
        return quorlaneParameterText (index, normalisedValue);

    if (index == (int) decayTimeIndex)
        if (const auto* decayTime = dynamic_cast<const FloatParameter*> (getPluginParameter (decayTimeIndex)))
            return juce::String (juce::jlimit (0.0f, 1.0f, normalisedValue) * decayTime->getMaximum(), 2) + "s";

    return CorvelleEffect::getParameterDisplayText (index, normalisedValue);
}

double Quorlane::getTailLengthSeconds() const
{
    return juce::jlimit (0.0, 1000.0, estimateDecaySeconds());
}

juce::AudioProcessor* JUCE_CALLTYPE createPluginFilter()
{
    return new Quorlane();
}
