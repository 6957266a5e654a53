#pragma once

#include "CorvelleEffectCore.h"
#include "presets/BasePluginOldStyle.h"

#include <utility>

class CorvelleEffect;

// Silent preset changes through the core's preset-change fade: the output
// fades out, the current preset's values go straight into the core at the
// quiet point (inside its render, read from the bank's lock-free copy),
// silence is held while the engine settles, and the output fades back in.
// The parameters catch up once the render call has returned. An effect that
// is not processing has nothing to mute, so the preset is applied at once.
class CorePresetChanger : public BasePluginOldStyle::PresetChanger,
                          private CorvelleEffectCore::PresetChangeTarget
{
public:
    CorePresetChanger (CorvelleEffect& effect, CorvelleEffectCore& core);
    ~CorePresetChanger() override;

    void changePreset() override;

    // Audio thread: whether the core took a preset's values since the last call.
    bool takeValuesApplied() noexcept { return std::exchange (valuesApplied, false); }

private:
    void applyPendingPresetChange() override;

    CorvelleEffect& effect;
    CorvelleEffectCore& core;
    bool valuesApplied = false;
};
