#pragma once

#include <juce_audio_formats/juce_audio_formats.h>

// FLAC and Ogg Vorbis, which the plug-in's library is built without (the
// plug-ins read no audio files): the renderer adds them to its formats where
// the build has them.
void addCompressedAudioFormats (juce::AudioFormatManager& formats);
