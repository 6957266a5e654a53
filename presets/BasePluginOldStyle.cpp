#include "BasePluginOldStyle.h"

#include "CaseInsensitiveXml.h"
#include "Preset.h"
#include "PresetBank.h"
#include "PresetValueText.h"
#include "framework/IntParameter.h"
#include "framework/Resources.h"
#include "framework/XmlReading.h"
#include "framework/StringParameter.h"

#include <algorithm>
#include <cstring>

namespace
{
    const char* const defaultPresetsKeywords[] = { "factoryPresets", "clearPresets", "userDefinedPresets" };

    bool isMessageThread()
    {
        return juce::MessageManager::existsAndIsCurrentThread();
    }

    bool isValidSlot (int index) { return index >= 0 && index < BasePluginOldStyle::numSlots; }

    constexpr uint64_t editPending = uint64_t (1) << 63;

    uint64_t packEdit (unsigned slot, float value) noexcept
    {
        uint32_t bits;
        std::memcpy (&bits, &value, sizeof (bits));
        return editPending | (uint64_t (slot & 0xff) << 32) | bits;
    }

    int editSlot (uint64_t packed) noexcept { return (int) ((packed >> 32) & 0xff); }

    float editValue (uint64_t packed) noexcept
    {
        const auto bits = (uint32_t) packed;
        float value;
        std::memcpy (&value, &bits, sizeof (value));
        return value;
    }

    bool writeDocument (const juce::XmlElement& element, const juce::File& file)
    {
        juce::XmlElement::TextFormat format;
        format.customEncoding = "UTF-8";
        return element.writeTo (file, format);
    }

    juce::XmlElement& getOrCreateChild (juce::XmlElement& parent, const juce::String& tag)
    {
        if (auto* child = parent.getChildByName (tag))
            return *child;

        return *parent.createNewChildElement (tag);
    }
}

BasePluginOldStyle::BasePluginOldStyle()
{
    auto number = std::make_unique<IntParameter> (currentPresetNumberIndex, "Current Preset Number", 0, numSlots - 1, 0);
    auto name = std::make_unique<StringParameter> (currentPresetNameIndex, "Current Preset Name", juce::String(), presetNameLength);
    presetNumberParameter = number.get();
    presetNameParameter = name.get();
    getParameterManager().addParameter (std::move (number), true);
    getParameterManager().addParameter (std::move (name), true);

    defaultPreset.values = liveValues();
    copyBuffer.values = defaultPreset.values;

    for (auto& slot : bank.slots)
        slot.values = defaultPreset.values;

    publishValues();
    bank.groups = { { PresetBankRecord::unusedGroupName, numSlots } };
}

BasePluginOldStyle::~BasePluginOldStyle() = default;

//==============================================================================
void BasePluginOldStyle::initialisePresets()
{
    for (const auto& name : getMixParameterCandidates())
        if (const auto* p = getParameterManager().findParameter (name))
            if ((int) p->getIndex() >= firstPresetableIndex && (int) p->getIndex() < firstPresetableIndex + numPresetableParameters)
                isMixParameter[p->getIndex() - (uint32_t) firstPresetableIndex] = true;

    if (auto element = parseXmlText (Resources::getText ("default" + getPresetFileExtension())))
    {
        auto record = getDefaultPreset();

        if (Preset::read (*element, record, getParameterManager(), getPluginName()))
        {
            const juce::ScopedLock sl (slotLock);
            defaultPreset = record;
        }
    }

    fillBankFromDefaults();
    // In full, the mix too: the lock keeps a mix the user has set, and a new
    // instance has none yet.
    applyCurrentSlot (false);
}

void BasePluginOldStyle::fillBankFromDefaults()
{
    switch (getDefaultPresetsMode())
    {
        case clearPresets:
            resetBank();
            return;

        case userDefinedPresets:
        {
            // A path that is empty, missing, a folder or unreadable falls back to the factory bank.
            const auto file = getDefaultPresetsFile();
            const auto element = file.existsAsFile() ? parseXmlFile (file) : nullptr;

            if (element != nullptr && readBankElement (*element))
            {
                lastBankFolder = file.getParentDirectory();
                return;
            }

            break;
        }

        default:
            break;
    }

    loadFactoryBank();
}

