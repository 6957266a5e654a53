#pragma once

#include "CorvelleEffectCore.h"
#include "presets/BasePluginOldStyle.h"

class CorvelleEffect;

// Silent preset changes through the core's preset-change fade: the output
// fades out, the current preset's values are applied at the quiet point (on
// the audio thread, inside the core's render), silence is held while the
// engine settles, and the output fades back in. An effect that is not
// processing has nothing to mute, so the preset is applied at once.
class CorePresetChanger : public BasePluginOldStyle::PresetChanger,
                          private CorvelleEffectCore::PresetChangeTarget
{
public:
    CorePresetChanger (CorvelleEffect& effect, CorvelleEffectCore& core);
    ~CorePresetChanger() override;

    void changePreset() override;

private:
    void applyPendingPresetChange() override;

    CorvelleEffect& effect;
    CorvelleEffectCore& core;
};
