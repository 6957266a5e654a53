#include "CorvelleEffect.h"

#include "CorePresetChanger.h"

#include <cmath>

namespace
{
    const char* const qualityKeywords[] = { "low", "medium", "high", "highest" };
}

CorvelleEffect::CorvelleEffect() = default;

CorvelleEffect::~CorvelleEffect()
{
    stopMessageThreadPoll();
}

void CorvelleEffect::initialise()
{
    qualityParameter = getParameterManager().findParameter ("Quality");
    clocks.add (new Clock());

    // The changer is bound to one core, so it goes before that core does.
    setPresetChanger (nullptr);
    presetChanger.reset();

    {
        auto newCore = createCore();
        const juce::ScopedLock sl (processingLock);
        core = std::move (newCore);
    }

    if (core != nullptr)
    {
        presetChanger = std::make_unique<CorePresetChanger> (*this, *core);
        setPresetChanger (presetChanger.get());
    }

    if (core != nullptr)
    {
        // The core starts from the parameters' current values; later changes
        // reach its inbox through the router as they happen.
        for (auto* p : getParameterManager().getAllParameters())
            postToEngine (*p);

        setLatencySamples (core->getLatency());
    }

    // Called at the end of the product's constructor, so every class of the
    // chain reads its own settings.
    loadUserSettings();
    initialisePresets();

    if (supportsQuality() && qualityParameter != nullptr)
        qualityParameter->setNormalisedValue ((float) defaultQuality * qualityStepSize, ChangeOrigin::restore);

    startMessageThreadPoll();
}

int CorvelleEffect::qualityStepFor (float normalisedValue) noexcept
{
    return juce::jlimit (0, numQualitySteps - 1, (int) std::floor (normalisedValue * 3.0f + 0.5f));
}

juce::String CorvelleEffect::qualityKeyword (int step)
{
    return qualityKeywords[juce::jlimit (0, numQualitySteps - 1, step)];
}

int CorvelleEffect::qualityStepForKeyword (const juce::String& keyword)
{
    for (int step = 0; step < numQualitySteps; ++step)
        if (keyword == qualityKeywords[step])
            return step;

    return -1;
}

int CorvelleEffect::getCurrentQualityStep() const
{
    return qualityParameter != nullptr ? qualityStepFor (qualityParameter->getNormalisedValue()) : defaultQuality;
}

// Any thread: the value is posted to the core, which takes it at its next
// block boundary; nothing waits and nothing is allocated. The value posted is
// the one the parameter holds now, so that when two threads change the same
// parameter at once the core ends with what the parameter ends with.
void CorvelleEffect::postToEngine (const Parameter& parameter) noexcept
{
    if (core == nullptr)
        return;

    if (&parameter == qualityParameter)
    {
        if (supportsQuality() && ! isQualityLocked())
            core->postQuality ((unsigned) qualityStepFor (parameter.getNormalisedValue()));
    }
    else
    {
        core->postParameter (parameter.getIndex(), parameter.getNormalisedValue());
    }
}

void CorvelleEffect::setDefaultQuality (int step)
{
    if (step < 0 || step >= numQualitySteps)
        return;

    defaultQuality = step;
    saveUserSettings();
}

void CorvelleEffect::readUserSettings (const juce::XmlElement& settings)
{
    BasePluginOldStyle::readUserSettings (settings);

    for (auto* child : settings.getChildIterator())
    {
        if (child->getTagName() != "QualitySettings")
            continue;

        const int step = qualityStepForKeyword (child->getStringAttribute ("default"));

        if (step >= 0)
            defaultQuality = step;
    }
}

void CorvelleEffect::writeUserSettings (juce::XmlElement& settings)
{
    BasePluginOldStyle::writeUserSettings (settings);
    settings.createNewChildElement ("QualitySettings")->setAttribute ("default", qualityKeyword (defaultQuality));
}

//==============================================================================
std::unique_ptr<juce::XmlElement> CorvelleEffect::buildState()
{
    auto state = BasePluginOldStyle::buildState();

    if (supportsQuality())
        state->createNewChildElement ("UniqueData")->setAttribute ("quality", qualityKeyword (getCurrentQualityStep()));

    return state;
}

bool CorvelleEffect::restoreStateElement (const juce::XmlElement& element)
{
    if (element.getTagName() == "UniqueData")
    {
        const int step = qualityStepForKeyword (element.getStringAttribute ("quality"));

        if (step >= 0 && supportsQuality() && qualityParameter != nullptr)
            qualityParameter->setNormalisedValue ((float) step * qualityStepSize, ChangeOrigin::restore);

        return true;
    }

    return BasePluginOldStyle::restoreStateElement (element);
}

