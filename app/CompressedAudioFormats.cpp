// JUCE's FLAC and Ogg Vorbis formats, compiled in this file alone with the
// switches that the rest of the build has off, on the system's codec headers.
#undef JUCE_USE_FLAC
#define JUCE_USE_FLAC 1
#undef JUCE_USE_OGGVORBIS
#define JUCE_USE_OGGVORBIS 1

#include "CompressedAudioFormats.h"

#include <juce_audio_formats/codecs/juce_FlacAudioFormat.cpp>
#include <juce_audio_formats/codecs/juce_OggVorbisAudioFormat.cpp>

void addCompressedAudioFormats (juce::AudioFormatManager& formats)
{
    formats.registerFormat (new juce::FlacAudioFormat(), false);
    formats.registerFormat (new juce::OggVorbisAudioFormat(), false);
}
