#include "FilmStrip.h"

juce::Image drawFilmStrip (int frameWidth, int frameHeight, int frames, float scale,
                           const std::function<void (juce::Graphics&, int frame)>& drawFrame)
{
    juce::Image strip (juce::Image::ARGB, juce::roundToInt ((float) frameWidth * scale),
                       juce::roundToInt ((float) (frameHeight * frames) * scale), true);
    juce::Graphics g (strip);
    g.addTransform (juce::AffineTransform::scale (scale));

    for (int frame = 0; frame < frames; ++frame)
    {
        const juce::Graphics::ScopedSaveState saved (g);
        g.reduceClipRegion (0, frame * frameHeight, frameWidth, frameHeight);
        g.setOrigin (0, frame * frameHeight);
        drawFrame (g, frame);
    }

    return strip;
}
