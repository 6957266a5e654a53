#include "QuorlaneEditor.h"

juce::String QuorlaneEditor::getAboutText() const
{
    return juce::String ("Stereo algorithmic reverb\nVersion ") + JucePlugin_VersionString
         + "\n\n" + JucePlugin_Manufacturer + "\n" + JucePlugin_ManufacturerWebsite;
}
