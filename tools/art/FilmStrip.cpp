#include "FilmStrip.h"

juce::Image drawFilmStrip (int frameWidth, int frameHeight, int frames,
                           const std::function<void (juce::Graphics&, int frame)>& drawFrame)
{
    juce::Image strip (juce::Image::ARGB, frameWidth, frameHeight * frames, true);
    juce::Graphics g (strip);

    for (int frame = 0; frame < frames; ++frame)
    {
        const juce::Graphics::ScopedSaveState saved (g);
        g.reduceClipRegion (0, frame * frameHeight, frameWidth, frameHeight);
        g.setOrigin (0, frame * frameHeight);
        drawFrame (g, frame);
    }

    return strip;
}
