#include "DecayPlot.h"

#include "ImpulseResponse.h"
#include "RenderErrors.h"
#include "SafeOutputFile.h"

namespace
{
    constexpr int width = 960, height = 540;
    constexpr double floorDb = -100.0;

    const juce::Colour channelColours[] = { juce::Colour (0xff1f5fa8), juce::Colour (0xffd9641e) };
    const juce::Colour estimateColour (0xff2a8a3c);

    // 1, 2 or 5 times a power of ten, so that about `count` ticks fit.
    double tickSpacing (double range, int count)
    {
        const double rough = range / count;
        const double power = std::pow (10.0, std::floor (std::log10 (rough)));

        for (const double step : { 1.0, 2.0, 5.0 })
            if (rough <= step * power)
                return step * power;

        return 10.0 * power;
    }

    // How long the curves take to reach the bottom of the plot, and at least
    // a little beyond the estimate so its marker shows.
    double timeRange (const std::vector<double> (&curves)[2], double sampleRate, double estimate)
    {
        double seconds = 0.1;

        for (const auto& curve : curves)
        {
            const auto bottom = std::find_if (curve.begin(), curve.end(), [] (double db) { return db <= floorDb; });
            seconds = std::max (seconds, (double) std::distance (curve.begin(), bottom) / sampleRate);
        }

        return std::max (seconds, estimate * 1.1);
    }

    juce::Path curvePath (const std::vector<double>& curve, double sampleRate, double seconds,
                          juce::Rectangle<float> area)
    {
        juce::Path path;
        const auto yFor = [area] (double db) { return area.getY() + (float) (juce::jlimit (floorDb, 0.0, db) / floorDb) * area.getHeight(); };

        for (int column = 0; column <= (int) area.getWidth(); ++column)
        {
            const auto index = (size_t) (column / area.getWidth() * seconds * sampleRate);

            if (index >= curve.size())
                break;

            const double db = curve[index];
            const juce::Point<float> point (area.getX() + (float) column, yFor (db));

            if (column == 0)
                path.startNewSubPath (point);
            else
                path.lineTo (point);

            if (db <= floorDb)
                break;
        }

        return path;
    }

    void drawAxes (juce::Graphics& g, juce::Rectangle<float> area, double seconds)
    {
        g.setFont (14.0f);

        for (int db = 0; db >= (int) floorDb; db -= 10)
        {
            const float y = area.getY() + (float) (db / floorDb) * area.getHeight();
            g.setColour (db == -60 ? juce::Colours::grey : juce::Colours::lightgrey);
            g.drawHorizontalLine ((int) y, area.getX(), area.getRight());
            g.setColour (juce::Colours::black);
            g.drawText (juce::String (db), juce::Rectangle<float> (area.getX() - 48.0f, y - 8.0f, 40.0f, 16.0f),
                        juce::Justification::centredRight);
        }

        const double spacing = tickSpacing (seconds, 8);
        const int decimals = spacing >= 1.0 ? 0 : (spacing >= 0.1 ? 1 : 2);

        for (double t = 0.0; t <= seconds + spacing * 1e-6; t += spacing)
        {
            const float x = area.getX() + (float) (t / seconds) * area.getWidth();
            g.setColour (juce::Colours::lightgrey);
            g.drawVerticalLine ((int) x, area.getY(), area.getBottom());
            g.setColour (juce::Colours::black);
            g.drawText (juce::String (t, decimals), juce::Rectangle<float> (x - 30.0f, area.getBottom() + 6.0f, 60.0f, 16.0f),
                        juce::Justification::centred);
        }

        g.setColour (juce::Colours::black);
        g.drawRect (area, 1.0f);

        g.setFont (16.0f);
        g.drawText ("Time (s)", juce::Rectangle<float> (area.getX(), area.getBottom() + 28.0f, area.getWidth(), 20.0f),
                    juce::Justification::centred);

        juce::Graphics::ScopedSaveState state (g);
        const float labelX = area.getX() - 62.0f, labelY = area.getCentreY();
        g.addTransform (juce::AffineTransform::rotation (-juce::MathConstants<float>::halfPi, labelX, labelY));
        g.drawText ("Energy remaining (dB)", juce::Rectangle<float> (labelX - 150.0f, labelY - 10.0f, 300.0f, 20.0f),
                    juce::Justification::centred);
    }