//==============================================================================
bool BasePluginOldStyle::selectPreset (int index, bool notify)
{
    if (! isValidSlot (index))
        return false;

    currentPreset = (unsigned) index;
    publishCurrentPreset (notify);
    return true;
}

void BasePluginOldStyle::applyCurrentPreset()
{
    applyCurrentSlot (isMixLocked());
}

void BasePluginOldStyle::applyCurrentSlot (bool keepMix)
{
    const auto slot = getSlot ((int) getCurrentPresetIndex());

    if (! slot.has_value())
        return;

    setParameterValues (slot->values, keepMix, ChangeOrigin::preset);
    publishCurrentPreset (true);
    reportPresetApplied();
}

void BasePluginOldStyle::applyCurrentPresetValues (ChangeOrigin origin)
{
    BankValues::Values values;

    if (! bankValues.read ((int) (getCurrentPresetIndex() % numSlots), values))
        return;

    setParameterValues (values, isMixLocked(), origin);
    presetNumberParameter->setIntValue ((int) getCurrentPresetIndex(), ChangeOrigin::preset);
    presetAppliedPending.store (true, std::memory_order_release);
}

void BasePluginOldStyle::publishValues()
{
    bankValues.publish (bank.slots);
}

void BasePluginOldStyle::changeToPreset (int index)
{
    if (isValidSlot (index))
    {
        currentPreset = (unsigned) index;
        changeToCurrentPreset();
    }
}

void BasePluginOldStyle::selectNextPreset()
{
    changeToPreset ((int) getCurrentPresetIndex() + 1);
}

void BasePluginOldStyle::selectPreviousPreset()
{
    changeToPreset ((int) getCurrentPresetIndex() - 1);
}

void BasePluginOldStyle::changeToCurrentPreset()
{
    if (getChangingType() == silentChange && presetChanger != nullptr)
        presetChanger->changePreset();
    else
        applyCurrentPreset();
}

// Audio thread: nothing here allocates; the name follows on the message thread.
void BasePluginOldStyle::selectPresetFromProgramChange (int program)
{
    if (! isValidSlot (program))
        return;

    currentPreset = (unsigned) program;

    if (getChangingType() == silentChange && presetChanger != nullptr)
    {
        presetNumberParameter->setIntValue (program, ChangeOrigin::preset);
        presetChanger->changePreset();
    }
    else
    {
        applyCurrentPresetValues (ChangeOrigin::preset);
    }
}

void BasePluginOldStyle::setParameterValues (const std::array<float, numPresetableParameters>& values, bool keepMix,
                                             ChangeOrigin origin)
{
    for (int i = 0; i < numPresetableParameters; ++i)
        if (! (keepMix && isMixParameter[(size_t) i]))
            if (auto* p = getPluginParameter ((uint32_t) (firstPresetableIndex + i)))
                p->setNormalisedValue (values[(size_t) i], origin);
}

std::array<float, BasePluginOldStyle::numPresetableParameters> BasePluginOldStyle::liveValues() const
{
    std::array<float, numPresetableParameters> values {};

    for (int i = 0; i < numPresetableParameters; ++i)
        if (const auto* p = getPluginParameter ((uint32_t) (firstPresetableIndex + i)))
            values[(size_t) i] = p->getNormalisedValue();

    return values;
}

void BasePluginOldStyle::publishCurrentPreset (bool notify)
{
    const auto origin = notify ? ChangeOrigin::preset : ChangeOrigin::quiet;
    presetNumberParameter->setIntValue ((int) getCurrentPresetIndex(), origin);
    showCurrentPresetName (notify);
}

void BasePluginOldStyle::showCurrentPresetName (bool notify)
{
    presetNameParameter->setText (getCurrentPresetName(), notify ? ChangeOrigin::preset : ChangeOrigin::quiet);
}

// Off the message thread only a flag is set; pollMessageThread reports it.
// Program changes and silent changes on the audio thread always report that way.
void BasePluginOldStyle::reportPresetApplied()
{
    if (isMessageThread())
        callListeners (&PresetManagerListener::presetApplied);
    else
        presetAppliedPending.store (true, std::memory_order_release);
}

