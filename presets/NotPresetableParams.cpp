#include "NotPresetableParams.h"

#include "CaseInsensitiveXml.h"
#include "PresetValueText.h"
#include "framework/ParameterManager.h"

bool NotPresetableParams::accepts (const juce::XmlElement& element)
{
    return CaseInsensitiveXml::isTag (element, tag) || CaseInsensitiveXml::isTag (element, olderTag);
}

bool NotPresetableParams::read (const juce::XmlElement& element, ParameterManager& parameters, uint32_t firstIndex, int count)
{
    if (! accepts (element))
        return false;

    for (auto* param : element.getChildIterator())
    {
        if (! CaseInsensitiveXml::isTag (*param, "param"))
            continue;

        auto* p = parameters.findParameter (CaseInsensitiveXml::attribute (*param, "name"));

        if (p != nullptr && p->getIndex() >= firstIndex && p->getIndex() < firstIndex + (uint32_t) count)
            p->setNormalisedValue ((float) CaseInsensitiveXml::attribute (*param, "value", "0").getDoubleValue(), true);
    }

    return true;
}

std::unique_ptr<juce::XmlElement> NotPresetableParams::write (const ParameterManager& parameters, uint32_t firstIndex, int count)
{
    auto element = std::make_unique<juce::XmlElement> (tag);

    for (const auto* p : parameters.getAllParameters())
    {
        if (p->getIndex() >= firstIndex && p->getIndex() < firstIndex + (uint32_t) count)
        {
            auto* param = element->createNewChildElement ("param");
            param->setAttribute ("name", p->getName());
            param->setAttribute ("value", presetValueText (p->getNormalisedValue()));
        }
    }

    return element;
}
