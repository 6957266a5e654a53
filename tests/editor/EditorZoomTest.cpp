#include "EditorTestSupport.h"

#include "editor/DisplaySettingsPage.h"
#include "editor/QuorlaneEditor.h"
#include "framework/EventRegistry.h"
#include "tests/support/ScopedConfigHome.h"

using namespace EditorTest;

// The options button opens its panel below the skin. The zoom chosen there
// is kept for every instance and resizes the window with the panel; the
// host's scale multiplies it while the editor keeps the skin's own size.
TEST (EditorZoom, TheChosenZoomResizesTheWindowIsKeptForEveryInstanceAndOnlyStepsAreRead)
{
    ScopedConfigHome home;
    Quorlane plugin;
    QuorlaneEditor editor (plugin);
    EXPECT_EQ (editor.getZoom(), 100);

    // The options button opens the panel below the skin.
    editor.handleEvent (EventRegistry::options, nullptr);
    ASSERT_TRUE (editor.isShowingOptions());
    auto& tabs = *editor.getOptionsPanel();
    EXPECT_EQ (tabs.getY(), 207);
    const int withOptions = editor.getHeight();
    EXPECT_EQ (withOptions, 207 + OptionsPanel::height);
    auto* page = dynamic_cast<DisplaySettingsPage*> (tabs.getTabContentComponent (tabs.getTabNames().indexOf ("Display")));
    ASSERT_NE (page, nullptr);

    page->getZoomBox().setSelectedId (150, juce::sendNotificationSync);
    EXPECT_EQ (editor.getZoom(), 150);
    EXPECT_EQ (editor.getWidth(), 633) << "the editor keeps the skin's size";
    // The size the host's window gets, to the pixel (rounding may add one).
    EXPECT_NEAR (editor.getBoundsInParent().getWidth(), 950, 1);
    EXPECT_NEAR (editor.getBoundsInParent().getHeight(), withOptions * 1.5, 1);
    EXPECT_EQ (editor.getOptionsPanel()->getWidth(), 633) << "the panel grows with the window";

    // A host scale of 2 comes on top: 300 %.
    editor.setScaleFactor (2.0f);
    EXPECT_FLOAT_EQ (editor.getTransform().mat00, 3.0f);
    EXPECT_EQ (editor.getWidth(), 633);

    editor.setZoom (130);
    EXPECT_EQ (editor.getZoom(), 150) << "only the offered steps are taken";

    editor.handleEvent (EventRegistry::options, nullptr);
    EXPECT_EQ (editor.getHeight(), 207) << "a second press closes the panel";

    // A new instance reads the zoom from the user settings (written as
    // WrittenDocuments holds it); one that is no step reads as 100 %.
    Quorlane other;
    QuorlaneEditor otherEditor (other);
    EXPECT_NEAR (otherEditor.getBoundsInParent().getWidth(), 950, 1);
    EXPECT_NEAR (otherEditor.getBoundsInParent().getHeight(), 311, 1);

    for (const auto& [text, expected] : { std::pair { "200", 200 }, { "125", 125 }, { "130", 100 }, { "0", 100 },
                                          { "-150", 100 }, { "150%", 100 }, { "abc", 100 }, { "", 100 }, { "1e9", 100 } })
    {
        home.writeSettings ("<EditorSettings zoom=\"" + juce::String (text) + "\"/>");
        EXPECT_EQ (Quorlane().getEditorZoom(), expected) << text;
    }
}
