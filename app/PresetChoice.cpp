#include "PresetChoice.h"

#include "RenderErrors.h"
#include "engine/Quorlane.h"
#include "framework/XmlReading.h"
#include "presets/Preset.h"

#include <algorithm>

namespace
{
    // Edits (insertions, deletions, substitutions) between two names, ignoring case.
    int editDistance (const juce::String& a, const juce::String& b)
    {
        const auto x = a.toLowerCase(), y = b.toLowerCase();
        std::vector<int> previous ((size_t) y.length() + 1), current (previous.size());

        for (size_t j = 0; j < previous.size(); ++j)
            previous[j] = (int) j;

        for (int i = 1; i <= x.length(); ++i)
        {
            current[0] = i;

            for (int j = 1; j <= y.length(); ++j)
                current[(size_t) j] = std::min ({ previous[(size_t) j] + 1, current[(size_t) j - 1] + 1,
                                                  previous[(size_t) j - 1] + (x[i - 1] == y[j - 1] ? 0 : 1) });

            std::swap (previous, current);
        }

        return previous.back();
    }

    struct FactoryPreset
    {
        juce::String group, name;
        int slot;
    };

    // The factory bank's presets in slot order, without the "Not used" slots.
    std::vector<FactoryPreset> factoryPresets (Quorlane& plugin)
    {
        if (! plugin.loadFactoryBank())
            throw RenderError ("the plug-in's factory bank could not be read");

        std::vector<FactoryPreset> presets;
        int slot = 0;

        for (const auto& group : plugin.getGroups())
        {
            if (group.name != PresetBankRecord::unusedGroupName)
                for (int i = 0; i < group.count; ++i)
                    presets.push_back ({ group.name, plugin.getSlotName (slot + i), slot + i });

            slot += group.count;
        }

        return presets;
    }

    // Names that contain the request, or lie within a few typing slips of it.
    juce::StringArray closeNames (const juce::StringArray& names, const juce::String& wanted)
    {
        std::vector<std::pair<int, juce::String>> scored;
        const int tolerance = std::max (3, wanted.length() / 3);

        for (const auto& name : names)
        {
            const bool contains = name.containsIgnoreCase (wanted.trim()) || wanted.containsIgnoreCase (name);
            const int distance = editDistance (name, wanted);

            if (contains || distance <= tolerance)
                scored.emplace_back (contains ? 0 : distance, name);
        }

        std::stable_sort (scored.begin(), scored.end(), [] (const auto& a, const auto& b) { return a.first < b.first; });

        juce::StringArray result;

        for (size_t i = 0; i < scored.size() && i < 8; ++i)
            result.add (scored[i].second);

        return result;
    }

    bool namesAFile (Quorlane& plugin, const juce::String& choice)
    {
        return choice.endsWithIgnoreCase (plugin.getPresetFileExtension());
    }

    void applyFactoryPreset (Quorlane& plugin, const juce::String& name)
    {
        const auto presets = factoryPresets (plugin);
        juce::StringArray names;

        for (const auto& preset : presets)
        {
            if (preset.name.equalsIgnoreCase (name.trim()))
            {
                plugin.selectPreset (preset.slot, false);
                plugin.applyCurrentPreset();
                return;
            }

            names.add (preset.name);
        }

        juce::String message;
        message << "unknown preset \"" << name << "\".";
        const auto close = closeNames (names, name);

        if (close.isEmpty())
            message << " --list-presets shows the factory presets.";
        else
            message << " Close names:\n  " << close.joinIntoString ("\n  ");

        throw UsageError (message.toStdString());
    }

    void applyValues (Quorlane& plugin, const PresetRecord& record)
    {
        for (int i = 0; i < PresetRecord::numValues; ++i)
            if (auto* p = plugin.getPluginParameter ((uint32_t) (BasePluginOldStyle::firstPresetableIndex + i)))
                p->setNormalisedValue (record.values[(size_t) i], ChangeOrigin::preset);
    }

    // The file's values over the defaults, like a factory preset over nothing.
    void applyPresetFile (Quorlane& plugin, const juce::File& file)
    {
        if (! file.existsAsFile())
            throw RenderError (("no preset file " + file.getFullPathName()).toStdString());

        auto record = plugin.getDefaultPreset();
        const auto element = parseXmlFile (file);

        if (element == nullptr || ! Preset::read (*element, record, plugin.getParameterManager(), plugin.getPluginName()))
            throw RenderError (("cannot use " + file.getFullPathName() + ": it is not a Quorlane preset").toStdString());

        applyValues (plugin, record);
    }
}

void applyPresetChoice (Quorlane& plugin, const juce::String& choice)
{
    if (choice.isEmpty())
        applyValues (plugin, plugin.getDefaultPreset());
    else if (namesAFile (plugin, choice))
        applyPresetFile (plugin, juce::File::getCurrentWorkingDirectory().getChildFile (choice));
    else
        applyFactoryPreset (plugin, choice);
}

juce::String listFactoryPresets (Quorlane& plugin)
{
    juce::String text, group;

    for (const auto& preset : factoryPresets (plugin))
    {
        if (preset.group != group)
            text << (group = preset.group) << "\n";

        text << juce::String (preset.slot + 1).paddedLeft (' ', 5) << "  " << preset.name << "\n";
    }

    return text;
}
