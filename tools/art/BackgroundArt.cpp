#include "BackgroundArt.h"

#include "KnobArt.h"
#include "Palette.h"

namespace
{
    using SkinLayout::Control;
    using SkinLayout::Kind;

    using SkinLayout::headerHeight;

    void drawChassis (juce::Graphics& g, juce::Rectangle<int> panel)
    {
        g.setGradientFill ({ Palette::chassisTop, 0.0f, 0.0f, Palette::chassisBottom, 0.0f, (float) panel.getHeight(), false });
        g.fillRect (panel);

        // Fine horizontal grain, as on brushed metal; seeded, so every run draws the same panel.
        juce::Random grain (0x0a1e);
        for (int y = 0; y < panel.getHeight(); ++y)
        {
            g.setColour (juce::Colours::white.withAlpha (grain.nextFloat() * 0.035f));
            g.drawHorizontalLine (y, 0.0f, (float) panel.getWidth());
        }

        const auto header = panel.withHeight (headerHeight);
        g.setColour (juce::Colours::black.withAlpha (0.28f));
        g.fillRect (header);
        g.setColour (juce::Colours::black.withAlpha (0.55f));
        g.drawHorizontalLine (headerHeight, 0.0f, (float) panel.getWidth());
        g.setColour (juce::Colours::white.withAlpha (0.07f));
        g.drawHorizontalLine (headerHeight + 1, 0.0f, (float) panel.getWidth());

        g.setColour (juce::Colours::black.withAlpha (0.7f));
        g.drawRect (panel);
    }

    // A recessed plate with its title cut into the top edge and a rule after it.
    void drawSection (juce::Graphics& g, const SkinLayout::Section& section)
    {
        const auto area = section.area.toFloat();

        g.setColour (Palette::sectionShadow.withAlpha (0.7f));
        g.fillRoundedRectangle (area, 4.0f);
        g.setColour (juce::Colours::white.withAlpha (0.06f));
        g.drawRoundedRectangle (area.translated (0.0f, 1.0f).reduced (0.5f), 4.0f, 1.0f);
        g.setGradientFill ({ Palette::sectionFill.brighter (0.08f), 0.0f, area.getY(), Palette::sectionFill.darker (0.15f), 0.0f, area.getBottom(), false });
        g.fillRoundedRectangle (area.reduced (1.0f).withTrimmedTop (1.0f), 3.5f);

        const auto font = Palette::titleFont (10.5f).withExtraKerningFactor (0.12f);
        const auto title = juce::String (section.title).toUpperCase();
        const auto titleArea = area.reduced (7.0f, 0.0f).withTrimmedTop (3.0f).withHeight (11.0f);

        g.setFont (font);
        g.setColour (Palette::amber.withAlpha (0.92f));
        g.drawText (title, titleArea, juce::Justification::centredLeft, false);

        const float ruleStart = titleArea.getX() + font.getStringWidthFloat (title) + 5.0f;
        g.setColour (Palette::amberDim.withAlpha (0.8f));
        g.drawHorizontalLine ((int) titleArea.getCentreY(), ruleStart, titleArea.getRight());

        if (section.dividerY > 0)
        {
            g.setColour (juce::Colours::black.withAlpha (0.5f));
            g.drawHorizontalLine (section.dividerY, area.getX() + 8.0f, area.getRight() - 8.0f);
            g.setColour (juce::Colours::white.withAlpha (0.07f));
            g.drawHorizontalLine (section.dividerY + 1, area.getX() + 8.0f, area.getRight() - 8.0f);
        }
    }

    // Eleven marks around a knob, following its pointer's sweep; the ends are larger.
    void drawScale (juce::Graphics& g, const Control& knob)
    {
        const float radius = KnobArt::radiusFor (*knob.strip);
        const auto centre = knob.bounds.getPosition().toFloat() + juce::Point<float> ((float) knob.bounds.getWidth() * 0.5f, radius + 0.5f);

        for (int mark = 0; mark <= 10; ++mark)
        {
            const bool end = mark == 0 || mark == 10;
            const auto p = centre.getPointOnCircumference (radius + 3.5f, KnobArt::angleFor ((float) mark / 10.0f));
            const float size = end ? 2.2f : 1.5f;

            g.setColour (end ? Palette::legend : Palette::legendDim);
            g.fillEllipse (juce::Rectangle<float> (size, size).withCentre (p));
        }
    }

    void drawLegend (juce::Graphics& g, const juce::String& text, juce::Rectangle<float> area)
    {
        g.setFont (Palette::labelFont (11.0f));
        g.setColour (juce::Colours::black.withAlpha (0.5f));
        g.drawFittedText (text, area.translated (0.0f, 1.0f).toNearestInt(), juce::Justification::centred, 1, 0.85f);
        g.setColour (Palette::legend);
        g.drawFittedText (text, area.toNearestInt(), juce::Justification::centred, 1, 0.85f);
    }

    // A sunken window around a display; the display itself paints the ground inside.
    void drawDisplayWindow (juce::Graphics& g, juce::Rectangle<int> display)
    {
        const auto bezel = display.expanded (3).toFloat();

        g.setColour (juce::Colours::white.withAlpha (0.1f));
        g.fillRoundedRectangle (bezel.translated (0.0f, 1.0f), 3.0f);
        g.setColour (juce::Colour (0xff0b0a09));
        g.fillRoundedRectangle (bezel, 3.0f);
        g.setColour (juce::Colour::fromString (SkinLayout::displayBackgroundColour));
        g.fillRect (display.expanded (1));
    }

    void drawControlArt (juce::Graphics& g, const Control& control)
    {
        const auto bounds = control.bounds.toFloat();
        const juce::String label (control.label);

        switch (control.kind)
        {
            case Kind::Knob:
                drawScale (g, control);
                drawLegend (g, label, { bounds.getCentreX() - 25.0f, bounds.getBottom() + 3.0f, 50.0f, 11.0f });
                break;

            case Kind::Display:
            case Kind::DisplayFloat:
                drawDisplayWindow (g, control.bounds);
                if (label.isNotEmpty())
                    drawLegend (g, label, bounds.withY (bounds.getY() - 17.0f).withHeight (11.0f).expanded (10.0f, 0.0f));
                break;

            case Kind::Animation:
                drawLegend (g, label, bounds.withY (bounds.getBottom() + 1.0f).withHeight (11.0f));
                break;

            case Kind::Button:  // legends are on the keys
                break;
        }
    }

    void drawMaker (juce::Graphics& g)
    {
        g.setFont (Palette::titleFont (12.0f).withExtraKerningFactor (0.35f));
        g.setColour (Palette::legendDim);
        g.drawText ("ORLO", SkinLayout::makerMark, juce::Justification::centred, false);
    }
}

juce::Image BackgroundArt::draw (float scale)
{
    const juce::Rectangle<int> panel (SkinLayout::panelWidth, SkinLayout::panelHeight);
    juce::Image image (juce::Image::RGB, juce::roundToInt ((float) panel.getWidth() * scale),
                       juce::roundToInt ((float) panel.getHeight() * scale), true);
    juce::Graphics g (image);
    g.addTransform (juce::AffineTransform::scale (scale));

    drawChassis (g, panel);

    for (const auto& section : SkinLayout::sections())
        drawSection (g, section);

    for (const auto& control : SkinLayout::controls())
        drawControlArt (g, control);

    drawMaker (g);
    return image;
}
