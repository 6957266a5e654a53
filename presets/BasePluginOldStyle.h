#pragma once

#include "framework/BasePlugin.h"

// The plug-in base of products that keep presets inside the plug-in. It owns
// the live-value part of the state chunk ("ParametersState").
class BasePluginOldStyle : public BasePlugin
{
public:
    static constexpr int firstPresetableIndex = 0;
    static constexpr int numPresetableParameters = 20;

    BasePluginOldStyle();

    std::unique_ptr<juce::XmlElement> buildState() override;

protected:
    bool restoreStateElement (const juce::XmlElement& element) override;

private:
    std::unique_ptr<juce::XmlElement> buildParametersState() const;
    void readParametersState (const juce::XmlElement& element);
};
