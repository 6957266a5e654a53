#include "Parameter.h"

#include "AudioCallbackScope.h"

Parameter::Parameter (uint32_t indexToUse, const juce::String& nameToUse)
    : index (indexToUse), name (nameToUse)
{
}

Parameter::~Parameter()
{
    cancelPendingUpdate();
}

void Parameter::addImmediateListener (Listener* listener)
{
    const juce::SpinLock::ScopedLockType sl (immediateListenerWriteLock);
    const int count = numImmediateListeners.load();

    for (int i = 0; i < count; ++i)
        if (immediateListeners[(size_t) i].load() == listener)
            return;

    if (listener == nullptr || count >= maxImmediateListeners)
    {
        jassertfalse;
        return;
    }

    immediateListeners[(size_t) count].store (listener);
    numImmediateListeners.store (count + 1);
}

void Parameter::removeImmediateListener (Listener* listener)
{
    const juce::SpinLock::ScopedLockType sl (immediateListenerWriteLock);
    const int count = numImmediateListeners.load();

    for (int i = 0; i < count; ++i)
    {
        if (immediateListeners[(size_t) i].load() == listener)
        {
            for (int j = i; j < count - 1; ++j)
                immediateListeners[(size_t) j].store (immediateListeners[(size_t) j + 1].load());

            immediateListeners[(size_t) count - 1].store (nullptr);
            numImmediateListeners.store (count - 1);
            return;
        }
    }
}

void Parameter::addDeferredListener (Listener* listener)
{
    deferredListeners.addIfNotAlreadyThere (listener);
}

void Parameter::removeDeferredListener (Listener* listener)
{
    deferredListeners.removeFirstMatchingValue (listener);
}

void Parameter::notifyChange (bool notify)
{
    if (! notify)
        return;

    for (int i = numImmediateListeners.load() - 1; i >= 0; --i)
        if (auto* listener = immediateListeners[(size_t) i].load())
            listener->parameterChanged (*this);

    int expected = 0;

    // The audio callback posts nothing: its change stays pending until the
    // owner's poll on the message thread delivers it.
    if (deferredPending.compare_exchange_strong (expected, 1) && ! AudioCallbackScope::isActive())
    {
        triggerAsyncUpdate();

        // Without a message loop nothing gets posted; let a later change try again.
        if (! isUpdatePending())
            deferredPending.store (0);
    }
}

void Parameter::flushDeferredNotification()
{
    if (deferredPending.load() == 0)
        return;

    cancelPendingUpdate();
    handleAsyncUpdate();
}

void Parameter::handleAsyncUpdate()
{
    deferredPending.store (0);

    for (int i = deferredListeners.size(); --i >= 0;)
        if (i < deferredListeners.size())
            deferredListeners.getUnchecked (i)->parameterChanged (*this);
}