void BasePluginOldStyle::reportBankChanged()
{
    if (isMessageThread())
        callListeners (&PresetManagerListener::presetBankChanged);
    else
        bankChangedPending.store (true, std::memory_order_release);
}

void BasePluginOldStyle::pollMessageThread()
{
    storePendingEdits();

    if (bankChangedPending.exchange (false, std::memory_order_acq_rel))
        reportBankChanged();

    if (presetAppliedPending.exchange (false, std::memory_order_acq_rel))
    {
        publishCurrentPreset (true);
        reportPresetApplied();
    }

    BasePlugin::pollMessageThread();
}

void BasePluginOldStyle::addPresetManagerListener (PresetManagerListener* listener)
{
    if (std::find (listeners.begin(), listeners.end(), listener) == listeners.end())
        listeners.push_back (listener);
}

void BasePluginOldStyle::removePresetManagerListener (PresetManagerListener* listener)
{
    listeners.erase (std::remove (listeners.begin(), listeners.end(), listener), listeners.end());
}

// A listener may remove itself or another from inside its call: each is
// called only while it is still listening.
void BasePluginOldStyle::callListeners (void (PresetManagerListener::*event) (BasePluginOldStyle&))
{
    const auto listening = listeners;

    for (auto* listener : listening)
        if (std::find (listeners.begin(), listeners.end(), listener) != listeners.end())
            (listener->*event) (*this);
}

//==============================================================================
juce::String BasePluginOldStyle::getSlotName (int index) const
{
    const auto slot = getSlot (index);
    return slot.has_value() ? slot->name : juce::String();
}

std::optional<PresetRecord> BasePluginOldStyle::getSlot (int index) const
{
    if (! isValidSlot (index))
        return std::nullopt;

    const juce::ScopedLock sl (slotLock);
    return withPendingEdits (index, bank.slots[(size_t) index]);
}

// Edits not yet stored are part of the slot for whoever reads it.
PresetRecord BasePluginOldStyle::withPendingEdits (int slot, PresetRecord record) const
{
    for (size_t i = 0; i < pendingEdits.size(); ++i)
        if (const auto packed = pendingEdits[i].load (std::memory_order_acquire); packed != 0 && editSlot (packed) == slot)
            record.values[i] = editValue (packed);

    return record;
}

void BasePluginOldStyle::storePendingEdits()
{
    const juce::ScopedLock sl (slotLock);
    bool stored = false;

    for (size_t i = 0; i < pendingEdits.size(); ++i)
    {
        if (const auto packed = pendingEdits[i].exchange (0, std::memory_order_acq_rel); packed != 0)
        {
            bank.slots[(size_t) editSlot (packed)].values[i] = editValue (packed);
            stored = true;
        }
    }

    if (stored)
        publishValues();
}

// Edits made to what a slot held before it was replaced are not the new
// content's.
void BasePluginOldStyle::dropPendingEdits (int slot)
{
    for (auto& pending : pendingEdits)
    {
        auto packed = pending.load (std::memory_order_acquire);

        while (packed != 0 && (slot < 0 || editSlot (packed) == slot)
               && ! pending.compare_exchange_weak (packed, 0, std::memory_order_acq_rel))
        {
        }
    }
}

void BasePluginOldStyle::renameSlot (int index, const juce::String& name)
{
    if (index == (int) getCurrentPresetIndex())
        presetNameParameter->setText (name, ChangeOrigin::editor); // its change renames the slot
    else
        setSlotName (index, name);
}

void BasePluginOldStyle::setSlotName (int index, const juce::String& name)
{
    if (! isValidSlot (index))
        return;

    {
        const juce::ScopedLock sl (slotLock);
        auto& slotName = bank.slots[(size_t) index].name;
        const auto fitted = PresetRecord::fitName (name);

        if (slotName == fitted)
            return;

        slotName = fitted;
    }

    reportBankChanged();
}

void BasePluginOldStyle::storeSlot (int index)
{
    if (! isValidSlot (index))
        return;

    const auto values = liveValues();

    {
        const juce::ScopedLock sl (slotLock);
        dropPendingEdits (index);
        bank.slots[(size_t) index].values = values;
        publishValues();
    }

    reportBankChanged();
}

