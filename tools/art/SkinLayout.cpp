#include "SkinLayout.h"

namespace SkinLayout
{
    const Strip mainKnob { "KnobMain.png", 35, 35, knobFrames };
    const Strip eqKnob { "KnobEQ.png", 28, 28, knobFrames };
    const Strip mixerKnob { "KnobMixer.png", 36, 34, knobFrames };
    const Strip outputKnob { "KnobOutput.png", 37, 35, knobFrames };
    const juce::Rectangle<int> makerMark { 566, 0, 61, headerHeight };
    const Strip font { "Fonts.png", PixelFont::cellWidth, PixelFont::cellHeight, PixelFont::lastCode - PixelFont::firstCode + 1 };

    namespace
    {
        const Strip wordmarkButton { "AboutButton.png", 120, 28, buttonFrames };
        const Strip previousButton { "PreviousPresetButton.png", 16, 16, buttonFrames };
        const Strip nextButton { "NextPresetButton.png", 16, 16, buttonFrames };
        const Strip browseButton { "BrowseButton.png", 36, 16, buttonFrames };
        const Strip copyButton { "CopyButton.png", 36, 16, buttonFrames };
        const Strip pasteButton { "PasteButton.png", 36, 16, buttonFrames };
        const Strip storeButton { "StoreButton.png", 36, 16, buttonFrames };
        const Strip saveButton { "SaveButton.png", 36, 16, buttonFrames };
        const Strip optionsButton { "OptionsButton.png", 38, 43, buttonFrames };
        const Strip meter { "VUMeter.png", 26, 89, meterFrames };

        // Knobs are placed by their centre column so that knobs of different
        // sizes line up under each other.
        Control knob (const char* parameter, const Strip& strip, int centreX, int top, const char* label)
        {
            return { Kind::Knob, parameter, parameter, &strip,
                     { centreX - strip.frameWidth / 2, top, strip.frameWidth, strip.frameHeight }, label };
        }

        Control button (const char* name, const char* event, const Strip& strip, int left, int top,
                        const char* legend, Face face = Face::Legend, const char* ctrlEvent = "", bool autorepeat = false)
        {
            return { Kind::Button, name, event, &strip, { left, top, strip.frameWidth, strip.frameHeight }, legend,
                     face, ctrlEvent, autorepeat };
        }

        Control meterAt (const char* name, int left, int top, const char* label)
        {
            return { Kind::Animation, name, "", &meter, { left, top, meter.frameWidth, meter.frameHeight }, label };
        }

        const KeyEvents presetKeys { "Select previous preset", "Select next preset", "Browse presets" };

        // Rows of the two stacked sections and of the mixer.
        constexpr int upperKnobTop = 59, lowerKnobTop = 146, mixerLowerTop = 143;
        constexpr int earlyColumn = 31, lateColumn = 188, mixerColumn = 437;
        constexpr int earlyPitch = 50, latePitch = 48, mixerPitch = 50;
    }

    const std::vector<Section>& sections()
    {
        static const std::vector<Section> all {
            { "Early", { 6, 40, 150, 80 } },
            { "Early EQ", { 6, 124, 150, 79 } },
            { "Late", { 160, 40, 248, 80 } },
            { "Late EQ", { 160, 124, 248, 79 } },
            { "Mixer", { 412, 40, 150, 163 }, 122 },
            { "Level", { 566, 40, 61, 163 } },
        };
        return all;
    }

    const std::vector<Control>& controls()
    {
        static const std::vector<Control> all {
            button ("AboutButton", "About", wordmarkButton, 10, 3, "Quorlane", Face::Wordmark),
            button ("PreviousPresetButton", "Select previous preset", previousButton, 150, 9, "", Face::LeftArrow, "", true),
            { Kind::Display, "PresetNameDisplay", "Current Preset Name", &font, { 170, 11, 175, 13 }, "",
              Face::Legend, "", false, &presetKeys },
            button ("NextPresetButton", "Select next preset", nextButton, 349, 9, "", Face::RightArrow, "", true),
            button ("BrowseButton", "Browse presets", browseButton, 373, 9, "Browse"),
            button ("CopyButton", "Copy current preset", copyButton, 411, 9, "Copy"),
            button ("PasteButton", "Paste copied preset", pasteButton, 449, 9, "Paste"),
            button ("StoreButton", "Store current preset", storeButton, 487, 9, "Store"),
            button ("SaveButton", "Save Preset", saveButton, 525, 9, "Save", Face::Legend, "Save Preset As"),

            knob ("Early Size", mainKnob, earlyColumn, upperKnobTop, "Size"),
            knob ("Early Diffusion", mainKnob, earlyColumn + earlyPitch, upperKnobTop, "Diffusion"),
            knob ("Early Attenuation", mainKnob, earlyColumn + 2 * earlyPitch, upperKnobTop, "Attenuation"),
            knob ("Early EQ Frequency", eqKnob, earlyColumn, lowerKnobTop, "Frequency"),
            knob ("Early EQ Gain", eqKnob, earlyColumn + earlyPitch, lowerKnobTop, "Gain"),
            knob ("Early EQ Bandwidth", eqKnob, earlyColumn + 2 * earlyPitch, lowerKnobTop, "Bandwidth"),

            knob ("Late Size", mainKnob, lateColumn, upperKnobTop, "Size"),
            knob ("Late Diffusion", mainKnob, lateColumn + latePitch, upperKnobTop, "Diffusion"),
            knob ("Late Feedback", mainKnob, lateColumn + 2 * latePitch, upperKnobTop, "Feedback"),
            knob ("Late Attenuation", mainKnob, lateColumn + 3 * latePitch, upperKnobTop, "Attenuation"),
            knob ("Late Bass Cut", mainKnob, lateColumn + 4 * latePitch, upperKnobTop, "Bass Cut"),
            knob ("Late EQ Frequency", eqKnob, lateColumn, lowerKnobTop, "Frequency"),
            knob ("Late EQ Gain", eqKnob, lateColumn + latePitch, lowerKnobTop, "Gain"),
            knob ("Late EQ Bandwidth", eqKnob, lateColumn + 2 * latePitch, lowerKnobTop, "Bandwidth"),
            { Kind::DisplayFloat, "DecayTimeDisplay", "Decay Time", &font, { 326, 154, 64, 13 }, "Decay Time" },

            knob ("X Fader", mixerKnob, mixerColumn, upperKnobTop, "Early / Late"),
            knob ("Modulation", mixerKnob, mixerColumn + mixerPitch, upperKnobTop, "Modulation"),
            knob ("Predelay", mixerKnob, mixerColumn + 2 * mixerPitch, upperKnobTop, "Predelay"),
            knob ("Wet Gain", mixerKnob, mixerColumn, mixerLowerTop, "Wet Gain"),
            knob ("FX", outputKnob, mixerColumn + mixerPitch, mixerLowerTop, "Dry / Wet"),
            knob ("Output Volume", outputKnob, mixerColumn + 2 * mixerPitch, mixerLowerTop, "Output"),

            meterAt ("LeftVUMeter", 569, 54, "L"),
            meterAt ("RightVUMeter", 598, 54, "R"),
            button ("OptionsButton", "Options", optionsButton, 577, 158, "Options", Face::Gear),
        };
        return all;
    }
}