    void drawLegendEntry (juce::Graphics& g, juce::Point<float> at, juce::Colour colour, bool dashed, const juce::String& text)
    {
        const juce::Line<float> sample (at, at.translated (28.0f, 0.0f));
        const float dashes[] = { 6.0f, 4.0f };
        g.setColour (colour);

        if (dashed)
            g.drawDashedLine (sample, dashes, 2, 2.0f);
        else
            g.drawLine (sample, 2.0f);

        g.setColour (juce::Colours::black);
        g.drawText (text, juce::Rectangle<float> (at.x + 36.0f, at.y - 9.0f, 260.0f, 18.0f), juce::Justification::centredLeft);
    }
}

juce::Image drawDecayPlot (const ImpulseResponse& response)
{
    juce::Image image (juce::Image::RGB, width, height, true);
    juce::Graphics g (image);
    g.fillAll (juce::Colours::white);

    const std::vector<double> curves[] = { energyDecayCurve (response.samples.getReadPointer (0), response.samples.getNumSamples(), response.sampleRate),
                                           energyDecayCurve (response.samples.getReadPointer (1), response.samples.getNumSamples(), response.sampleRate) };
    const double estimate = response.estimatedDecaySeconds;
    const double seconds = timeRange (curves, response.sampleRate, estimate);
    const juce::Rectangle<float> area (90.0f, 50.0f, (float) width - 120.0f, (float) height - 120.0f);

    g.setColour (juce::Colours::black);
    g.setFont (18.0f);
    g.drawText ("Quorlane energy decay (Schroeder integration), " + juce::String (response.sampleRate, 0) + " Hz",
                juce::Rectangle<float> (area.getX(), 12.0f, area.getWidth(), 24.0f), juce::Justification::centredLeft);

    drawAxes (g, area, seconds);

    {
        juce::Graphics::ScopedSaveState state (g);
        g.reduceClipRegion (area.toNearestInt());

        for (int channel = 0; channel < 2; ++channel)
        {
            g.setColour (channelColours[channel]);
            g.strokePath (curvePath (curves[channel], response.sampleRate, seconds, area), juce::PathStrokeType (2.0f));
        }

        if (estimate > 0.0)
        {
            const float x = area.getX() + (float) (estimate / seconds) * area.getWidth();
            const float dashes[] = { 6.0f, 4.0f };
            g.setColour (estimateColour);
            g.drawDashedLine (juce::Line<float> (x, area.getY(), x, area.getBottom()), dashes, 2, 2.0f);
        }
    }

    g.setFont (15.0f);
    const juce::Point<float> legend (area.getRight() - 300.0f, area.getY() + 20.0f);
    drawLegendEntry (g, legend, channelColours[0], false, "Left");
    drawLegendEntry (g, legend.translated (0.0f, 22.0f), channelColours[1], false, "Right");
    drawLegendEntry (g, legend.translated (0.0f, 44.0f), estimateColour, true,
                     "Decay Time estimate " + (estimate > 0.0 ? juce::String (estimate, 2) + " s" : juce::String ("(none)")));

    return image;
}

void writePng (const juce::Image& image, const juce::File& target, bool replaceExisting)
{
    SafeOutputFile output (target, replaceExisting);

    {
        auto stream = output.openStream();
        juce::PNGImageFormat png;

        const bool written = png.writeImageToStream (image, *stream);
        stream->flush();

        if (! written || ! stream->getStatus().wasOk())
            throw RenderError (("cannot write " + target.getFullPathName() + ": write failed (disk full?)").toStdString());
    }

    output.commit();
}
