#include "PresetBank.h"

#include "CaseInsensitiveXml.h"
#include "Preset.h"

bool PresetBank::accepts (const juce::XmlElement& element)
{
    return CaseInsensitiveXml::isTag (element, tag);
}

bool PresetBank::read (const juce::XmlElement& element, PresetBankRecord& bank, const PresetRecord& defaults,
                       const ParameterManager& parameters, const juce::String& application)
{
    if (! accepts (element))
        return false;

    bank.reset (defaults);
    bank.groups.clear();
    bank.name = CaseInsensitiveXml::attribute (element, "name", PresetBankRecord::defaultName);

    int slot = 0;

    for (auto* groupElement : element.getChildIterator())
    {
        if (! CaseInsensitiveXml::isTag (*groupElement, groupTag))
            continue;

        PresetGroupRecord group;
        group.name = CaseInsensitiveXml::attribute (*groupElement, "name",
                                                    "group " + juce::String ((int) bank.groups.size() + 1));

        for (auto* presetElement : groupElement->getChildIterator())
        {
            if (slot >= PresetBankRecord::numSlots)
                break;

            if (Preset::read (*presetElement, bank.slots[(size_t) slot], parameters, application))
            {
                ++slot;
                ++group.count;
            }
        }

        bank.groups.push_back (group);
    }

    if (slot < PresetBankRecord::numSlots)
        bank.groups.push_back ({ PresetBankRecord::unusedGroupName, PresetBankRecord::numSlots - slot });

    return true;
}

std::unique_ptr<juce::XmlElement> PresetBank::write (const PresetBankRecord& bank,
                                                     const ParameterManager& parameters, const juce::String& application)
{
    auto element = std::make_unique<juce::XmlElement> (tag);
    element->setAttribute ("name", bank.name);

    int slot = 0;

    for (const auto& group : bank.groups)
    {
        auto* groupElement = element->createNewChildElement (groupTag);
        groupElement->setAttribute ("name", group.name);

        for (int i = 0; i < group.count && slot < PresetBankRecord::numSlots; ++i, ++slot)
            groupElement->addChildElement (Preset::write (bank.slots[(size_t) slot], parameters, application).release());
    }

    return element;
}