//==============================================================================
void CorvelleEffect::prepareToPlay (double sampleRate, int maximumExpectedSamplesPerBlock)
{
    prepared.exchange (1);

    for (auto* clock : clocks)
        clock->setSampleRate (sampleRate);

    if (core != nullptr)
    {
        {
            const juce::ScopedLock sl (processingLock);
            core->prepare (sampleRate, maximumExpectedSamplesPerBlock);
        }

        setLatencySamples (core->getLatency());
    }
}

// Hosts call this on their audio thread too, so it never waits: when a block
// or a prepare holds the lock, the request is handed over and the next piece
// rendered starts from silence.
void CorvelleEffect::reset()
{
    if (core == nullptr)
        return;

    resetPending.store (true);
    const juce::ScopedTryLock sl (processingLock);

    if (sl.isLocked() && resetPending.exchange (false))
        core->reset();
}

void CorvelleEffect::releaseResources()
{
    prepared.exchange (0);
}

void CorvelleEffect::synchroniseClocks()
{
    if (clocks.isEmpty())
        return;

    auto* playHead = getPlayHead();

    if (playHead == nullptr)
        return;

    const auto position = playHead->getPosition();

    if (! position.hasValue())
        return;

    const double tempo = position->getBpm().orFallback (120.0);
    const double quarters = position->getPpqPosition().orFallback (0.0);
    const bool playing = position->getIsPlaying();

    if (core != nullptr)
    {
        const juce::ScopedTryLock sl (processingLock);

        if (sl.isLocked())
            core->setTempo (tempo);
    }

    for (auto* clock : clocks)
    {
        clock->setTempo (tempo);
        clock->setPosition (quarters);

        if (playing && ! clock->isRunning())
            clock->start (quarters);
        else if (! playing && clock->isRunning())
            clock->stop();
    }
}

void CorvelleEffect::processBlock (juce::AudioBuffer<float>& buffer, juce::MidiBuffer& midiMessages)
{
    const int numSamples = buffer.getNumSamples();
    const int numInputs = getTotalNumInputChannels();
    const int numOutputs = juce::jmin (getTotalNumOutputChannels(), buffer.getNumChannels());

    synchroniseClocks();

    isStereo = numInputs == 2 && numOutputs == 2;

    for (int channel = numInputs; channel < numOutputs; ++channel)
        buffer.clear (channel, 0, numSamples);

    leftPtr = buffer.getNumChannels() > 0 ? buffer.getWritePointer (0) : nullptr;
    rightPtr = isStereo ? buffer.getWritePointer (1) : nullptr;

    if (leftPtr == nullptr)
        return;

    auto event = midiMessages.cbegin();
    const auto end = midiMessages.cend();
    pendingSamples = 0;
    processedSamples = 0;

    for (int position = 0; position < numSamples; ++position)
    {
        for (; event != end && (*event).samplePosition <= position; ++event)
        {
            renderPending();
            handleMidiEvent (*event);
        }

        for (int i = 0; i < clocks.size(); ++i)
        {
            auto* clock = clocks.getUnchecked (i);

            if (clock->advance())
            {
                renderPending();

                if (core != nullptr && clock->isEventForCore())
                {
                    const juce::ScopedTryLock sl (processingLock);

                    if (sl.isLocked())
                        core->clockEvent (i, *clock);
                }
            }
        }

        ++pendingSamples;
    }

    renderPending();

    // Events stamped past the block's end still count; they take effect after it.
    for (; event != end; ++event)
        handleMidiEvent (*event);
}

// The processing lock is only ever held for long by a prepare on another
// thread; the audio thread never waits for it and lets that piece pass
// through unprocessed instead.
void CorvelleEffect::renderPending()
{
    if (pendingSamples <= 0)
        return;

    if (! isSuspended() && core != nullptr)
    {
        const juce::ScopedTryLock sl (processingLock);

        if (sl.isLocked())
        {
            if (resetPending.exchange (false))
                core->reset();

            if (isStereo)
            {
                float* channels[] = { leftPtr, rightPtr };
                core->process (channels, channels, pendingSamples);
            }
            else
            {
                core->processMono (&leftPtr, pendingSamples);
            }
        }
    }

    leftPtr += pendingSamples;

    if (isStereo)
        rightPtr += pendingSamples;

    processedSamples += pendingSamples;
    pendingSamples = 0;
}

// Only controllers and program changes are read, from the event's bytes: a
// longer message (SysEx) is never copied into a MidiMessage, which would
// allocate.
void CorvelleEffect::handleMidiEvent (const juce::MidiMessageMetadata& event)
{
    if (event.numBytes < 2 || event.numBytes > 3)
        return;

    const juce::MidiMessage message (event.data, event.numBytes);

    if (message.isController())
        handleControllerMessage (message);
    else if (message.isProgramChange() && message.getProgramChangeNumber() < getNumPresets())
        selectPresetFromProgramChange (message.getProgramChangeNumber());
}
