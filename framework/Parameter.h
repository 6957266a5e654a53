#pragma once

#include "ChangeOrigin.h"

#include <juce_core/juce_core.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

// One value of the plug-in's state, addressed by index. Each kind keeps its
// value in its own unit and converts to and from a normalised float, an
// integer, a flag and text. A change (other than a quiet one) tells two
// listener groups: immediate ones at once, on the changing thread, with the
// change's origin; deferred ones later, coalesced, on the message thread,
// when the owner flushes them. Nothing is posted from the changing thread, so
// any thread may change a value.
class Parameter
{
public:
    // Deferred: on the message thread.
    struct Listener
    {
        virtual ~Listener() = default;
        virtual void parameterChanged (Parameter& parameter) = 0;
    };

    // Immediate: on the thread that made the change; must not block.
    struct ImmediateListener
    {
        virtual ~ImmediateListener() = default;
        virtual void parameterChanged (Parameter& parameter, ChangeOrigin origin) = 0;
    };

    Parameter (uint32_t index, const juce::String& name);
    virtual ~Parameter();

    uint32_t getIndex() const noexcept { return index; }
    const juce::String& getName() const noexcept { return name; }

    bool isAutomatable() const noexcept { return automatable; }
    void setAutomatable (bool shouldBeAutomatable) noexcept { automatable = shouldBeAutomatable; }

    virtual std::unique_ptr<Parameter> clone() const = 0;

    virtual float getValue() const = 0;
    virtual float getNormalisedValue() const = 0;
    virtual int getIntValue() const = 0;
    virtual bool getBoolValue() const = 0;
    virtual juce::String getText() const = 0;

    virtual void setValue (float value, ChangeOrigin origin) = 0;
    virtual void setNormalisedValue (float value, ChangeOrigin origin) = 0;
    virtual void setIntValue (int value, ChangeOrigin origin) = 0;
    virtual void setBoolValue (bool value, ChangeOrigin origin) = 0;
    virtual void setText (const juce::String& text, ChangeOrigin origin) = 0;
    virtual void copyValueFrom (const Parameter& other, ChangeOrigin origin) = 0;

    void addImmediateListener (ImmediateListener* listener);
    void removeImmediateListener (ImmediateListener* listener);
    void addDeferredListener (Listener* listener);
    void removeDeferredListener (Listener* listener);

    // Delivers a pending deferred notification now, whichever thread made the
    // change (message thread only).
    void flushDeferredNotification();
    bool hasDeferredNotification() const noexcept { return deferredPending.load (std::memory_order_relaxed); }

protected:
    // Called by every setter after a real change: tells the immediate
    // listeners now and leaves one deferred notification pending.
    void notifyChange (ChangeOrigin origin);

    void copyCommonFieldsTo (Parameter& other) const noexcept { other.automatable = automatable; }

    // Where a value of the range [min, max] lies; NaN (which compares false
    // with both bounds) becomes min.
    template <typename T>
    static T clampToRange (T value, T min, T max) noexcept
    {
        if (value < min) return min;
        if (value > max) return max;
        if (value >= min && value <= max) return value;
        return min;
    }

    // Stores through an atomic exchange unless the value is unchanged.
    template <typename T>
    static bool storeIfDifferent (std::atomic<T>& slot, T newValue) noexcept
    {
        const T current = slot.load();

        if (! (newValue < current) && ! (newValue > current))
            return false;

        slot.exchange (newValue);
        return true;
    }

private:
    static constexpr int maxImmediateListeners = 16;

    const uint32_t index;
    const juce::String name;
    bool automatable = false;

    // The audio thread walks this list without a lock; writers take the spin
    // lock and only ever append or shift entries down.
    std::array<std::atomic<ImmediateListener*>, maxImmediateListeners> immediateListeners {};
    std::atomic<int> numImmediateListeners { 0 };
    juce::SpinLock immediateListenerWriteLock;

    juce::Array<Listener*> deferredListeners;
    std::atomic<bool> deferredPending { false };

    JUCE_DECLARE_NON_COPYABLE (Parameter)
};
