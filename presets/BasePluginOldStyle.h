#pragma once

#include "BankValues.h"
#include "PresetBankRecord.h"
#include "framework/BasePlugin.h"

#include <optional>
#include <vector>

class IntParameter;
class StringParameter;

// The plug-in base of products that keep their presets inside the plug-in:
// the preset manager. It owns a bank of 128 slots partitioned into named
// groups, the current-preset selection (published as the parameters
// "Current Preset Number" and "Current Preset Name"), a copy buffer, preset
// and bank files, the preset part of the state chunk and of the user
// settings.
//
// Threads: the operations below are meant for the message thread (editor,
// browser, settings page). Program changes arrive on the audio thread; they
// and silent changes apply the values there, read whole from the bank's
// immutable copy of the slots' values, and report the rest (the name
// parameter, the listeners) on the message thread when it next polls.
// Automatic storing notes each edit with the slot it was made in, on any
// thread; the poll writes it into the bank.
//
// Locks: the slots (with the default preset and the copy buffer) and the
// group list (with the bank name) each have their own lock, held for one
// lookup or one change on the message thread; the audio thread takes neither.
class BasePluginOldStyle : public BasePlugin
{
public:
    static constexpr int firstPresetableIndex = 0;
    static constexpr int numPresetableParameters = PresetRecord::numValues;
    static constexpr int numSlots = PresetBankRecord::numSlots;

    static constexpr uint32_t currentPresetNumberIndex = 110000;
    static constexpr uint32_t currentPresetNameIndex = 110001;
    static constexpr int presetNameLength = PresetRecord::maxNameLength;

    // How the bank is filled when an instance starts.
    enum DefaultPresetsMode { factoryPresets = 0, clearPresets = 1, userDefinedPresets = 2 };

    // Automatic: edits of the presetable parameters are stored into the
    // current slot as they happen. On demand: only "store" does it.
    enum StoringMode { automaticStoring = 0, onDemandStoring = 1 };

    // Normal: a preset change applies at once. Silent: through the
    // PresetChanger, which mutes around it.
    enum ChangingType { normalChange = 0, silentChange = 1 };

    // Told of changes on the message thread, from the last listener added to
    // the first.
    struct PresetManagerListener
    {
        virtual ~PresetManagerListener() = default;

        // The current preset's values were applied (selection, step, paste, load).
        virtual void presetApplied (BasePluginOldStyle& plugin) = 0;

        // Slot names or values, group names or counts, or the whole bank changed.
        virtual void presetBankChanged (BasePluginOldStyle& plugin) = 0;
    };

    // Carries out a silent change for the effect that installs it: it mutes
    // the output, calls applyCurrentPresetValues() at the quiet point and
    // fades back in. The effect owns it.
    struct PresetChanger
    {
        virtual ~PresetChanger() = default;
        virtual void changePreset() = 0;
    };

    BasePluginOldStyle();
    ~BasePluginOldStyle() override;

    //==============================================================================
    // Selection

    unsigned getCurrentPresetIndex() const noexcept { return currentPreset.load(); }
    juce::String getCurrentPresetName() const { return getSlotName ((int) getCurrentPresetIndex()); }

    // Makes the slot current (index below 128, else nothing happens) and
    // updates the two preset parameters; the values are not applied.
    bool selectPreset (int index, bool notify);

    // Sets parameters 0..19 to the current slot's values, updates the two
    // preset parameters and tells the listeners.
    void applyCurrentPreset();

    // Makes the slot current and changes to it (silently when so set), as a
    // click in a preset list does. Nothing happens for an invalid index.
    void changeToPreset (int index);

    // One slot up or down, changing to it; nothing happens at either end.
    void selectNextPreset();
    void selectPreviousPreset();

    // The values only, without allocating or locking: for the audio thread
    // (program changes, and silent changes at their quiet point). The name
    // parameter and the listeners follow on the message thread.
    void applyCurrentPresetValues (ChangeOrigin origin);

    //==============================================================================
    // Slots

