#include "CorePresetChanger.h"

#include "CorvelleEffect.h"

CorePresetChanger::CorePresetChanger (CorvelleEffect& e, CorvelleEffectCore& c) : effect (e), core (c)
{
    core.setPresetChangeTarget (this);
}

CorePresetChanger::~CorePresetChanger()
{
    const juce::ScopedLock sl (effect.getProcessingLock());
    core.setPresetChangeTarget (nullptr);
}

void CorePresetChanger::changePreset()
{
    if (! effect.isPrepared() || effect.isSuspended())
    {
        effect.applyCurrentPreset();
        return;
    }

    core.postPresetChange();
}

void CorePresetChanger::applyPendingPresetChange()
{
    std::array<float, BasePluginOldStyle::numPresetableParameters> values;

    if (! effect.readPresetValues ((int) effect.getCurrentPresetIndex(), values))
        return;

    // As a change through the parameters would, only values that differ reach the core.
    for (size_t i = 0; i < values.size(); ++i)
    {
        const auto index = (uint32_t) (BasePluginOldStyle::firstPresetableIndex + (int) i);
        const auto* parameter = effect.getPluginParameter (index);
        const float value = juce::jlimit (0.0f, 1.0f, values[i]);

        if (parameter != nullptr && parameter->getNormalisedValue() != value && ! effect.keepsOnPresetChange ((int) i))
            core.setParameter (index, value);
    }

    valuesApplied = true;
}
