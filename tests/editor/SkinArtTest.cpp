#include "editor/SkinValues.h"
#include "framework/EventRegistry.h"
#include "framework/Resources.h"

#include <juce_graphics/juce_graphics.h>
#include <gtest/gtest.h>

#include <map>
#include <set>

// The committed skin and the images it names must agree: a strip of the wrong
// height shows torn frames, a misspelt event a dead action. (That every knob
// reaches its parameter and each button fires its own event is checked through
// the accessibility tree.)
namespace
{
    std::unique_ptr<juce::XmlElement> loadSkin() { return juce::parseXML (Resources::getText ("skin.xml")); }

    juce::Rectangle<int> boundsOf (const juce::XmlElement& control)
    {
        const auto* pos = control.getChildByName ("pos");
        const auto* size = control.getChildByName ("size");

        if (pos == nullptr || size == nullptr)
            return {};

        return { pos->getIntAttribute ("left"), pos->getIntAttribute ("top"),
                 size->getIntAttribute ("width"), size->getIntAttribute ("height") };
    }

    bool framesEqual (const juce::Image& strip, int frameHeight, int a, int b)
    {
        for (int y = 0; y < frameHeight; ++y)
            for (int x = 0; x < strip.getWidth(); ++x)
                if (strip.getPixelAt (x, a * frameHeight + y) != strip.getPixelAt (x, b * frameHeight + y))
                    return false;

        return true;
    }

    struct StripRule
    {
        int frames;
        std::set<std::pair<int, int>> frameSizes;   // empty: any size
    };

    const std::map<juce::String, StripRule> stripRules {
        { "Knob", { 61, { { 36, 34 }, { 28, 28 }, { 35, 35 }, { 37, 35 } } } },
        { "Button", { 2, {} } },
        { "Animation", { 12, { { 26, 89 } } } },
    };
}

TEST (SkinArt, EveryControlHasArtOfItsSizeInsideThePanelWithoutOverlapping)
{
    const auto skin = loadSkin();
    ASSERT_NE (skin, nullptr);
    EXPECT_EQ (skin->getTagName(), "PluginEditor");

    const juce::Rectangle<int> panel (633, 207);
    EXPECT_EQ (SkinValues::loadImage (skin->getStringAttribute ("background")).getBounds(), panel);
    std::vector<std::pair<juce::String, juce::Rectangle<int>>> placed;
    EventRegistry events;
    events.registerFixedEvents();

    for (const auto* control : skin->getChildIterator())
    {
        const auto tag = control->getTagName();
        const auto name = control->getStringAttribute ("name");
        const auto bounds = boundsOf (*control);
        EXPECT_FALSE (bounds.isEmpty()) << name;
        EXPECT_TRUE (panel.contains (bounds)) << name << " at " << bounds.toString();

        for (const auto& [other, otherBounds] : placed)
            EXPECT_FALSE (bounds.intersects (otherBounds)) << name << " overlaps " << other;

        placed.push_back ({ name, bounds });

        // A misspelt event leaves its action dead.
        if (const auto* actions = control->getChildByName ("actions"))
            for (const auto* action : actions->getChildIterator())
                EXPECT_NE (events.getId (action->getStringAttribute ("event")), EventRegistry::unknownEvent) << name;

        const auto* gfx = control->getChildByName ("gfx");
        ASSERT_NE (gfx, nullptr) << name;
        const auto strip = SkinValues::loadImage (gfx->getStringAttribute ("resource"));
        ASSERT_TRUE (strip.isValid()) << name << ": no image " << gfx->getStringAttribute ("resource");

        if (tag == "Display" || tag == "DisplayFloat")
        {
            EXPECT_EQ (strip.getBounds(), juce::Rectangle<int> (7, 1728)) << name;
            EXPECT_EQ (gfx->getStringAttribute ("firstASCII"), " ") << name;
            EXPECT_EQ (gfx->getIntAttribute ("fontHeight"), 9) << name;
            EXPECT_GE (bounds.getHeight(), 9) << name;
            continue;
        }

        ASSERT_TRUE (stripRules.count (tag) > 0) << "unexpected element " << tag;
        const auto& rule = stripRules.at (tag);
        const int frames = gfx->getIntAttribute ("framesNum");
        ASSERT_EQ (frames, rule.frames) << name;

        const int frameHeight = strip.getHeight() / frames;
        EXPECT_EQ (strip.getHeight(), frames * frameHeight) << name << ": the strip does not divide into frames";
        EXPECT_EQ (bounds.withZeroOrigin(), juce::Rectangle<int> (strip.getWidth(), frameHeight)) << name;
        EXPECT_TRUE (rule.frameSizes.empty() || rule.frameSizes.count ({ strip.getWidth(), frameHeight }) == 1)
            << name << ": frame " << strip.getWidth() << " x " << frameHeight;

        // A frame repeating its neighbour would make the control look stuck.
        for (int frame = 1; frame < frames; ++frame)
            EXPECT_FALSE (framesEqual (strip, frameHeight, frame - 1, frame)) << name << ": frame " << frame;
    }
}

TEST (SkinArt, FontHasADistinctLightGlyphForEveryPrintableAsciiCharacter)
{
    const auto font = SkinValues::loadImage ("Fonts.png");
    ASSERT_EQ (font.getBounds(), juce::Rectangle<int> (7, 1728));
    constexpr int cellHeight = 9;   // cells from ' ' on

    const auto litPixels = [&] (int code)
    {
        int lit = 0;

        for (int y = 0; y < cellHeight; ++y)
            for (int x = 0; x < font.getWidth(); ++x)
                if (const auto c = font.getPixelAt (x, (code - ' ') * cellHeight + y); c.getAlpha() > 0)
                {
                    ++lit;
                    EXPECT_GT (c.getPerceivedBrightness(), 0.7f) << "glyph " << code << " is too dark for the display";
                }

        return lit;
    };

    EXPECT_EQ (litPixels (' '), 0);

    for (int code = 33; code <= 126; ++code)
    {
        EXPECT_GE (litPixels (code), 3) << "no glyph for '" << (char) code << "'";

        for (int other = 33; other < code; ++other)
            EXPECT_FALSE (framesEqual (font, cellHeight, code - ' ', other - ' '))
                << "'" << (char) code << "' looks like '" << (char) other << "'";
    }
}
