#include "OldStylePresetBrowserWindow.h"

#include "DialogFolder.h"
#include "FocusRing.h"
#include "KeyboardClick.h"
#include "OptionsPanel.h"
#include "PresetBrowserButtons.h"
#include "SkinImageButton.h"

class OldStylePresetBrowserWindow::Content : public juce::Component
{
    BasePluginOldStyle& plugin;
    OldStylePresetsBrowser browser;

public:
    explicit Content (BasePluginOldStyle& p) : plugin (p), browser (p)
    {
        addAndMakeVisible (browser);

        const std::function<void()> actions[] = { [this] { browser.addGroup(); },     [this] { browser.removeGroup(); },
                                                  [this] { browser.copyPreset(); },   [this] { browser.pastePreset(); },
                                                  [this] { browser.previousPreset(); }, [this] { browser.nextPreset(); } };

        for (int i = 0; i < PresetBrowserButtons::numButtons; ++i)
        {
            const auto& entry = PresetBrowserButtons::buttons[i];
            auto* button = toolButtons.add (new SkinImageButton (entry.name, entry.image));
            setUp (*button, entry.tooltip, actions[i]);
        }

        setUp (loadPresetButton, "Load preset", [this] { loadPreset(); });
        setUp (savePresetButton, "Save current preset", [this] { savePreset(); });
        setUp (loadBankButton, "Load preset bank", [this] { loadBank(); });
        setUp (saveBankButton, "Save current preset bank", [this] { saveBank(); });

        setSize (ColumnBrowser::columnWidth * 2 + 24, 420);
    }

    // The current preset in its group's list.
    void focusCurrentPreset()
    {
        browser.showCurrentPreset();
        focusList();
    }

    // The rightmost list: the presets of the chosen group, else the groups.
    void focusList()
    {
        if (auto* column = browser.getColumn (browser.getNumColumns() - 1))
            column->focusList();
    }

    void paint (juce::Graphics& g) override
    {
        g.fillAll (juce::Colour (0xff232224));
        g.setColour (juce::Colour (0xffbef6ff));
        g.setFont (OptionsPanel::getFont (13.0f));
        g.drawText ("Preset", presetRow, juce::Justification::centredLeft);
        g.drawText ("Bank", bankRow, juce::Justification::centredLeft);
    }

    void resized() override
    {
        auto area = getLocalBounds().reduced (8);
        auto files = area.removeFromBottom (56);
        presetRow = files.removeFromTop (26);
        files.removeFromTop (4);
        bankRow = files;

        auto row = presetRow.withTrimmedLeft (60);
        loadPresetButton.setBounds (row.removeFromLeft (80));
        savePresetButton.setBounds (row.withTrimmedLeft (6).removeFromLeft (80));
        row = bankRow.withTrimmedLeft (60);
        loadBankButton.setBounds (row.removeFromLeft (80));
        saveBankButton.setBounds (row.withTrimmedLeft (6).removeFromLeft (80));

        auto tools = area.removeFromTop (28);
        area.removeFromTop (6);

        // Legend keys from the left, the arrows in their order at the right end.
        const auto isArrow = [] (int i) { return PresetBrowserButtons::buttons[i].face != PresetBrowserButtons::Face::Legend; };
        const auto place = [this] (int i, juce::Rectangle<int> slot)
        {
            toolButtons[i]->setBounds (toolButtons[i]->getFrameBounds().withCentre (slot.getCentre()));
        };

        for (int i = 0; i < PresetBrowserButtons::numButtons; ++i)
            if (! isArrow (i))
                place (i, tools.removeFromLeft (toolButtons[i]->getFrameBounds().getWidth() + 4));

        for (int i = PresetBrowserButtons::numButtons; --i >= 0;)
            if (isArrow (i))
                place (i, tools.removeFromRight (toolButtons[i]->getFrameBounds().getWidth() + 4));

        browser.setBounds (area.withTrimmedBottom (6));
    }

private:
    // The tooltip is also what a screen reader calls the button: "Load" is on
    // both file rows.
    void setUp (juce::Button& button, const juce::String& tooltip, std::function<void()> action)
    {
        button.setTooltip (tooltip);
        button.setTitle (tooltip);
        button.onClick = std::move (action);
        addAndMakeVisible (button);
    }

