#pragma once

#include <juce_events/juce_events.h>

#include <array>
#include <atomic>
#include <cstdint>
#include <memory>

// One value of the plug-in's state, addressed by index. Each kind keeps its
// value in its own unit and converts to and from a normalised float, an
// integer, a flag and text. Changes notify two listener groups: immediate ones
// on the changing thread and deferred ones, coalesced, on the message thread.
// A change made inside the audio callback (AudioCallbackScope) posts nothing
// and waits for the owner to flush it from the message thread.
class Parameter : private juce::AsyncUpdater
{
public:
    struct Listener
    {
        virtual ~Listener() = default;
        virtual void parameterChanged (Parameter& parameter) = 0;
    };

    Parameter (uint32_t index, const juce::String& name);
    ~Parameter() override;

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

    virtual void setValue (float value, bool notify) = 0;
    virtual void setNormalisedValue (float value, bool notify) = 0;
    virtual void setIntValue (int value, bool notify) = 0;
    virtual void setBoolValue (bool value, bool notify) = 0;
    virtual void setText (const juce::String& text, bool notify) = 0;
    virtual void copyValueFrom (const Parameter& other, bool notify) = 0;

    void addImmediateListener (Listener* listener);
    void removeImmediateListener (Listener* listener);
    void addDeferredListener (Listener* listener);
    void removeDeferredListener (Listener* listener);

    // Delivers a pending deferred notification now, whichever thread made the
    // change (message thread only).
    void flushDeferredNotification();

protected:
    // Called by every setter after a real change: tells the immediate
    // listeners now and posts one deferred notification.
    void notifyChange (bool notify);

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
    void handleAsyncUpdate() override;

    static constexpr int maxImmediateListeners = 16;

    const uint32_t index;
    const juce::String name;
    bool automatable = false;

    // The audio thread walks this list without a lock; writers take the spin
    // lock and only ever append or shift entries down.
    std::array<std::atomic<Listener*>, maxImmediateListeners> immediateListeners {};
    std::atomic<int> numImmediateListeners { 0 };
    juce::SpinLock immediateListenerWriteLock;

    juce::Array<Listener*> deferredListeners;
    std::atomic<int> deferredPending { 0 };

    JUCE_DECLARE_NON_COPYABLE (Parameter)
};
