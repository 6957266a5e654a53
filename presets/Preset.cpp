#include "Preset.h"

#include "CaseInsensitiveXml.h"
#include "PresetValueText.h"
#include "framework/ParameterManager.h"

namespace
{
    float normalisedValueFrom (const juce::String& text)
    {
        const double value = text.getDoubleValue();
        return value >= 0.0 && value <= 1.0 ? (float) value : (value > 1.0 ? 1.0f : 0.0f);
    }
}

bool Preset::accepts (const juce::XmlElement& element, const juce::String& application)
{
    return CaseInsensitiveXml::isTag (element, tag)
        && CaseInsensitiveXml::hasAttribute (element, "application")
        && CaseInsensitiveXml::attribute (element, "application").equalsIgnoreCase (application);
}

bool Preset::read (const juce::XmlElement& element, PresetRecord& record,
                   const ParameterManager& parameters, const juce::String& application)
{
    if (! accepts (element, application))
        return false;

    record.name = PresetRecord::fitName (CaseInsensitiveXml::attribute (element, "name", unnamed));

    for (auto* param : element.getChildIterator())
    {
        if (! CaseInsensitiveXml::isTag (*param, "param"))
            continue;

        const auto* p = parameters.findParameter (CaseInsensitiveXml::attribute (*param, "name"));

        if (p == nullptr || p->getIndex() >= (uint32_t) PresetRecord::numValues)
            continue;

        record.values[p->getIndex()] = normalisedValueFrom (CaseInsensitiveXml::attribute (*param, "value", "0"));
    }

    return true;
}

std::unique_ptr<juce::XmlElement> Preset::write (const PresetRecord& record,
                                                 const ParameterManager& parameters, const juce::String& application)
{
    auto element = std::make_unique<juce::XmlElement> (tag);
    element->setAttribute ("application", application);
    element->setAttribute ("name", record.name);

    for (int i = 0; i < PresetRecord::numValues; ++i)
    {
        auto* param = element->createNewChildElement ("param");

        if (const auto* p = parameters.getParameter ((uint32_t) i))
            param->setAttribute ("name", p->getName());

        param->setAttribute ("value", presetValueText (record.values[(size_t) i]));
    }

    return element;
}
