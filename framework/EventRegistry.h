#pragma once

#include <juce_core/juce_core.h>

// Maps the names of editor events (the skin's `action` elements name them) to
// integer ids. The framework's own events have fixed ids; events read from an
// optional "events.xml" are numbered from firstCustomId in document order.
class EventRegistry
{
public:
    enum FixedEvent
    {
        options = 1000,
        about = 1001,
        selectNextPreset = 1002,
        selectPreviousPreset = 1003,
        browsePresets = 1004,
        savePreset = 1005,
        savePresetAs = 1006,
        copyCurrentPreset = 1007,
        pasteCopiedPreset = 1008,
        storeCurrentPreset = 1009,
        toggleMidiLearn = 1010
    };

    static constexpr int firstCustomId = 2000;
    static constexpr int unknownEvent = -1;

    void clear();

    // Merges an `EventsMap` document's `event` children; anything else adds nothing.
    void merge (const juce::XmlElement& eventsMap);

    void registerFixedEvents();

    // Registering a known name again gives it the new id.
    void add (const juce::String& name, int id);

    int getId (const juce::String& name) const;    // unknownEvent when absent
    int size() const { return ids.size(); }

private:
    juce::StringArray names;
    juce::Array<int> ids;
};
