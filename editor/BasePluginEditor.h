#pragma once

#include "FocusRing.h"
#include "GUIController.h"
#include "OptionsPanel.h"
#include "SkinImage.h"
#include "StatusBar.h"

#include "framework/BasePlugin.h"

#include <memory>
#include <vector>

class GFXDisplay;

// The editor of every plug-in of the line: built from the skin ("skin.xml"),
// it hears every control's events and movements and turns them into actions
// (options, about, MIDI learn here; the preset operations in the plug-in),
// reports parameters in the status bar and shows the options panel below the
// skin. Tab walks the skin's controls in the skin's document order, then the
// options; Escape closes the options.
class BasePluginEditor : public juce::AudioProcessorEditor,
                         public GUIController::Listener,
                         private MidiControl::Listener,
                         private juce::AsyncUpdater
{
public:
    explicit BasePluginEditor (BasePlugin& plugin);

    // Built from the given skin instead of the compiled-in one (nothing for null).
    BasePluginEditor (BasePlugin& plugin, const juce::XmlElement* skin);

    ~BasePluginEditor() override;

    BasePlugin& getPlugin() const noexcept { return plugin; }

    // Reads a skin's root element and creates its controls. A root other than
    // "PluginEditor" builds nothing.
    void buildFromSkin (const juce::XmlElement& root);

    GUIController* findController (const juce::String& name) const;
    juce::Array<GUIController*> getControllers() const;

    // Panels register the controls they hold so that they report here too.
    void registerController (GUIController& controller);

    // Event ids are those of the plug-in's event registry.
    virtual void handleEvent (int eventId, GUIController* source);

    // The status bar line and MIDI learn's share of a parameter movement.
    void reportParameter (Parameter& parameter);

    // An edited display's text goes to its parameter.
    virtual void commitDisplayText (GFXDisplay& display, const juce::String& text);

    // A parameter's value as the status bar shows it.
    juce::String getValueText (const Parameter& parameter) const;

    StatusBar& getStatusBar() noexcept { return statusBar; }

    // The learn state in words ("" when learning is off).
    juce::String describeMidiLearn() const;

    bool isShowingOptions() const noexcept { return optionsPanel != nullptr && optionsPanel->isVisible(); }
    void setOptionsVisible (bool shouldShow);
    OptionsPanel* getOptionsPanel() const noexcept { return optionsPanel.get(); }

    // The scale the host asks for (VST3 content scale, VST2 and LV2 scale
    // requests, as JUCE's wrappers pass them on) times the user's zoom is the
    // editor's transform; its own size stays the skin's. In the standalone
    // app the desktop's scale comes on top through the window.
    void setScaleFactor (float newScale) override;
    float getHostScale() const noexcept { return hostScale; }

    // The zoom in percent for every instance; the window (and the host's,
    // where the format lets the editor ask) follows at once.
    int getZoom() const noexcept { return plugin.getEditorZoom(); }
    void setZoom (int percent);

    void paint (juce::Graphics& g) override;
    void resized() override;
    bool keyPressed (const juce::KeyPress& key) override;

    void controllerEvent (GUIController& source, int eventId) override;
    void controllerMoved (GUIController& source) override;

    static constexpr int statusTimeMs = 3000;

protected:
    // Each editor of the chain adds its pages (its own first, then its base's).
    virtual void addOptionsPages (OptionsPanel& panel);

    virtual void showAbout();

    // The about window's lines under the product's name.
    virtual juce::String getAboutText() const;

    // The editor's height: the skin's plus whatever shows below it.
    virtual int getHeightBelowSkin() const;
    void updateSize();

private:
    std::unique_ptr<juce::AccessibilityHandler> createAccessibilityHandler() override;

    void applyScale();
    void toggleMidiLearn();
    void midiLearnModeChanged (bool isOn) override;
    void midiLearnChoiceChanged() override;
    void midiControllerMoved (Parameter& lastMoved) override;
    void handleAsyncUpdate() override;

    BasePlugin& plugin;
    SkinImage background;
    int skinWidth = 400, skinHeight = 200;
    float hostScale = 1.0f;

    std::vector<std::unique_ptr<GUIController>> ownedControllers;
    juce::Array<GUIController*> controllers;
    mutable juce::CriticalSection controllerLock;

    GUIController* midiLearnButton = nullptr;
    GUIController* midiActivityLed = nullptr;

    StatusBar statusBar;
    std::unique_ptr<OptionsPanel> optionsPanel;
    juce::Component::SafePointer<juce::Component> optionsOpener;
    FocusRing focusRing { *this };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (BasePluginEditor)
};
