#include "EventRegistry.h"

void EventRegistry::clear()
{
    names.clear();
    ids.clear();
}

void EventRegistry::merge (const juce::XmlElement& eventsMap)
{
    if (eventsMap.getTagName() != "EventsMap")
        return;

    for (auto* event : eventsMap.getChildWithTagNameIterator ("event"))
    {
        const auto name = event->getStringAttribute ("name");

        if (name.isNotEmpty() && getId (name) == unknownEvent)
            add (name, firstCustomId + size());
    }
}

void EventRegistry::registerFixedEvents()
{
    add ("Options", options);
    add ("About", about);
    add ("Select next preset", selectNextPreset);
    add ("Select previous preset", selectPreviousPreset);
    add ("Browse presets", browsePresets);
    add ("Save Preset", savePreset);
    add ("Save Preset As", savePresetAs);
    add ("Copy current preset", copyCurrentPreset);
    add ("Paste copied preset", pasteCopiedPreset);
    add ("Store current preset", storeCurrentPreset);
    add ("Toggle Midi Learn", toggleMidiLearn);
}

void EventRegistry::add (const juce::String& name, int id)
{
    const int existing = names.indexOf (name);

    if (existing >= 0)
    {
        ids.set (existing, id);
        return;
    }

    names.add (name);
    ids.add (id);
}

int EventRegistry::getId (const juce::String& name) const
{
    const int i = names.indexOf (name);
    return i >= 0 ? ids[i] : unknownEvent;
}
