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

    const juce::ScopedLock sl (effect.getProcessingLock());
    core.beginPresetChange();
}

void CorePresetChanger::applyPendingPresetChange()
{
    effect.applyCurrentPresetValues();
}