    // Preset files and bank files each open where the last one of their kind was.
    void choose (const juce::String& title, const juce::String& extension, bool saving,
                 std::function<void (const juce::File&)> use)
    {
        const auto folder = extension == plugin.getBankFileExtension() ? plugin.getLastBankFolder()
                                                                       : plugin.getLastPresetFolder();
        chooser = std::make_unique<juce::FileChooser> (title, dialogFolder (folder), "*" + extension);

        const int flags = juce::FileBrowserComponent::canSelectFiles
                        | (saving ? juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::warnAboutOverwriting
                                  : juce::FileBrowserComponent::openMode);

        chooser->launchAsync (flags, [use, extension, saving] (const juce::FileChooser& fc)
        {
            auto file = fc.getResult();

            if (file == juce::File())
                return;

            if (saving && ! file.hasFileExtension (extension))
                file = file.withFileExtension (extension);

            use (file);
        });
    }

    void loadPreset()
    {
        choose ("Load single preset", plugin.getPresetFileExtension(), false,
                [this] (const juce::File& f) { plugin.loadPresetFile (f, (int) plugin.getCurrentPresetIndex()); browser.rebuild(); });
    }

    void savePreset()
    {
        choose ("Save current settings as preset", plugin.getPresetFileExtension(), true,
                [this] (const juce::File& f) { plugin.savePresetFile (f, (int) plugin.getCurrentPresetIndex()); });
    }

    void loadBank()
    {
        choose ("Load preset bank", plugin.getBankFileExtension(), false,
                [this] (const juce::File& f) { plugin.loadBankFile (f); browser.rebuild(); });
    }

    void saveBank()
    {
        choose ("Save preset bank", plugin.getBankFileExtension(), true,
                [this] (const juce::File& f) { plugin.saveBankFile (f); });
    }

    juce::OwnedArray<SkinImageButton> toolButtons;
    juce::TextButton loadPresetButton { "Load" }, savePresetButton { "Save" },
                     loadBankButton { "Load" }, saveBankButton { "Save" };
    juce::Rectangle<int> presetRow, bankRow;
    juce::TooltipWindow tooltips { this };
    std::unique_ptr<juce::FileChooser> chooser;
    FocusRing focusRing { *this };
};

OldStylePresetBrowserWindow::OldStylePresetBrowserWindow (BasePluginOldStyle& plugin, std::function<void()> close)
    : juce::DocumentWindow ("Preset Browser", juce::Colour (0xff232224), juce::DocumentWindow::closeButton),
      onClose (std::move (close))
{
    setUsingNativeTitleBar (true);
    setContentOwned (new Content (plugin), true);
    setResizable (true, false);
    centreWithSize (getWidth(), getHeight());
    setVisible (true);
    toFront (true);
    getContent().focusCurrentPreset();
}

OldStylePresetBrowserWindow::Content& OldStylePresetBrowserWindow::getContent() const
{
    return *static_cast<Content*> (getContentComponent());
}

// The system activates the window after it opened, and JUCE then focuses the
// window itself; the keyboard belongs in the list.
void OldStylePresetBrowserWindow::focusGained (FocusChangeType)
{
    getContent().focusList();
}

bool OldStylePresetBrowserWindow::keyPressed (const juce::KeyPress& key)
{
    // Closing deletes the window: not from inside its own key handling.
    if (key.isKeyCode (juce::KeyPress::escapeKey))
    {
        juce::MessageManager::callAsync ([window = SafePointer<OldStylePresetBrowserWindow> (this)]
        {
            if (window != nullptr)
                window->closeButtonPressed();
        });
        return true;
    }

    return KeyboardClick::clickFocusedButton (key);
}

OldStylePresetBrowserWindow::~OldStylePresetBrowserWindow() = default;
