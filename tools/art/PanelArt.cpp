#include "PanelArt.h"

#include "BackgroundArt.h"
#include "ButtonArt.h"
#include "KnobArt.h"
#include "MeterArt.h"
#include "Palette.h"
#include "PixelFont.h"
#include "SkinLayout.h"

#include "editor/DoubleResolution.h"

namespace
{
    using SkinLayout::Kind;

    juce::Image drawKnob (const SkinLayout::Strip& strip, float scale)
    {
        // The mixer's knobs wear an amber pointer; dry/wet and output also a warmer cap.
        if (&strip == &SkinLayout::outputKnob)
            return KnobArt::drawStrip (strip, scale, Palette::knobCapWarm, Palette::amber);

        if (&strip == &SkinLayout::mixerKnob)
            return KnobArt::drawStrip (strip, scale, Palette::knobCap, Palette::amber);

        return KnobArt::drawStrip (strip, scale, Palette::knobCap, Palette::pointer);
    }

    juce::Image drawStripFor (const SkinLayout::Control& control, float scale)
    {
        switch (control.kind)
        {
            case Kind::Knob:         return drawKnob (*control.strip, scale);
            case Kind::Button:       return ButtonArt::drawStrip (control, scale);
            case Kind::Animation:    return MeterArt::drawStrip (*control.strip, scale);
            case Kind::Display:
            case Kind::DisplayFloat: return PixelFont::drawStrip (Palette::displayInk, scale);
        }

        return {};
    }

    const juce::Image* find (const std::vector<ArtFile>& art, const juce::String& fileName)
    {
        for (const auto& file : art)
            if (file.fileName == fileName)
                return &file.image;

        return nullptr;
    }

    void drawFrame (juce::Graphics& g, const juce::Image& strip, const SkinLayout::Control& control, int frame)
    {
        const auto& b = control.bounds;
        g.drawImage (strip, b.getX(), b.getY(), b.getWidth(), b.getHeight(), 0, frame * b.getHeight(), b.getWidth(), b.getHeight());
    }
}

std::vector<ArtFile> drawPanelArt (float scale)
{
    const auto fileName = [scale] (const juce::String& skinName)
    {
        return scale > 1.0f ? DoubleResolution::fileNameFor (skinName) : skinName;
    };

    std::vector<ArtFile> art { { fileName ("Background.png"), BackgroundArt::draw (scale) } };

    // Several controls share a strip; each strip is drawn once.
    for (const auto& control : SkinLayout::controls())
        if (find (art, fileName (control.strip->resource)) == nullptr)
            art.push_back ({ fileName (control.strip->resource), drawStripFor (control, scale) });

    return art;
}

juce::Image drawPanelPreview (const std::vector<ArtFile>& art, const juce::XmlElement& parameterDescription)
{
    auto preview = find (art, "Background.png")->createCopy();
    juce::Graphics g (preview);

    for (const auto& control : SkinLayout::controls())
    {
        const auto& strip = *find (art, control.strip->resource);

        switch (control.kind)
        {
            case Kind::Knob:
                if (auto* p = parameterDescription.getChildByAttribute ("name", control.target))
                    drawFrame (g, strip, control, juce::roundToInt (p->getDoubleAttribute ("value") * (control.strip->frames - 1)));
                break;

            case Kind::Animation:
                drawFrame (g, strip, control, control.bounds.getX() % 2 == 0 ? 8 : 7);
                break;

            case Kind::Button:
                drawFrame (g, strip, control, 0);
                break;

            case Kind::Display:
            case Kind::DisplayFloat:
                PixelFont::drawText (g, control.kind == Kind::Display ? "Large Hall 2" : "2.43 s",
                                     control.bounds.getX() + 2, control.bounds.getY() + 2, Palette::displayInk);
                break;
        }
    }

    return preview;
}
