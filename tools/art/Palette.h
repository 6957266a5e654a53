#pragma once

#include <juce_graphics/juce_graphics.h>

// The panel's colours: a warm dark chassis, cream legends, amber light.
namespace Palette
{
    const juce::Colour chassisTop { 0xff3a3430 }, chassisBottom { 0xff221e1b };
    const juce::Colour sectionFill { 0xff2b2623 }, sectionEdge { 0xff4d443d }, sectionShadow { 0xff15120f };
    const juce::Colour legend { 0xffe4d9c6 }, legendDim { 0xff9c8f7e };
    const juce::Colour amber { 0xffffae3d }, amberDim { 0xff6b4a22 };
    const juce::Colour displayInk { 0xffcff4ff };
    const juce::Colour knobCap { 0xff3b3734 }, knobCapWarm { 0xff4a3a2e }, knobSkirt { 0xff1b1917 }, pointer { 0xfff3ead9 };
    const juce::Colour meterGreen { 0xff7bd75a }, meterYellow { 0xffffd23d }, meterRed { 0xffff4a3a };

    // Legends and titles are set in a narrow sans so "Attenuation" fits under a knob.
    juce::Font labelFont (float height);
    juce::Font titleFont (float height);
    juce::Font wordmarkFont (float height);
}
