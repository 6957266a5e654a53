#include "QualitySettingsPage.h"

#include "OptionsPanel.h"

namespace
{
    const char* const stepNames[] = { "Low", "Medium", "High", "Highest" };

    void fill (juce::ComboBox& box)
    {
        for (int step = 0; step < CorvelleEffect::numQualitySteps; ++step)
            box.addItem (stepNames[step], step + 1);
    }
}

QualitySettingsPage::QualitySettingsPage (CorvelleEffect& e)
    : effect (e), quality (e.getParameterManager().findParameter ("Quality"))
{
    fill (defaultQuality);
    fill (currentQuality);
    defaultQuality.setTitle ("Default Quality");
    currentQuality.setTitle ("Current Quality");

    defaultQuality.setSelectedId (effect.getDefaultQuality() + 1, juce::dontSendNotification);
    currentQuality.setSelectedId (effect.getCurrentQualityStep() + 1, juce::dontSendNotification);
    currentQuality.setEnabled (quality != nullptr && ! effect.isQualityLocked());

    defaultQuality.onChange = [this] { effect.setDefaultQuality (defaultQuality.getSelectedId() - 1); };
    currentQuality.onChange = [this]
    {
        if (quality != nullptr && currentQuality.getSelectedId() > 0)
            quality->setNormalisedValue ((float) (currentQuality.getSelectedId() - 1) * CorvelleEffect::qualityStepSize, ChangeOrigin::editor);
    };

    addAndMakeVisible (defaultQuality);
    addAndMakeVisible (currentQuality);

    if (quality != nullptr)
        quality->addDeferredListener (this);
}

QualitySettingsPage::~QualitySettingsPage()
{
    if (quality != nullptr)
        quality->removeDeferredListener (this);
}

void QualitySettingsPage::parameterChanged (Parameter&)
{
    currentQuality.setSelectedId (effect.getCurrentQualityStep() + 1, juce::dontSendNotification);
}

void QualitySettingsPage::paint (juce::Graphics& g)
{
    OptionsPanel::drawPageText (g, { "Quality", { { "Default Quality", 48 }, { "Current Quality", 84 } }, restartNote, 124 }, getWidth());
}

void QualitySettingsPage::resized()
{
    defaultQuality.setBounds (170, 48, 160, 24);
    currentQuality.setBounds (170, 84, 160, 24);
}
