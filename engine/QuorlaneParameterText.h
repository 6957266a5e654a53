#pragma once

#include <string>

// The display text of one of the reverb's parameters 0..19 at a normalised
// value, e.g. "+12.0dB" or "50/50% (Early/Late)". Other indices give an empty
// text, for which the plug-in shows its default.
std::string quorlaneParameterText (int index, float normalisedValue);

// The Late Bass Cut's text while the engine runs it on the curve a prepare
// rebuilds it from, until the knob next moves.
std::string quorlanePreparedBassCutText (float normalisedValue);