void BasePluginOldStyle::copyCurrentPreset()
{
    const auto values = liveValues();
    const auto name = PresetRecord::fitName (getCurrentPresetName() + "_copy");

    const juce::ScopedLock sl (slotLock);
    copyBuffer = { name, values };
    copyPresent = true;
}

void BasePluginOldStyle::pasteCopiedPreset()
{
    PresetRecord copied;

    {
        const juce::ScopedLock sl (slotLock);

        if (! copyPresent)
            return;

        copied = copyBuffer;
    }

    setParameterValues (copied.values, false, ChangeOrigin::editor);
    storeCurrentPreset();
    renameSlot ((int) getCurrentPresetIndex(), copied.name);
    reportPresetApplied();
}

void BasePluginOldStyle::resetBank()
{
    PresetBankRecord cleared;
    cleared.name = getBankName();
    cleared.reset (getDefaultPreset());
    installBank (cleared);
}

PresetRecord BasePluginOldStyle::getDefaultPreset() const
{
    const juce::ScopedLock sl (slotLock);
    return defaultPreset;
}

void BasePluginOldStyle::installBank (const PresetBankRecord& newBank)
{
    {
        const juce::ScopedLock sl (slotLock);
        dropPendingEdits (-1);
        bank.slots = newBank.slots;
        publishValues();
    }

    {
        const juce::ScopedLock sl (groupLock);
        bank.name = newBank.name;
        bank.groups = newBank.groups;
    }

    showCurrentPresetName (true);
    reportBankChanged();
}

//==============================================================================
juce::String BasePluginOldStyle::getBankName() const
{
    const juce::ScopedLock sl (groupLock);
    return bank.name;
}

std::vector<PresetGroupRecord> BasePluginOldStyle::getGroups() const
{
    const juce::ScopedLock sl (groupLock);
    return bank.groups;
}

int BasePluginOldStyle::getFirstSlotOfGroup (int group) const
{
    const juce::ScopedLock sl (groupLock);

    if (group < 0 || group >= (int) bank.groups.size())
        return -1;

    int first = 0;

    for (int g = 0; g < group; ++g)
        first += bank.groups[(size_t) g].count;

    return first;
}

bool BasePluginOldStyle::renameGroup (int group, const juce::String& name)
{
    {
        const juce::ScopedLock sl (groupLock);

        if (group < 0 || group >= (int) bank.groups.size())
            return false;

        bank.groups[(size_t) group].name = name;
    }

    reportBankChanged();
    return true;
}

bool BasePluginOldStyle::insertGroup (int beforeGroup, const juce::String& name)
{
    {
        const juce::ScopedLock sl (groupLock);

        if (beforeGroup < 0 || beforeGroup > (int) bank.groups.size())
            return false;

        bank.groups.insert (bank.groups.begin() + beforeGroup, PresetGroupRecord { name, 0 });
    }

    reportBankChanged();
    return true;
}

bool BasePluginOldStyle::removeGroup (int group)
{
    {
        const juce::ScopedLock sl (groupLock);

        if (group < 0 || group >= (int) bank.groups.size() || bank.groups[(size_t) group].count != 0)
            return false;

        bank.groups.erase (bank.groups.begin() + group);
    }

    reportBankChanged();
    return true;
}

//==============================================================================
juce::String BasePluginOldStyle::getPresetFileExtension() const
{
    return ("." + getShortCode() + "prs").toLowerCase();
}

juce::String BasePluginOldStyle::getBankFileExtension() const
{
    return ("." + getShortCode() + "prsb").toLowerCase();
}

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::createPresetElement (int slot) const
{
    const auto record = getSlot (slot);
    return record.has_value() ? Preset::write (*record, getParameterManager(), getPluginName()) : nullptr;
}

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::createBankElement() const
{
    auto copy = std::make_unique<PresetBankRecord>();

    {
        const juce::ScopedLock sl (slotLock);

        for (int i = 0; i < numSlots; ++i)
            copy->slots[(size_t) i] = withPendingEdits (i, bank.slots[(size_t) i]);
    }

    {
        const juce::ScopedLock sl (groupLock);
        copy->name = bank.name;
        copy->groups = bank.groups;
    }

    return PresetBank::write (*copy, getParameterManager(), getPluginName());
}

