#include "IconArt.h"

#include "Palette.h"

namespace
{
    // The sizes of the hicolor icon theme that launchers and window lists use.
    constexpr int iconSizes[] = { 16, 22, 24, 32, 48, 64, 128, 256 };

    // A knob on the chassis, turned well up, inside an amber arc that reads
    // as a decaying tail: bright where it starts, fading as it goes round.
    juce::Image drawIcon (int size)
    {
        juce::Image image (juce::Image::ARGB, size, size, true);
        juce::Graphics g (image);
        const float s = (float) size;

        const auto plate = juce::Rectangle<float> (s, s).reduced (s * 0.04f);
        const float corner = s * 0.2f;
        g.setGradientFill ({ Palette::chassisTop.brighter (0.15f), 0.0f, plate.getY(),
                             Palette::chassisBottom, 0.0f, plate.getBottom(), false });
        g.fillRoundedRectangle (plate, corner);
        g.setColour (Palette::sectionEdge);
        g.drawRoundedRectangle (plate.reduced (0.5f), corner, juce::jmax (1.0f, s / 48.0f));

        const auto centre = plate.getCentre();
        const float arcRadius = s * 0.33f, arcWidth = juce::jmax (1.5f, s * 0.075f);
        const float start = juce::degreesToRadians (-135.0f), end = juce::degreesToRadians (135.0f);
        const juce::PathStrokeType arcStroke (arcWidth, juce::PathStrokeType::curved, juce::PathStrokeType::rounded);

        juce::Path track;
        track.addCentredArc (centre.x, centre.y, arcRadius, arcRadius, 0.0f, start, end, true);
        g.setColour (Palette::amberDim);
        g.strokePath (track, arcStroke);

        // The lit part in steps, each a little dimmer than the one before.
        constexpr int steps = 12;
        const float lit = juce::degreesToRadians (75.0f);

        for (int i = 0; i < steps; ++i)
        {
            juce::Path piece;
            const float from = start + (lit - start) * (float) i / steps, to = start + (lit - start) * (float) (i + 1) / steps;
            piece.addCentredArc (centre.x, centre.y, arcRadius, arcRadius, 0.0f, from, to, true);
            g.setColour (Palette::amber.interpolatedWith (Palette::amberDim, 0.6f * (float) i / steps));
            g.strokePath (piece, arcStroke);
        }

        const float knobRadius = s * 0.22f;
        const auto knob = juce::Rectangle<float> (knobRadius * 2.0f, knobRadius * 2.0f).withCentre (centre);
        g.setColour (juce::Colours::black.withAlpha (0.5f));
        g.fillEllipse (knob.translated (0.0f, s / 32.0f));
        g.setGradientFill ({ Palette::knobCapWarm.brighter (0.6f), knob.getX() + knob.getWidth() * 0.3f, knob.getY(),
                             Palette::knobSkirt, knob.getRight(), knob.getBottom(), true });
        g.fillEllipse (knob);

        const auto tip = centre.getPointOnCircumference (knobRadius * 0.8f, lit);
        const auto base = centre.getPointOnCircumference (knobRadius * 0.2f, lit);
        g.setColour (Palette::pointer);
        g.drawLine ({ base, tip }, juce::jmax (1.5f, s * 0.06f));

        return image;
    }
}

std::vector<ArtFile> drawIconArt()
{
    std::vector<ArtFile> files;

    for (const auto size : iconSizes)
        files.push_back ({ "quorlane-" + juce::String (size) + ".png", drawIcon (size) });

    return files;
}