    juce::String getSlotName (int index) const;      // "" for an invalid index
    std::optional<PresetRecord> getSlot (int index) const;
    // Names are cut to PresetRecord::maxNameLength characters. The current
    // slot is renamed through the "Current Preset Name" parameter, as the
    // name display does, so the two always agree.
    void renameSlot (int index, const juce::String& name);
    void storeSlot (int index);                       // the live values, name kept
    void storeCurrentPreset() { storeSlot ((int) getCurrentPresetIndex()); }

    // Copy keeps the current slot's name + "_copy" and the live values; paste
    // (only after a copy) sets the parameters, renames the current slot and
    // stores into it.
    void copyCurrentPreset();
    void pasteCopiedPreset();

    // Every slot "Preset <n>" with the default preset's values, one group
    // "Not used" over all slots.
    void resetBank();

    // The "empty" preset: the values a cleared slot takes.
    PresetRecord getDefaultPreset() const;

    //==============================================================================
    // Groups: consecutive runs of slots whose counts sum to 128.

    juce::String getBankName() const;
    std::vector<PresetGroupRecord> getGroups() const;
    int getFirstSlotOfGroup (int group) const;        // -1 for an invalid group
    bool renameGroup (int group, const juce::String& name);
    bool insertGroup (int beforeGroup, const juce::String& name); // an empty group
    bool removeGroup (int group);                     // only an empty one

    //==============================================================================
    // Files and resources

    // Two letters naming the product in file extensions; the base answers "XX".
    virtual juce::String getShortCode() const { return "XX"; }
    juce::String getPresetFileExtension() const;     // ".xxprs"
    juce::String getBankFileExtension() const;       // ".xxprsb"

    // A file that does not parse, or holds a refused element, loads nothing.
    // Each file loaded or saved makes its folder the last-used one of its
    // kind, where the file dialogs open next.
    bool loadPresetFile (const juce::File& file, int slot);
    bool loadBankFile (const juce::File& file);
    bool savePresetFile (const juce::File& file, int slot);
    bool saveBankFile (const juce::File& file);
    juce::File getLastPresetFolder() const { return lastPresetFolder; }
    juce::File getLastBankFolder() const { return lastBankFolder; }

    // The bank compiled into the plug-in ("default" + bank extension).
    bool loadFactoryBank();

    std::unique_ptr<juce::XmlElement> createPresetElement (int slot) const;
    std::unique_ptr<juce::XmlElement> createBankElement() const;
    bool readPresetElement (const juce::XmlElement& element, int slot);
    bool readBankElement (const juce::XmlElement& element);

    //==============================================================================
    // Settings; each setter saves the user settings.

    int getDefaultPresetsMode() const noexcept { return defaultPresetsMode.load(); }
    juce::File getDefaultPresetsFile() const;
    int getStoringMode() const noexcept { return storingMode.load(); }
    int getChangingType() const noexcept { return changingType.load(); }

    void setDefaultPresetsMode (int mode);
    void setDefaultPresetsFile (const juce::File& bankFile);
    void setStoringMode (int mode);   // automatic also stores the live values at once
    void setChangingType (int type);

    // Mix lock: preset changes leave the product's mix parameters where they
    // are, so a reverb on a send or an insert keeps its balance while its
    // sound changes. Off by default. It applies wherever a preset's values
    // are applied (normal or silent, from the editor, the browser, program
    // changes); paste and storing are edits and copy every value.
    bool isMixLocked() const noexcept { return mixLock.load(); }
    // True for a parameter that preset changes leave alone while the mix is locked.
    bool keepsOnPresetChange (int presetableIndex) const noexcept { return isMixLocked() && isMixParameter[(size_t) presetableIndex]; }
    void setMixLock (bool shouldLock);
    // The names of the parameters the lock keeps; none means no lock to offer.
    juce::StringArray getMixParameterNames() const;

    // Whether the plug-in can change presets silently; only then is the
    // changing type read from the settings.
    virtual bool supportsSilentPresetChange() const { return false; }

    void setPresetChanger (PresetChanger* changer) noexcept { presetChanger = changer; }

    void addPresetManagerListener (PresetManagerListener* listener);
    void removePresetManagerListener (PresetManagerListener* listener);

