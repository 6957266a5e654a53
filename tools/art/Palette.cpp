#include "Palette.h"

juce::Font Palette::labelFont (float height)
{
    return juce::Font ("Nimbus Sans Narrow", "Regular", height);
}

juce::Font Palette::titleFont (float height)
{
    return juce::Font ("Nimbus Sans Narrow", "Bold", height);
}

juce::Font Palette::wordmarkFont (float height)
{
    return juce::Font ("URW Gothic", "Demi", height);
}