bool BasePluginOldStyle::readPresetElement (const juce::XmlElement& element, int slot)
{
    auto record = getSlot (slot);

    if (! record.has_value() || ! Preset::read (element, *record, getParameterManager(), getPluginName()))
        return false;

    {
        const juce::ScopedLock sl (slotLock);
        dropPendingEdits (slot);
        bank.slots[(size_t) slot] = *record;
        publishValues();
    }

    if (slot == (int) getCurrentPresetIndex())
        applyCurrentPreset();

    reportBankChanged();
    return true;
}

bool BasePluginOldStyle::readBankElement (const juce::XmlElement& element)
{
    auto newBank = std::make_unique<PresetBankRecord>();

    if (! PresetBank::read (element, *newBank, getDefaultPreset(), getParameterManager(), getPluginName()))
        return false;

    installBank (*newBank);
    return true;
}

bool BasePluginOldStyle::loadPresetFile (const juce::File& file, int slot)
{
    const auto element = parseXmlFile (file);

    if (element == nullptr || ! readPresetElement (*element, slot))
        return false;

    lastPresetFolder = file.getParentDirectory();
    return true;
}

void BasePluginOldStyle::getCurrentProgramStateInformation (juce::MemoryBlock& destData)
{
    if (const auto preset = createPresetElement ((int) getCurrentPresetIndex()))
        copyXmlToBinary (*preset, destData);
}

void BasePluginOldStyle::setCurrentProgramStateInformation (const void* data, int sizeInBytes)
{
    if (const auto preset = parseXmlChunk (data, sizeInBytes))
        readPresetElement (*preset, (int) getCurrentPresetIndex());
}

bool BasePluginOldStyle::loadBankFile (const juce::File& file)
{
    const auto element = parseXmlFile (file);

    if (element == nullptr || ! readBankElement (*element))
        return false;

    lastBankFolder = file.getParentDirectory();
    applyCurrentPreset();
    return true;
}

bool BasePluginOldStyle::savePresetFile (const juce::File& file, int slot)
{
    const auto element = createPresetElement (slot);

    if (element == nullptr || ! writeDocument (*element, file))
        return false;

    lastPresetFolder = file.getParentDirectory();
    return true;
}

bool BasePluginOldStyle::saveBankFile (const juce::File& file)
{
    if (! writeDocument (*createBankElement(), file))
        return false;

    lastBankFolder = file.getParentDirectory();
    return true;
}

bool BasePluginOldStyle::loadFactoryBank()
{
    const auto element = parseXmlText (Resources::getText ("default" + getBankFileExtension()));
    return element != nullptr && readBankElement (*element);
}

//==============================================================================
juce::File BasePluginOldStyle::getDefaultPresetsFile() const
{
    return defaultPresetsFile.isNotEmpty() ? juce::File::getCurrentWorkingDirectory().getChildFile (defaultPresetsFile)
                                           : juce::File();
}

void BasePluginOldStyle::setDefaultPresetsMode (int mode)
{
    if (mode < factoryPresets || mode > userDefinedPresets)
        return;

    defaultPresetsMode = mode;
    saveUserSettings();
}

void BasePluginOldStyle::setDefaultPresetsFile (const juce::File& bankFile)
{
    defaultPresetsFile = bankFile.getFullPathName();
    saveUserSettings();
}

void BasePluginOldStyle::setStoringMode (int mode)
{
    if (mode != automaticStoring && mode != onDemandStoring)
        return;

    storingMode = mode;

    if (mode == automaticStoring)
        storeCurrentPreset();

    saveUserSettings();
}

void BasePluginOldStyle::setChangingType (int type)
{
    if (type != normalChange && type != silentChange)
        return;

    changingType = type;
    saveUserSettings();
}

void BasePluginOldStyle::setMixLock (bool shouldLock)
{
    mixLock = shouldLock;
    saveUserSettings();
}

juce::StringArray BasePluginOldStyle::getMixParameterNames() const
{
    juce::StringArray names;

    for (int i = 0; i < numPresetableParameters; ++i)
        if (isMixParameter[(size_t) i])
            if (const auto* p = getPluginParameter ((uint32_t) (firstPresetableIndex + i)))
                names.add (p->getName());

    return names;
}

