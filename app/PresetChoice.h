#pragma once

#include <juce_core/juce_core.h>

class Quorlane;

// Where a render's parameters start before any --set: a factory preset by
// name (without regard to case), a preset file (a name ending in the preset
// extension; factory names hold slashes), or, when the choice is empty,
// the plug-in's defaults. Renders never start from the user's own bank or
// first preset, so the same command renders the same way everywhere.
//
// An unknown name throws a UsageError listing the factory names closest to
// it; a preset file that is missing or not a Quorlane preset throws a
// RenderError.
void applyPresetChoice (Quorlane& plugin, const juce::String& choice);

// The factory presets by group, numbered by slot (one-based).
juce::String listFactoryPresets (Quorlane& plugin);
