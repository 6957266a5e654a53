#include "ButtonArt.h"

#include "FilmStrip.h"
#include "Palette.h"

namespace
{
    constexpr int restFrame = 0;

    // A raised key at rest; pressed, it sinks and darkens. Returns the legend's colour.
    juce::Colour drawKey (juce::Graphics& g, juce::Rectangle<float> area, bool pressed)
    {
        constexpr float corner = 3.0f;

        g.setColour (juce::Colours::black.withAlpha (0.6f));
        g.fillRoundedRectangle (area, corner);

        const auto key = area.reduced (1.0f).withTrimmedBottom (pressed ? 0.0f : 1.0f).translated (0.0f, pressed ? 0.5f : 0.0f);
        const auto top = pressed ? juce::Colour (0xff2a2522) : juce::Colour (0xff4a433d);
        const auto bottom = pressed ? juce::Colour (0xff1f1b19) : juce::Colour (0xff2e2926);
        g.setGradientFill ({ top, 0.0f, key.getY(), bottom, 0.0f, key.getBottom(), false });
        g.fillRoundedRectangle (key, corner - 1.0f);

        if (! pressed)
        {
            g.setColour (juce::Colours::white.withAlpha (0.16f));
            g.drawHorizontalLine ((int) key.getY(), key.getX() + corner, key.getRight() - corner);
        }

        return pressed ? Palette::amber : Palette::legend;
    }

    // Lit legends get a soft halo so the pressed state reads at a glance.
    void drawGlow (juce::Graphics& g, const juce::Path& shape, juce::Colour colour)
    {
        juce::Path halo;
        juce::PathStrokeType (1.6f, juce::PathStrokeType::curved, juce::PathStrokeType::rounded)
            .createStrokedPath (halo, shape);
        g.setColour (colour.withAlpha (0.16f));
        g.fillPath (halo);
    }

    juce::Path textPath (const juce::String& text, const juce::Font& font, juce::Rectangle<float> area)
    {
        juce::GlyphArrangement glyphs;
        glyphs.addFittedText (font, text, area.getX(), area.getY(), area.getWidth(), area.getHeight(),
                              juce::Justification::centred, 1, 0.8f);
        juce::Path path;
        glyphs.createPath (path);
        return path;
    }

    void drawLegend (juce::Graphics& g, const juce::Path& legend, juce::Colour colour, bool lit)
    {
        if (lit)
            drawGlow (g, legend, colour);

        g.setColour (colour);
        g.fillPath (legend);
    }

    juce::Image drawKeyStrip (const SkinLayout::Strip& strip, float scale, const std::function<juce::Path (juce::Rectangle<float>)>& legendFor)
    {
        return drawFilmStrip (strip.frameWidth, strip.frameHeight, strip.frames, scale, [&] (juce::Graphics& g, int frame)
        {
            const bool pressed = frame != restFrame;
            const auto area = juce::Rectangle<float> ((float) strip.frameWidth, (float) strip.frameHeight);
            const auto colour = drawKey (g, area, pressed);
            drawLegend (g, legendFor (area.reduced (2.0f).translated (0.0f, pressed ? 0.5f : -0.5f)), colour, pressed);
        });
    }

    // A gear: teeth around a ring with a hole.
    juce::Path gear (juce::Point<float> centre, float radius)
    {
        constexpr int teeth = 8;
        juce::Path path;

        for (int i = 0; i < teeth * 2; ++i)
        {
            const float a = juce::MathConstants<float>::twoPi * ((float) i + 0.5f) / (teeth * 2);
            const float r = (i % 2 == 0) ? radius : radius * 0.72f;
            const float halfWidth = juce::MathConstants<float>::pi / (teeth * 2) * 0.8f;
            const auto p0 = centre.getPointOnCircumference (r, a - halfWidth);
            const auto p1 = centre.getPointOnCircumference (r, a + halfWidth);

            if (i == 0)
                path.startNewSubPath (p0);
            else
                path.lineTo (p0);

            path.lineTo (p1);
        }

        path.closeSubPath();
        path.addEllipse (juce::Rectangle<float> (radius * 0.7f, radius * 0.7f).withCentre (centre));
        path.setUsingNonZeroWinding (false);
        return path;
    }
    // A small triangle pointing right, turned a quarter at a time for the other faces.
    juce::Path arrow (juce::Rectangle<float> area, SkinLayout::Face face)
    {
        using SkinLayout::Face;
        const auto c = area.getCentre();
        const float w = 3.0f, h = 4.0f;
        const float quarterTurns = face == Face::DownArrow ? 1.0f : face == Face::LeftArrow ? 2.0f : face == Face::UpArrow ? 3.0f : 0.0f;
        juce::Path path;
        path.addTriangle (c.x - w, c.y - h, c.x - w, c.y + h, c.x + w, c.y);
        path.applyTransform (juce::AffineTransform::rotation (quarterTurns * juce::MathConstants<float>::halfPi, c.x, c.y));
        return path;
    }

    juce::Image drawWordmark (const SkinLayout::Strip& strip, float scale, const juce::String& name)
    {
        return drawFilmStrip (strip.frameWidth, strip.frameHeight, strip.frames, scale, [&] (juce::Graphics& g, int frame)
        {
            const bool lit = frame != restFrame;

            juce::GlyphArrangement glyphs;
            glyphs.addJustifiedText (Palette::wordmarkFont (24.0f), name, 2.0f, 20.0f, (float) strip.frameWidth, juce::Justification::left);
            juce::Path letters;
            glyphs.createPath (letters);

            // An engraved shadow under the name, as if cut into the chassis.
            g.setColour (juce::Colours::black.withAlpha (0.6f));
            g.fillPath (letters, juce::AffineTransform::translation (0.0f, 1.0f));
            drawLegend (g, letters, lit ? Palette::amber : Palette::legend, lit);
        });
    }
}

juce::Image ButtonArt::drawStrip (const SkinLayout::Control& button, float scale)
{
    using SkinLayout::Face;
    const auto& strip = *button.strip;
    const juce::String legend (button.label);

    switch (button.face)
    {
        case Face::Wordmark:
            return drawWordmark (strip, scale, legend);

        case Face::LeftArrow:
        case Face::RightArrow:
        case Face::UpArrow:
        case Face::DownArrow:
            return drawKeyStrip (strip, scale, [&] (juce::Rectangle<float> area) { return arrow (area, button.face); });

        case Face::Gear:
            return drawKeyStrip (strip, scale, [&] (juce::Rectangle<float> area)
            {
                auto face = gear ({ area.getCentreX(), area.getY() + 13.0f }, 8.5f);
                face.addPath (textPath (legend, Palette::titleFont (10.5f), area.withTrimmedTop (24.0f).withHeight (12.0f)));
                return face;
            });

        case Face::Legend:
            break;
    }

    return drawKeyStrip (strip, scale, [&] (juce::Rectangle<float> area) { return textPath (legend, Palette::titleFont (10.5f), area); });
}
