#pragma once

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
                   public Parameter::Listener,
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
    Parameter* getParameter (uint32_t index) const { return parameterManager.getParameter (index); }

    // The host's view of parameters 0..19; indices from 20 on answer "" or 0.
    juce::String getHostParameterName (int index) const;
    juce::String getHostParameterText (int index) const;
    juce::String getHostParameterText (int index, float normalisedValue) const;
    float getHostParameterValue (int index) const;
    void setHostParameterValue (int index, float normalisedValue);
    float getHostParameterValueForText (int index, const juce::String& text) const;

    // The text shown for a parameter at a value; products override it with
    // their own units. The default is the parameter's own text.
    virtual juce::String getParameterText (int index, float normalisedValue) const;

    // State chunk: a PluginState document whose children each class of the
    // chain contributes, base first.
    virtual std::unique_ptr<juce::XmlElement> buildState();
    bool isPluginState (const juce::XmlElement& element) const;
    bool restoreState (const juce::XmlElement& state);

    // Hooks of the processing frame for MIDI: controller messages and program
    // changes. The base ignores both and has no presets.
    virtual void handleControllerMessage (const juce::MidiMessage& message);
    virtual int getNumPresets() const;
    virtual void selectPresetFromProgramChange (int program);

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

    void parameterChanged (Parameter& parameter) override;

protected:
    // Offered each child of a restored PluginState in document order; returns
    // true when the element was taken.
    virtual bool restoreStateElement (const juce::XmlElement& element);

private:
    void parameterAdded (Parameter& parameter) override;
    void createHostParameters();

    ParameterManager parameterManager { this };
    std::array<std::atomic<float>, numFallbackValues> fallbackValues {};
    std::array<HostParameter*, hostParameterCount> hostParameters {};

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (BasePlugin)
};
