#include "Parameter.h"

Parameter::Parameter (uint32_t indexToUse, const juce::String& nameToUse)
    : index (indexToUse), name (nameToUse)
{
}

Parameter::~Parameter() = default;

void Parameter::addImmediateListener (ImmediateListener* listener)
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

void Parameter::removeImmediateListener (ImmediateListener* listener)
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

void Parameter::notifyChange (ChangeOrigin origin)
{
    if (origin == ChangeOrigin::quiet)
        return;

    for (int i = numImmediateListeners.load() - 1; i >= 0; --i)
        if (auto* listener = immediateListeners[(size_t) i].load())
            listener->parameterChanged (*this, origin);

    deferredPending.store (true, std::memory_order_release);
}

void Parameter::flushDeferredNotification()
{
    if (! deferredPending.exchange (false, std::memory_order_acq_rel))
        return;

    for (int i = deferredListeners.size(); --i >= 0;)
        if (i < deferredListeners.size())
            deferredListeners.getUnchecked (i)->parameterChanged (*this);
}
