#pragma once

#include "framework/CorvelleEffect.h"

// The product: the reverb with its own parameter texts.
class Quorlane : public CorvelleEffect
{
public:
    Quorlane();
    ~Quorlane() override;

    juce::String getPluginName() const override { return "Quorlane"; }

    juce::String getParameterText (int index, float normalisedValue) const override;

    double getTailLengthSeconds() const override;

protected:
    std::unique_ptr<Core> createCore() override;
};
