#pragma once

#include "BasePluginEditorOldStyle.h"

#include "framework/CorvelleEffect.h"

class GFXAnimation;

// The editor of the line's effects: the output meters ("LeftVUMeter",
// "RightVUMeter") fed from the core's meter readings, the quality page of
// the options, and the preset browser on "Browse presets".
class CorvelleEffectEditor : public BasePluginEditorOldStyle,
                             private juce::Timer
{
public:
    explicit CorvelleEffectEditor (CorvelleEffect& effect);
    CorvelleEffectEditor (CorvelleEffect& effect, const juce::XmlElement* skin);
    ~CorvelleEffectEditor() override;

    void handleEvent (int eventId, GUIController* source) override;

    // One meter refresh: shows a reading when the core has one and asks for the next.
    void refreshMeters();

    static constexpr int meterRefreshMs = 30;

protected:
    void addOptionsPages (OptionsPanel& panel) override;

private:
    void timerCallback() override;

    CorvelleEffect& effect;
    GFXAnimation* leftMeter = nullptr;
    GFXAnimation* rightMeter = nullptr;
    bool awaitingMeters = false;
};
