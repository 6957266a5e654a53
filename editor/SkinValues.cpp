#include "SkinValues.h"

#include "framework/Resources.h"

int SkinValues::readInt (const juce::XmlElement& element, const juce::String& attribute, int valueWhenAbsent)
{
    return element.hasAttribute (attribute) ? element.getStringAttribute (attribute).getIntValue() : valueWhenAbsent;
}

juce::Colour SkinValues::readColour (const juce::XmlElement& element, const juce::String& attribute, juce::Colour valueWhenAbsent)
{
    if (! element.hasAttribute (attribute))
        return valueWhenAbsent;

    return juce::Colour ((juce::uint32) element.getStringAttribute (attribute).getHexValue32());
}

bool SkinValues::readYesNo (const juce::XmlElement& element, const juce::String& attribute, bool valueOtherwise)
{
    const auto word = element.getStringAttribute (attribute);

    if (word == "yes") return true;
    if (word == "no") return false;
    return valueOtherwise;
}

juce::Rectangle<int> SkinValues::readBounds (const juce::XmlElement& element, juce::Rectangle<int> bounds)
{
    if (const auto* size = element.getChildByName ("size"))
        bounds.setSize (readInt (*size, "width"), readInt (*size, "height"));

    if (const auto* pos = element.getChildByName ("pos"))
        bounds.setPosition (readInt (*pos, "left"), readInt (*pos, "top"));

    return bounds;
}

juce::Image SkinValues::loadImage (const juce::String& fileName)
{
    const auto data = Resources::getData (fileName);

    if (data.isEmpty())
        return {};

    return juce::ImageFileFormat::loadFrom (data.getData(), data.getSize());
}