void BasePluginOldStyle::readUserSettings (const juce::XmlElement& settings)
{
    BasePlugin::readUserSettings (settings);
    readPresetSettings (settings);
}

void BasePluginOldStyle::readPresetSettings (const juce::XmlElement& settings)
{
    if (const auto* resources = CaseInsensitiveXml::findChild (settings, "ResourcesSettings"))
    {
        if (const auto* presets = CaseInsensitiveXml::findChild (*resources, "Presets"))
        {
            const auto keyword = CaseInsensitiveXml::attribute (*presets, "default");

            for (int mode = factoryPresets; mode <= userDefinedPresets; ++mode)
            {
                if (keyword.equalsIgnoreCase (defaultPresetsKeywords[mode]))
                {
                    defaultPresetsMode = mode;

                    if (mode == userDefinedPresets)
                        defaultPresetsFile = CaseInsensitiveXml::attribute (*presets, "file");
                }
            }
        }
    }

    if (const auto* presetSettings = CaseInsensitiveXml::findChild (settings, "PresetSettings"))
    {
        const auto storing = CaseInsensitiveXml::attribute (*presetSettings, "storing");

        if (storing.equalsIgnoreCase ("onDemand"))
        {
            storingMode = onDemandStoring;
        }
        else if (storing.equalsIgnoreCase ("automatic"))
        {
            storingMode = automaticStoring;
            storeCurrentPreset();
        }

        const auto lock = CaseInsensitiveXml::attribute (*presetSettings, "mixLock");

        if (lock.equalsIgnoreCase ("on"))
            mixLock = true;
        else if (lock.equalsIgnoreCase ("off"))
            mixLock = false;

        if (supportsSilentPresetChange())
        {
            const auto changing = CaseInsensitiveXml::attribute (*presetSettings, "changing");

            if (changing.equalsIgnoreCase ("normal"))
                changingType = normalChange;
            else if (changing.equalsIgnoreCase ("silent"))
                changingType = silentChange;
        }
    }
}

void BasePluginOldStyle::writeUserSettings (juce::XmlElement& settings)
{
    BasePlugin::writeUserSettings (settings);

    auto& presets = getOrCreateChild (getOrCreateChild (settings, "ResourcesSettings"), "Presets");
    presets.setAttribute ("default", defaultPresetsKeywords[getDefaultPresetsMode()]);

    if (getDefaultPresetsMode() == userDefinedPresets)
        presets.setAttribute ("file", defaultPresetsFile);
    else
        presets.removeAttribute ("file");

    auto& presetSettings = getOrCreateChild (settings, "PresetSettings");
    presetSettings.setAttribute ("storing", getStoringMode() == onDemandStoring ? "onDemand" : "automatic");
    presetSettings.setAttribute ("changing", getChangingType() == silentChange ? "silent" : "normal");
    presetSettings.setAttribute ("mixLock", isMixLocked() ? "on" : "off");
}

//==============================================================================
// The name display, the browser and paste rename the current slot through
// its name parameter; the manager showing a slot's name is no rename. Edits
// of the sound are noted with the slot they were made in, for the poll to
// store when automatic storing is on.
void BasePluginOldStyle::presetParameterChanged (const Parameter& parameter, ChangeOrigin origin)
{
    if (&parameter == presetNameParameter)
    {
        if (origin != ChangeOrigin::preset)
            setSlotName ((int) getCurrentPresetIndex(), parameter.getText());

        return;
    }

    const auto index = (int) parameter.getIndex() - firstPresetableIndex;

    if (isEdit (origin) && getStoringMode() == automaticStoring && index >= 0 && index < numPresetableParameters)
        pendingEdits[(size_t) index].store (packEdit (getCurrentPresetIndex(), parameter.getNormalisedValue()),
                                            std::memory_order_release);
}

//==============================================================================
std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildState()
{
    auto state = BasePlugin::buildState();
    state->addChildElement (buildParametersState().release());
    state->addChildElement (buildPresetsState().release());
    state->addChildElement (getMidiControl().writeMap (getPluginName()).release());
    return state;
}

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildParametersState() const
{
    auto element = std::make_unique<juce::XmlElement> ("ParametersState");

    for (int i = firstPresetableIndex; i < firstPresetableIndex + numPresetableParameters; ++i)
    {
        if (const auto* p = getPluginParameter ((uint32_t) i))
        {
            auto* param = element->createNewChildElement ("param");
            param->setAttribute ("name", p->getName());
            param->setAttribute ("value", presetValueText (p->getNormalisedValue()));
        }
    }

    return element;
}

