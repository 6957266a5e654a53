#include "BasePluginOldStyle.h"

#include "PresetValueText.h"

BasePluginOldStyle::BasePluginOldStyle() = default;

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildState()
{
    auto state = BasePlugin::buildState();
    state->addChildElement (buildParametersState().release());
    return state;
}

std::unique_ptr<juce::XmlElement> BasePluginOldStyle::buildParametersState() const
{
    auto element = std::make_unique<juce::XmlElement> ("ParametersState");

    for (int i = firstPresetableIndex; i < firstPresetableIndex + numPresetableParameters; ++i)
    {
        if (const auto* p = getParameter ((uint32_t) i))
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
        auto* p = getParameterManager().findParameter (param->getStringAttribute ("name"));

        if (p == nullptr || (int) p->getIndex() < firstPresetableIndex
            || (int) p->getIndex() >= firstPresetableIndex + numPresetableParameters)
            continue;

        p->setNormalisedValue ((float) param->getDoubleAttribute ("value", 0.0), true);
    }
}

bool BasePluginOldStyle::restoreStateElement (const juce::XmlElement& element)
{
    if (element.getTagName() == "ParametersState")
    {
        readParametersState (element);
        return true;
    }

    return BasePlugin::restoreStateElement (element);
}
