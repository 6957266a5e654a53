#pragma once

#include "EditorZoom.h"
#include "EventRegistry.h"
#include "MidiControl.h"
#include "Parameter.h"
#include "ParameterManager.h"

#include <juce_audio_processors/juce_audio_processors.h>

#include <array>

class HostParameter;

// The framework's plug-in base: it owns the parameter list built from the
// parameter description, answers the host's parameter queries (the first
// twenty indices are the host's; the rest are internal), and builds and
// restores the state chunk that the host keeps with a project.
class BasePlugin : public juce::AudioProcessor,
                   private Parameter::ImmediateListener,
                   private ParameterManager::Listener
{
public:
    static constexpr int hostParameterCount = 20;
    static constexpr int numFallbackValues = 128;

    BasePlugin();
    ~BasePlugin() override;

    // The product's name, used for the host, the documents' application check
    // and file names.
    virtual juce::String getPluginName() const = 0;

    ParameterManager& getParameterManager() noexcept { return parameterManager; }
    const ParameterManager& getParameterManager() const noexcept { return parameterManager; }
    Parameter* getPluginParameter (uint32_t index) const { return parameterManager.getParameter (index); }

    // The host's view of parameters 0..19; indices from 20 on answer "" or 0.
    juce::String getHostParameterName (int index) const;
    juce::String getHostParameterText (int index) const;
    juce::String getHostParameterText (int index, float normalisedValue) const;
    float getHostParameterValue (int index) const;
    void setHostParameterValue (int index, float normalisedValue);
    float getHostParameterValueForText (int index, const juce::String& text) const;

    // The text shown for a parameter at a value; products override it with
    // their own units. The default is the parameter's own text.
    virtual juce::String getParameterDisplayText (int index, float normalisedValue) const;

    // State chunk: a PluginState document whose children each class of the
    // chain contributes, base first.
    virtual std::unique_ptr<juce::XmlElement> buildState();
    bool isPluginState (const juce::XmlElement& element) const;
    bool restoreState (const juce::XmlElement& state);

    // User settings: the ".ini" document (root UserSettings) in the user's
    // settings folder, shared by every instance. Each class of the chain reads
    // and writes its own children, base first. A missing or foreign file
    // leaves every setting as it is.
    virtual void readUserSettings (const juce::XmlElement& settings);
    virtual void writeUserSettings (juce::XmlElement& settings);
    bool isUserSettings (const juce::XmlElement& element) const;
    bool loadUserSettings();
    bool saveUserSettings();
    juce::File getUserSettingsFile() const;

    // The controller map and its learn mode, built with the parameter list.
    MidiControl& getMidiControl() noexcept { return midiControl; }

    // A map file that every new instance starts with (none when the path is
    // empty); a project's own map replaces it when the project is restored.
    // Reading the user settings loads it, so they are read once, at start.
    // Setting it saves the user settings.
    juce::File getDefaultMidiMapFile() const;
    void setDefaultMidiMapFile (const juce::File& file);

    // The editor's zoom in percent (one of EditorZoom::steps), the same for
    // every instance: <EditorSettings zoom="..."/>. Setting it saves the user
    // settings; anything but a step is refused.
    int getEditorZoom() const noexcept { return editorZoom; }
    void setEditorZoom (int percent);

    // Hooks of the processing frame for MIDI: controller messages go to the
    // controller map; program changes select presets, of which the base has none.
    virtual void handleControllerMessage (const juce::MidiMessage& message);
    virtual int getNumPresets() const;
    virtual void selectPresetFromProgramChange (int program);

    // Editor events by name and id, built at construction; the skin reads it.
    const EventRegistry& getEventRegistry() const noexcept { return eventRegistry; }

    // The plug-in's share of the editor's events (the preset operations); the
    // base has none.
    virtual void handleEvent (int eventId);

    // What the host sees of parameter 0..19, for gesture reports; null otherwise.
    juce::AudioProcessorParameter* getHostParameter (int index) const;

    //==============================================================================
    const juce::String getName() const override { return getPluginName(); }
    bool acceptsMidi() const override { return true; }
    bool producesMidi() const override { return false; }
    bool isMidiEffect() const override { return false; }
    bool hasEditor() const override { return true; }

    bool isBusesLayoutSupported (const BusesLayout& layouts) const override;

    int getNumPrograms() override { return 0; }
    int getCurrentProgram() override { return 0; }
    void setCurrentProgram (int) override {}
    const juce::String getProgramName (int) override { return {}; }
    void changeProgramName (int, const juce::String&) override {}

    void getStateInformation (juce::MemoryBlock& destData) override;
    void setStateInformation (const void* data, int sizeInBytes) override;

protected:
    // Steps of the route every parameter change takes (see parameterChanged),
    // each filled in by the one class of the chain that owns what it feeds.
    // They run on the thread that made the change: nothing in them may wait
    // or allocate unless the origin says the change came from the editor.
    virtual void postToEngine (const Parameter&) noexcept {}
    virtual void presetParameterChanged (const Parameter&, ChangeOrigin) {}

    // Offered each child of a restored PluginState in document order; returns
    // true when the element was taken.
    virtual bool restoreStateElement (const juce::XmlElement& element);

    // Message thread, fifty times a second: carries out what changes made on
    // any thread left to do here (deferred parameter notifications, the
    // controller map's reports). Each class of the chain does its share, then
    // calls its base. It allocates nothing when nothing is pending.
    virtual void pollMessageThread();

    // The poll runs wherever JUCE's message loop runs, which in a plug-in
    // wrapper is rarely the thread that made the instance. The product
    // starts it once it is built and stops it first thing when it is
    // destroyed; without a message manager (a renderer's worker) there is
    // nothing to start.
    void startMessageThreadPoll();
    void stopMessageThreadPoll();

private:
    class MessageThreadPoll;

    // The router: every change of every parameter, with its origin.
    void parameterChanged (Parameter& parameter, ChangeOrigin origin) override;
    void parameterAdded (Parameter& parameter) override;
    void createHostParameters();
    void buildEventRegistry();

    ParameterManager parameterManager { this };
    MidiControl midiControl { parameterManager, [this] { return getPluginName(); } };
    juce::String defaultMidiMapPath;
    int editorZoom = EditorZoom::defaultPercent;
    std::array<std::atomic<float>, numFallbackValues> fallbackValues {};
    std::array<HostParameter*, hostParameterCount> hostParameters {};
    EventRegistry eventRegistry;
    std::unique_ptr<MessageThreadPoll> messageThreadPoll;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (BasePlugin)
};
