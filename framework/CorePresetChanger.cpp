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

// Audio thread, inside the core's render.
void CorePresetChanger::applyPendingPresetChange()
{
    effect.applyCurrentPresetValues (ChangeOrigin::fade);
}
