#pragma once

#include "Parameter.h"

#include <array>
#include <atomic>
#include <map>

// Owns every Parameter, filed by index, and fills itself from a parameter
// description document. Lookups (by index or by name) take the list lock for
// the lookup only, never across a call into a parameter; the first 32
// indices, which the audio thread looks up, are found without it.
class ParameterManager
{
public:
    struct Listener
    {
        virtual ~Listener() = default;
        virtual void parameterAdded (Parameter& parameter) = 0;
    };

    explicit ParameterManager (Listener* listener = nullptr);

    // Loads the description compiled in under this file name.
    void load (const juce::String& fileName);

    // Loads a description from its text. Anything unreadable adds nothing.
    void loadFromText (const juce::String& xmlText);

    // Files a parameter under its index; a later one replaces an earlier one.
    void addParameter (std::unique_ptr<Parameter> parameter, bool notify);

    Parameter* getParameter (uint32_t index) const;
    Parameter* findParameter (const juce::String& name) const;
    bool hasParameter (uint32_t index) const;
    int getNumParameters() const;

    // Every parameter in index order.
    juce::Array<Parameter*> getAllParameters() const;

    // Delivers every pending deferred notification (message thread); it
    // allocates nothing.
    void flushDeferredNotifications();

    static constexpr const char* rootTag = "PluginParameters";

private:
    static constexpr uint32_t numDirectIndices = 32;

    Listener* const listener;
    std::array<std::atomic<Parameter*>, numDirectIndices> direct {};
    mutable juce::CriticalSection listLock;
    std::map<uint32_t, std::unique_ptr<Parameter>> parameters;

    JUCE_DECLARE_NON_COPYABLE (ParameterManager)
};