void BasePluginOldStyle::readParametersState (const juce::XmlElement& element)
{
    for (auto* param : element.getChildWithTagNameIterator ("param"))
    {
        // Any parameter named here is set, presetable or not; unknown names are skipped.
        if (auto* p = getParameterManager().findParameter (param->getStringAttribute ("name")))
            p->setNormalisedValue ((float) param->getDoubleAttribute ("value", 0.0), ChangeOrigin::restore);
    }
}

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildPresetsState() const
{
    auto element = std::make_unique<juce::XmlElement> ("PresetsState");
    element->setAttribute ("currentPreset", (int) getCurrentPresetIndex());
    element->addChildElement (createBankElement().release());
    element->addChildElement (buildNotPresetableParams().release());
    return element;
}

// The bank is taken as it is and the current preset only selected: the live
// values come from ParametersState.
void BasePluginOldStyle::readPresetsState (const juce::XmlElement& element)
{
    for (auto* child : element.getChildIterator())
        if (PresetBank::accepts (*child))
            readBankElement (*child);

    // Taken as an integer: a missing or unreadable attribute selects slot 0.
    selectPreset (CaseInsensitiveXml::attribute (element, "currentPreset").getIntValue(), true);

    for (auto* child : element.getChildIterator())
        if (CaseInsensitiveXml::isTag (*child, "NotPresetableParams") || CaseInsensitiveXml::isTag (*child, "NotPresetParams"))
            readNotPresetableParams (*child);
}

// The parameters that presets never hold (the quality, the decay display),
// numbered on from the presetable ones. They travel with the bank in the
// state, after the PresetBank element, where readers that do not know them
// pass them by.
std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildNotPresetableParams() const
{
    auto element = std::make_unique<juce::XmlElement> ("NotPresetableParams");

    for (auto index = (uint32_t) (firstPresetableIndex + numPresetableParameters); const auto* p = getPluginParameter (index); ++index)
    {
        auto* param = element->createNewChildElement ("param");
        param->setAttribute ("name", p->getName());
        param->setAttribute ("value", presetValueText (p->getNormalisedValue()));
    }

    return element;
}

// Only the parameters it is written with are set: the element cannot change
// the presets, the live values or the current preset.
void BasePluginOldStyle::readNotPresetableParams (const juce::XmlElement& element)
{
    const auto first = (uint32_t) (firstPresetableIndex + numPresetableParameters);
    auto end = first;

    while (getPluginParameter (end) != nullptr)
        ++end;

    for (auto* param : element.getChildIterator())
    {
        if (! CaseInsensitiveXml::isTag (*param, "param"))
            continue;

        auto* p = getParameterManager().findParameter (CaseInsensitiveXml::attribute (*param, "name"));

        if (p != nullptr && p->getIndex() >= first && p->getIndex() < end)
            p->setNormalisedValue (CaseInsensitiveXml::attribute (*param, "value").getFloatValue(), ChangeOrigin::restore);
    }
}

bool BasePluginOldStyle::restoreStateElement (const juce::XmlElement& element)
{
    if (element.getTagName() == "ParametersState")
    {
        readParametersState (element);
        return true;
    }

    if (element.getTagName() == "PresetsState")
    {
        readPresetsState (element);
        return true;
    }

    return BasePlugin::restoreStateElement (element);
}

void BasePluginOldStyle::handleEvent (int eventId)
{
    switch (eventId)
    {
        case EventRegistry::selectNextPreset:     selectNextPreset(); break;
        case EventRegistry::selectPreviousPreset: selectPreviousPreset(); break;
        case EventRegistry::copyCurrentPreset:    copyCurrentPreset(); break;
        case EventRegistry::pasteCopiedPreset:    pasteCopiedPreset(); break;
        case EventRegistry::savePreset:
        case EventRegistry::storeCurrentPreset:   storeCurrentPreset(); break;
        default:                                  BasePlugin::handleEvent (eventId); break;
    }
}
