#include "PluginSettings.h"

#include "PresetChoice.h"
#include "RenderErrors.h"
#include "engine/Quorlane.h"

namespace
{
    Parameter* findHostParameter (Quorlane& plugin, const juce::String& name)
    {
        for (int i = 0; i < BasePlugin::hostParameterCount; ++i)
            if (plugin.getHostParameterName (i).equalsIgnoreCase (name.trim()))
                return plugin.getPluginParameter ((uint32_t) i);

        return nullptr;
    }

    juce::String unknownParameterMessage (const Quorlane& plugin, const juce::String& name)
    {
        juce::String message;
        message << "unknown parameter \"" << name << "\". Valid names:";

        for (int i = 0; i < BasePlugin::hostParameterCount; ++i)
            message << "\n  " << plugin.getHostParameterName (i);

        return message;
    }
}

void applySettings (Quorlane& plugin, const PluginSettings& settings)
{
    applyPresetChoice (plugin, settings.preset);

    for (const auto& value : settings.values)
    {
        auto* parameter = findHostParameter (plugin, value.name);

        if (parameter == nullptr)
            throw UsageError (unknownParameterMessage (plugin, value.name).toStdString());

        parameter->setNormalisedValue (value.normalised, ChangeOrigin::restore);
    }

    if (auto* quality = plugin.getParameterManager().findParameter ("Quality"))
        quality->setNormalisedValue ((float) settings.qualityStep * CorvelleEffect::qualityStepSize, ChangeOrigin::restore);
}

juce::String describeParameters (const Quorlane& plugin)
{
    juce::String text;

    for (int i = 0; i < BasePlugin::hostParameterCount; ++i)
        text << plugin.getHostParameterName (i).paddedRight (' ', 20)
             << juce::String (plugin.getHostParameterValue (i), 3).paddedLeft (' ', 6) << "  "
             << plugin.getHostParameterText (i) << "\n";

    text << juce::String ("Quality").paddedRight (' ', 20) << "  "
         << CorvelleEffect::qualityKeyword (plugin.getCurrentQualityStep()) << "\n";
    return text;
}
