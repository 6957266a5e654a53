#pragma once

#include "framework/CorvelleEffect.h"

#include <juce_gui_basics/juce_gui_basics.h>

// The options page of the interpolation quality: the default for new
// instances (kept in the user settings) and this instance's current quality.
class QualitySettingsPage : public juce::Component,
                            private Parameter::Listener
{
public:
    explicit QualitySettingsPage (CorvelleEffect& effect);
    ~QualitySettingsPage() override;

    juce::ComboBox& getDefaultQualityBox() noexcept { return defaultQuality; }
    juce::ComboBox& getCurrentQualityBox() noexcept { return currentQuality; }

    void paint (juce::Graphics& g) override;
    void resized() override;

    static constexpr const char* restartNote =
        "After changing this setting you need to restart your project (Stop/Start) to update plug-in's latency.";

private:
    void parameterChanged (Parameter& parameter) override;

    CorvelleEffect& effect;
    Parameter* quality = nullptr;
    juce::ComboBox defaultQuality, currentQuality;
};
