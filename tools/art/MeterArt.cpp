#include "MeterArt.h"

#include "FilmStrip.h"
#include "Palette.h"

namespace
{
    constexpr int segmentHeight = 6, segmentGap = 1, segmentWidth = 14;

    // Green up to the upper quarter, then yellow, red for the last two.
    juce::Colour segmentColour (int segment, int segments)
    {
        if (segment >= segments - 2)
            return Palette::meterRed;

        if (segment >= segments - 4)
            return Palette::meterYellow;

        return Palette::meterGreen;
    }

    void drawSlot (juce::Graphics& g, juce::Rectangle<float> area)
    {
        g.setColour (juce::Colours::white.withAlpha (0.08f));
        g.fillRoundedRectangle (area, 3.0f);
        g.setGradientFill ({ juce::Colour (0xff0d0b0a), 0.0f, area.getY(), juce::Colour (0xff1a1715), 0.0f, area.getBottom(), false });
        g.fillRoundedRectangle (area.withTrimmedBottom (1.0f), 3.0f);
    }
}

juce::Image MeterArt::drawStrip (const SkinLayout::Strip& strip, float scale)
{
    const int segments = strip.frames - 1;
    const int columnHeight = segments * (segmentHeight + segmentGap) - segmentGap;
    const int left = (strip.frameWidth - segmentWidth) / 2;
    const int bottom = (strip.frameHeight + columnHeight) / 2;

    return drawFilmStrip (strip.frameWidth, strip.frameHeight, strip.frames, scale, [&] (juce::Graphics& g, int frame)
    {
        drawSlot (g, juce::Rectangle<float> ((float) strip.frameWidth, (float) strip.frameHeight).reduced (1.0f, 0.0f));

        for (int segment = 0; segment < segments; ++segment)
        {
            const auto colour = segmentColour (segment, segments);
            const int top = bottom - (segment + 1) * (segmentHeight + segmentGap) + segmentGap;
            const auto led = juce::Rectangle<int> (left, top, segmentWidth, segmentHeight).toFloat();

            if (segment < frame)
            {
                g.setColour (colour.withAlpha (0.25f));
                g.fillRoundedRectangle (led.expanded (1.5f), 2.5f);
                g.setGradientFill ({ colour.brighter (0.5f), led.getCentreX(), led.getY(), colour, led.getCentreX(), led.getBottom(), false });
            }
            else
            {
                g.setColour (colour.withMultipliedBrightness (0.22f).withMultipliedSaturation (0.6f));
            }

            g.fillRoundedRectangle (led, 1.0f);
        }
    });
}
