#pragma once

#include "Parameter.h"
#include "ParameterManager.h"
#include "SingleReaderQueue.h"

#include <juce_audio_basics/juce_audio_basics.h>

#include <array>
#include <functional>

// Lets MIDI continuous controllers move parameters. Each of the 128 controller
// numbers holds at most one parameter and a parameter sits in at most one slot.
//
// Learn mode binds a controller to a parameter from the two halves the user
// supplies in either order: moving a controller (learnFromController, fed by
// the processing frame) and touching a parameter (learnFromParameter, called by
// the editor when a control is grabbed). A controller that already moves a
// parameter is never taken over by learning: the user removes that binding
// first, and the parameter chosen for learning stays chosen.
//
// Threads: handleMessage runs on the audio thread; everything else usually on
// the message thread. Every slot and learn field is written under one lock;
// handleMessage takes no lock and posts nothing: the slot is read atomically,
// flags are set, and a controller to learn is left for the owner's poll on
// the message thread (pollMessageThread). The user interface hears of map,
// learn and controller activity only through Listener calls made by that
// poll; only a learn-mode switch is reported synchronously, on the thread
// that made it.
class MidiControl
{
public:
    static constexpr int numControllers = 128;
    // Controller value v becomes v / 127, so 127 reaches exactly 1.0.
    static constexpr float valueScale = 0.007874016f;

    // Map files: root "MidiControlMap" with the plug-in's name as "application".
    static constexpr const char* fileExtension = ".qlmidi";
    static constexpr const char* fileWildcard = "*.qlmidi";
    static constexpr const char* openDialogTitle = "Open Midi Control file";
    static constexpr const char* saveDialogTitle = "Save Midi Control file as";

    struct Listener
    {
        virtual ~Listener() = default;

        // Synchronous; listeners are called from the last added to the first.
        virtual void midiLearnModeChanged (bool /*isOn*/) {}

        // Message thread, coalesced: a slot was filled or emptied.
        virtual void midiMapChanged() {}
        // Message thread, coalesced: the half-finished learn choice changed.
        virtual void midiLearnChoiceChanged() {}
        // Message thread, coalesced: a controller moved this parameter (the
        // last one moved since the previous call).
        virtual void midiControllerMoved (Parameter& /*lastMoved*/) {}
    };

    // The application name is asked for only when a map file is read or
    // written, so the owner may pass a call into a class still being built.
    MidiControl (ParameterManager& parameters, std::function<juce::String()> applicationName);
    ~MidiControl();

    // Audio thread: controller messages (any channel) learn and move; every
    // other kind of message is ignored.
    void handleMessage (const juce::MidiMessage& message);

    void setLearnMode (bool shouldLearn);
    // Reads and flips the flag under one hold of the lock, so two toggles
    // never collapse into one; returns the new state.
    bool toggleLearnMode();
    bool isLearnMode() const;
    // The two halves of a binding; ignored outside learn mode, so the editor
    // may report every touch of a control.
    void learnFromController (int controller);
    void learnFromParameter (Parameter& parameter);
    // The halves chosen so far: nullptr / -1 when not chosen.
    Parameter* getLearnParameter() const;
    int getLearnController() const;

    // Puts the parameter (nullptr empties the slot) into the controller's
    // slot, moving it out of any other slot. Out-of-range controllers are ignored.
    void assign (int controller, Parameter* parameter, bool notify);
    void remove (int controller);
    void clear();

    Parameter* getParameterAt (int controller) const;
    int getControllerOf (const Parameter* parameter) const; // -1 when unmapped
    int getMappedCount() const;

    // Map documents. Reading switches learn mode off and, when the element
    // is accepted, replaces the whole map with its valid assignments: names
    // of unknown or non-automatable parameters and controllers outside
    // 0..127 are skipped.
    static bool acceptsElement (const juce::XmlElement& element);
    void readMap (const juce::XmlElement& element);
    std::unique_ptr<juce::XmlElement> writeMap (const juce::String& name) const;

    // For the editor's open/save dialogs. Loading refuses a file that is not
    // a map of this plug-in and then changes nothing; both return success.
    // The folder of the last file read or written is where the dialogs open next.
    bool loadFile (const juce::File& file);
    bool saveFile (const juce::File& file);
    juce::File getLastFolder() const { return lastFolder; }

    void addListener (Listener* listener);
    void removeListener (Listener* listener);

    // Message thread: learns from a controller the audio thread saw and
    // reports what changed since the last report.
    void pollMessageThread();

private:
    void switchLearnModeLocked (bool shouldLearn);
    void tellLearnModeListeners (bool isOn);
    void learnCheck();
    void assignLocked (int controller, Parameter* parameter, bool notify);
    void reportChanges();

    ParameterManager& parameters;
    const std::function<juce::String()> applicationName;

    std::array<std::atomic<Parameter*>, numControllers> slots {};
    int mappedCount = 0;
    std::atomic<bool> learnMode { false };
    Parameter* learnParameter = nullptr;
    int learnController = -1;
    std::atomic<bool> mapChanged { false }, learnChanged { false }, activity { false };
    std::atomic<Parameter*> lastMoved { nullptr };
    // Controllers moved in learn mode, from the audio thread to the poll.
    struct ControllerMove
    {
        uint8_t controller, value;
    };

    SingleReaderQueue<ControllerMove, 64> learnQueue;
    juce::CriticalSection lock;
    juce::File lastFolder;

    // Separate from the map's lock so that a listener's work never holds up
    // the audio thread.
    juce::Array<Listener*> listeners;
    juce::CriticalSection listenerLock;

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (MidiControl)
};
