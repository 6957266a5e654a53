#include "KnobArt.h"

#include "FilmStrip.h"
#include "Palette.h"

float KnobArt::angleFor (float position)
{
    return juce::degreesToRadians (sweepDegrees * (position - 0.5f));
}

float KnobArt::radiusFor (const SkinLayout::Strip& strip)
{
    // One pixel stays free below the knob for its shadow.
    return (float) juce::jmin (strip.frameWidth, strip.frameHeight - 1) * 0.5f - 0.5f;
}

namespace
{
    juce::Point<float> polar (juce::Point<float> centre, float radius, float angle)
    {
        return centre.getPointOnCircumference (radius, angle);
    }

    void drawSkirt (juce::Graphics& g, juce::Point<float> centre, float radius, float angle)
    {
        const auto outer = juce::Rectangle<float> (radius * 2.0f, radius * 2.0f).withCentre (centre);

        g.setColour (juce::Colours::black.withAlpha (0.55f));
        g.fillEllipse (outer.translated (0.0f, 1.0f));

        g.setGradientFill ({ Palette::knobSkirt.brighter (0.5f), centre.x, outer.getY(),
                             Palette::knobSkirt.darker (0.6f), centre.x, outer.getBottom(), false });
        g.fillEllipse (outer);

        // Grip ridges turn with the knob, so even a small movement shows.
        g.setColour (juce::Colours::white.withAlpha (0.09f));
        for (int ridge = 0; ridge < 30; ++ridge)
        {
            const float a = angle + juce::MathConstants<float>::twoPi * (float) ridge / 30.0f;
            g.drawLine ({ polar (centre, radius * 0.80f, a), polar (centre, radius - 0.8f, a) }, 0.9f);
        }

        g.setColour (juce::Colours::black.withAlpha (0.6f));
        g.drawEllipse (outer.reduced (0.3f), 0.7f);
    }

    void drawCap (juce::Graphics& g, juce::Point<float> centre, float radius, juce::Colour cap)
    {
        const auto face = juce::Rectangle<float> (radius * 1.5f, radius * 1.5f).withCentre (centre);

        g.setColour (juce::Colours::black.withAlpha (0.45f));
        g.fillEllipse (face.expanded (0.8f).translated (0.0f, 0.8f));

        // Light falls from the upper left, as on the rest of the panel.
        juce::ColourGradient shade (cap.brighter (0.55f), face.getX() + face.getWidth() * 0.3f, face.getY(),
                                    cap.darker (0.45f), face.getRight() - face.getWidth() * 0.2f, face.getBottom(), true);
        g.setGradientFill (shade);
        g.fillEllipse (face);

        g.setGradientFill ({ juce::Colours::white.withAlpha (0.22f), centre.x, face.getY(),
                             juce::Colours::transparentWhite, centre.x, face.getBottom(), false });
        g.drawEllipse (face.reduced (0.5f), 0.8f);
    }

    juce::Path roundedStroke (juce::Line<float> line, float width)
    {
        juce::Path centreLine, stroke;
        centreLine.startNewSubPath (line.getStart());
        centreLine.lineTo (line.getEnd());
        juce::PathStrokeType (width, juce::PathStrokeType::curved, juce::PathStrokeType::rounded)
            .createStrokedPath (stroke, centreLine);
        return stroke;
    }

    // A light bar with a dark rim, readable on any cap.
    void drawPointer (juce::Graphics& g, juce::Point<float> centre, float radius, float angle, juce::Colour colour)
    {
        const juce::Line<float> line (polar (centre, radius * 0.22f, angle), polar (centre, radius * 0.93f, angle));
        const float width = juce::jmax (1.8f, radius * 0.13f);

        g.setColour (juce::Colours::black.withAlpha (0.55f));
        g.fillPath (roundedStroke (line, width + 1.6f));
        g.setColour (colour);
        g.fillPath (roundedStroke (line, width));
    }
}

juce::Image KnobArt::drawStrip (const SkinLayout::Strip& strip, float scale, juce::Colour cap, juce::Colour pointer)
{
    return drawFilmStrip (strip.frameWidth, strip.frameHeight, strip.frames, scale, [&] (juce::Graphics& g, int frame)
    {
        const float radius = radiusFor (strip);
        const juce::Point<float> centre ((float) strip.frameWidth * 0.5f, radius + 0.5f);
        const float angle = angleFor ((float) frame / (float) (strip.frames - 1));

        drawSkirt (g, centre, radius, angle);
        drawCap (g, centre, radius, cap);
        drawPointer (g, centre, radius, angle, pointer);
    });
}
