#pragma once

#include "engine/CorvelleEffectCore.h"
#include "presets/BasePluginOldStyle.h"

class CorvelleEffect;

// Silent preset changes through the core's preset-change fade: the output
// fades out; at the quiet point the current preset's values are applied to
// the parameters, whose router posts them to the core's inbox, and the core
// takes them there and then; silence is held while the engine settles, and
// the output fades back in. An effect that is not processing has nothing to
// mute, so the preset is applied at once.
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
