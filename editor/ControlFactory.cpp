#include "ControlFactory.h"

#include "GFXAnimation.h"
#include "GFXButton.h"
#include "GFXDisplayFloat.h"
#include "GFXKnob.h"
#include "GFXMultiStateButton.h"
#include "GFXPanel.h"
#include "GFXRocker.h"
#include "GFXSwitch.h"
#include "GFXToggleButton.h"
#include "ModWheel.h"
#include "MusicKeyboard.h"
#include "NoteDisplay.h"
#include "ParameterModulator.h"
#include "PitchBender.h"
#include "NumericDisplay.h"
#include "PatternNumberDisplay.h"

std::unique_ptr<GUIController> ControlFactory::createTopLevel (const juce::String& tag, const juce::String& name)
{
    if (tag == "Knob")                 return std::make_unique<GFXKnob> (name);
    if (tag == "Switch")               return std::make_unique<GFXSwitch> (name);
    if (tag == "Animation")            return std::make_unique<GFXAnimation> (name);
    if (tag == "Button")               return std::make_unique<GFXButton> (name);
    if (tag == "ToggleButton")         return std::make_unique<GFXToggleButton> (name);
    if (tag == "MultiStateButton")     return std::make_unique<GFXMultiStateButton> (name);
    if (tag == "Display")              return std::make_unique<GFXDisplay> (name);
    if (tag == "DisplayFloat")         return std::make_unique<GFXDisplayFloat> (name);
    if (tag == "Rocker")               return std::make_unique<GFXRocker> (name);
    if (tag == "Panel")                return std::make_unique<GFXPanel> (name);
    if (tag == "NumericDisplay")       return std::make_unique<NumericDisplay> (name);
    if (tag == "PatternNumberDisplay") return std::make_unique<PatternNumberDisplay> (name);
    return nullptr;
}

std::unique_ptr<GUIController> ControlFactory::createInPanel (const juce::String& tag, const juce::String& name)
{
    if (auto control = createTopLevel (tag, name))
        return control;

    if (tag == "NoteDisplay")        return std::make_unique<NoteDisplay> (name);
    if (tag == "MusicKeyboard")      return std::make_unique<MusicKeyboard> (name);
    if (tag == "PitchBender")        return std::make_unique<PitchBender> (name);
    if (tag == "ModWheel")           return std::make_unique<ModWheel> (name);
    if (tag == "ParameterModulator") return std::make_unique<ParameterModulator> (name);
    return nullptr;
}