    //==============================================================================
    std::unique_ptr<juce::XmlElement> buildState() override;
    void readUserSettings (const juce::XmlElement& settings) override;
    void writeUserSettings (juce::XmlElement& settings) override;

    // The host's program chunk is the current preset alone, as a single-preset
    // file holds it (hosts keep it as their own preset files); setting it
    // replaces the current slot and applies it, nothing else.
    void getCurrentProgramStateInformation (juce::MemoryBlock& destData) override;
    void setCurrentProgramStateInformation (const void* data, int sizeInBytes) override;

    int getNumPresets() const override { return numSlots; }
    void selectPresetFromProgramChange (int program) override;

    // The editor's preset events: stepping, copy, paste, and storing the live
    // values into the current slot ("Save Preset" and "Store current preset").
    void handleEvent (int eventId) override;

protected:
    void pollMessageThread() override;
    void presetParameterChanged (const Parameter& parameter, ChangeOrigin origin) override;

    // The presetable parameters that make up the mix; the base has none.
    virtual juce::StringArray getMixParameterCandidates() const { return {}; }

    // Reads the default preset, fills the bank as the default-presets mode
    // says and applies the current preset. The effect base calls it once its
    // core exists and the user settings have been read.
    void initialisePresets();

    bool restoreStateElement (const juce::XmlElement& element) override;

private:
    std::unique_ptr<juce::XmlElement> buildParametersState() const;
    void readParametersState (const juce::XmlElement& element);
    std::unique_ptr<juce::XmlElement> buildPresetsState() const;
    void readPresetsState (const juce::XmlElement& element);
    std::unique_ptr<juce::XmlElement> buildNotPresetableParams() const;
    void readNotPresetableParams (const juce::XmlElement& element);
    void applyCurrentSlot (bool keepMix);

    void readPresetSettings (const juce::XmlElement& settings);
    void fillBankFromDefaults();
    void installBank (const PresetBankRecord& bank);
    void changeToCurrentPreset();
    void setSlotName (int index, const juce::String& name);
    void showCurrentPresetName (bool notify);
    void setParameterValues (const std::array<float, numPresetableParameters>& values, bool keepMix, ChangeOrigin origin);
    std::array<float, numPresetableParameters> liveValues() const;
    void publishCurrentPreset (bool notify);
    void reportPresetApplied();
    void reportBankChanged();
    void publishValues();                 // under slotLock
    void storePendingEdits();
    void dropPendingEdits (int slot);     // -1: every slot
    PresetRecord withPendingEdits (int slot, PresetRecord record) const;

    IntParameter* presetNumberParameter = nullptr;
    StringParameter* presetNameParameter = nullptr;

    // bank.slots, defaultPreset and the copy buffer are guarded by slotLock;
    // bank.name and bank.groups by groupLock.
    mutable juce::CriticalSection slotLock, groupLock;
    PresetBankRecord bank;
    PresetRecord defaultPreset;
    PresetRecord copyBuffer;
    bool copyPresent = false;

    std::atomic<unsigned> currentPreset { 0 };

    std::atomic<int> defaultPresetsMode { factoryPresets };
    std::atomic<int> storingMode { onDemandStoring };
    std::atomic<int> changingType { normalChange };
    std::atomic<bool> mixLock { false };
    std::array<bool, numPresetableParameters> isMixParameter {};
    juce::String defaultPresetsFile;
    juce::File lastPresetFolder, lastBankFolder;

    // The slots' values again, for the audio thread; published under slotLock
    // whenever the slots change.
    BankValues bankValues;

    PresetChanger* presetChanger = nullptr;
    std::vector<PresetManagerListener*> listeners;
    void callListeners (void (PresetManagerListener::*event) (BasePluginOldStyle&));

    // What changes made off the message thread leave for it to do. An edit
    // to store is the slot current when it was made and the value, in one
    // word: bit 63 set, the slot in bits 32..39, the float's bits below.
    std::array<std::atomic<uint64_t>, numPresetableParameters> pendingEdits {};
    std::atomic<bool> presetAppliedPending { false }, bankChangedPending { false };

    JUCE_DECLARE_NON_COPYABLE_WITH_LEAK_DETECTOR (BasePluginOldStyle)
};
