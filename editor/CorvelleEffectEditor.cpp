#include "CorvelleEffectEditor.h"

#include "GFXAnimation.h"
#include "QualitySettingsPage.h"
#include "platform/PendingRepaints.h"

CorvelleEffectEditor::CorvelleEffectEditor (CorvelleEffect& e)
    : BasePluginEditorOldStyle (e), effect (e)
{
    leftMeter = dynamic_cast<GFXAnimation*> (findController ("LeftVUMeter"));
    rightMeter = dynamic_cast<GFXAnimation*> (findController ("RightVUMeter"));
    startTimer (meterRefreshMs);
}

CorvelleEffectEditor::CorvelleEffectEditor (CorvelleEffect& e, const juce::XmlElement* skin)
    : BasePluginEditorOldStyle (e, skin), effect (e)
{
    leftMeter = dynamic_cast<GFXAnimation*> (findController ("LeftVUMeter"));
    rightMeter = dynamic_cast<GFXAnimation*> (findController ("RightVUMeter"));
    startTimer (meterRefreshMs);
}

CorvelleEffectEditor::~CorvelleEffectEditor()
{
    stopTimer();
}

void CorvelleEffectEditor::timerCallback()
{
    refreshMeters();
    drawPendingRepaints();
}

// The core publishes its held peaks once per processed block after a request;
// while nothing is processed the meters rest at zero.
void CorvelleEffectEditor::refreshMeters()
{
    auto* core = effect.getCore();

    if (core == nullptr || (leftMeter == nullptr && rightMeter == nullptr))
        return;

    float left = 0.0f, right = 0.0f;

    if (! effect.isPrepared())
    {
        awaitingMeters = false;
    }
    else if (awaitingMeters)
    {
        if (! core->takeMeters (left, right))
            return;

        awaitingMeters = false;
    }

    if (leftMeter != nullptr)  leftMeter->setValue (left);
    if (rightMeter != nullptr) rightMeter->setValue (right);

    if (effect.isPrepared())
    {
        core->requestMeters();
        awaitingMeters = true;
    }
}

void CorvelleEffectEditor::handleEvent (int eventId, GUIController* source)
{
    if (eventId == EventRegistry::browsePresets)
    {
        togglePresetBrowser();
        return;
    }

    BasePluginEditorOldStyle::handleEvent (eventId, source);
}

void CorvelleEffectEditor::addOptionsPages (OptionsPanel& panel)
{
    if (effect.supportsQuality())
        panel.addPage ("Quality", std::make_unique<QualitySettingsPage> (effect));

    BasePluginEditorOldStyle::addOptionsPages (panel);
}
