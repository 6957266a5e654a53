#include "EditorTestSupport.h"

#include "editor/BitmapFont.h"
#include "editor/DoubleResolution.h"
#include "editor/QuorlaneEditor.h"
#include "editor/SkinImage.h"
#include "editor/SkinValues.h"
#include "framework/EventRegistry.h"
#include "framework/Resources.h"

// The committed skin, the images it names and the window built from it must
// agree: a strip of the wrong height shows torn frames, a misspelt event a dead
// action. (That every knob reaches its parameter and each button fires its own
// event is checked through the accessibility tree.) Every image has a twin
// drawn afresh at double resolution: exactly twice the size, and not an
// enlargement of the first.
namespace
{
    void expectTwin (const juce::String& name, bool drawnAfresh)
    {
        const auto twin = SkinValues::loadImage (DoubleResolution::fileNameFor (name));
        EXPECT_EQ (twin.getBounds(), SkinValues::loadImage (name).getBounds() * 2) << name << ": no double-resolution twin";
        EXPECT_TRUE (SkinImage::load (name).hasDoubleResolution()) << name;
        // The font's glyphs keep their pixel shapes and so are largely uniform blocks.
        EXPECT_TRUE (! drawnAfresh || EditorTest::shareOfUniformBlocks (twin) < 0.9) << name << " looks enlarged";
    }
}

TEST (SkinArt, EveryControlHasArtOfItsSizeInsideThePanelWithoutOverlapping)
{
    const auto skin = juce::parseXML (Resources::getText ("skin.xml"));
    ASSERT_NE (skin, nullptr);

    const juce::Rectangle<int> panel (633, 207);
    EXPECT_EQ (SkinValues::loadImage (skin->getStringAttribute ("background")).getBounds(), panel);
    expectTwin (skin->getStringAttribute ("background"), true);
    Quorlane plugin;
    const QuorlaneEditor editor (plugin);
    std::vector<std::pair<juce::String, juce::Rectangle<int>>> placed;
    EventRegistry events;
    events.registerFixedEvents();

    for (const auto* control : skin->getChildIterator())
    {
        const auto tag = control->getTagName();
        const auto name = control->getStringAttribute ("name");
        const auto bounds = EditorTest::find<GUIController> (editor, name).getComponent().getBoundsInParent();
        EXPECT_FALSE (bounds.isEmpty()) << name;
        EXPECT_TRUE (panel.contains (bounds)) << name << " at " << bounds.toString();

        for (const auto& [other, otherBounds] : placed)
            EXPECT_FALSE (bounds.intersects (otherBounds)) << name << " overlaps " << other;

        placed.push_back ({ name, bounds });

        // A misspelt event leaves its action dead.
        if (const auto* actions = control->getChildByName ("actions"))
        {
            for (const auto* action : actions->getChildIterator())
                EXPECT_NE (events.getId (action->getStringAttribute ("event")), EventRegistry::unknownEvent) << name;
        }

        const auto* gfx = control->getChildByName ("gfx");
        ASSERT_NE (gfx, nullptr) << name;
        const auto strip = SkinValues::loadImage (gfx->getStringAttribute ("resource"));
        ASSERT_TRUE (strip.isValid()) << name << ": no image " << gfx->getStringAttribute ("resource");
        expectTwin (gfx->getStringAttribute ("resource"), ! gfx->hasAttribute ("fontHeight"));

        if (tag == "Display" || tag == "DisplayFloat")
        {
            EXPECT_EQ (strip.getBounds(), juce::Rectangle<int> (7, 1728)) << name;
            EXPECT_EQ (gfx->getStringAttribute ("firstASCII"), " ") << name;
            EXPECT_EQ (gfx->getIntAttribute ("fontHeight"), 9) << name;
            EXPECT_GE (bounds.getHeight(), 9) << name;
            continue;
        }

        const int frames = gfx->getIntAttribute ("framesNum");
        ASSERT_GT (frames, 1) << name;

        const int frameHeight = strip.getHeight() / frames;
        EXPECT_EQ (strip.getHeight(), frames * frameHeight) << name << ": the strip does not divide into frames";
        EXPECT_EQ (bounds.withZeroOrigin(), juce::Rectangle<int> (strip.getWidth(), frameHeight)) << name;

        // A frame repeating its neighbour would make the control look stuck.
        for (int frame = 1; frame < frames; ++frame)
            EXPECT_NE (EditorTest::differingPixels (strip.getClippedImage ({ 0, (frame - 1) * frameHeight, strip.getWidth(), frameHeight }),
                                                    strip, { 0, frame * frameHeight }), 0) << name << ": frame " << frame;
    }
}

// The display font: a light glyph for every printable ASCII character, each
// unlike the others and drawn exactly from its cell of the strip; nothing for
// a control character or one beyond the strip's cells.
TEST (SkinArt, FontDrawsADistinctLightGlyphForEveryPrintableAsciiCharacter)
{
    const auto strip = SkinImage::load ("Fonts.png");
    ASSERT_EQ (strip.getImage().getBounds(), juce::Rectangle<int> (7, 1728));
    BitmapFont font;
    font.setStrip (strip, ' ', 9);

    const auto glyph = [&font] (juce::juce_wchar character)
    {
        juce::Image drawn (juce::Image::ARGB, 7, 9, true);
        juce::Graphics g (drawn);
        font.drawGlyph (g, character, 0, 0);
        return drawn;
    };
    const auto litPixels = [] (const juce::Image& image)
    {
        int lit = 0;
        for (int y = 0; y < image.getHeight(); ++y)
            for (int x = 0; x < image.getWidth(); ++x)
                if (const auto c = image.getPixelAt (x, y); c.getAlpha() > 0)
                {
                    ++lit;
                    EXPECT_GT (c.getPerceivedBrightness(), 0.7f) << "too dark for the display";
                }
        return lit;
    };

    for (const juce::juce_wchar none : { U' ', U'\t', U'\u00e0' })
        EXPECT_EQ (litPixels (glyph (none)), 0) << (int) none;
    EXPECT_EQ (EditorTest::differingPixels (glyph (U'\u00df'), strip.getImage(), { 0, 191 * 9 }), 0) << "the last cell";
    std::vector<juce::Image> glyphs;

    for (juce::juce_wchar code = 33; code <= 126; ++code)
    {
        glyphs.push_back (glyph (code));
        EXPECT_EQ (EditorTest::differingPixels (glyphs.back(), strip.getImage(), { 0, (int) (code - ' ') * 9 }), 0) << (char) code;
        EXPECT_GE (litPixels (glyphs.back()), 3) << "no glyph for '" << (char) code << "'";

        for (juce::juce_wchar other = 33; other < code; ++other)
            EXPECT_NE (EditorTest::differingPixels (glyphs.back(), glyphs[(size_t) (other - 33)]), 0)
                << "'" << (char) code << "' looks like '" << (char) other << "'";
    }
}
