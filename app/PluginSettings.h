#pragma once

#include <juce_core/juce_core.h>

#include <vector>

class Quorlane;

// The parameter values and quality a render asks for.
struct PluginSettings
{
    struct Value
    {
        juce::String name;
        float normalised = 0.0f;
    };

    std::vector<Value> values; // applied in order after the preset, so a later one wins
    int qualityStep = 3;       // offline rendering has time for the best
    juce::String preset = {};  // a factory preset's name or a preset file; empty: the defaults
};

// Brings a plug-in to the settings: the preset first, then the values. Names
// match the host-visible parameters without regard to case; an unknown one
// throws a UsageError that lists the valid names.
void applySettings (Quorlane& plugin, const PluginSettings& settings);

// One line per host-visible parameter: its name, normalised value and the
// plug-in's own text for it, then the quality.
juce::String describeParameters (const Quorlane& plugin);
