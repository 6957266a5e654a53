#pragma once

#include <juce_core/juce_core.h>

#include <memory>

class GUIController;

// Creates the control for a skin element's tag (compared exactly), or
// nothing for a tag it does not know.
namespace ControlFactory
{
    // The kinds an editor's skin may hold.
    std::unique_ptr<GUIController> createTopLevel (const juce::String& tag, const juce::String& name);

    // A panel's `controls` take the same kinds and the instrument widgets.
    std::unique_ptr<GUIController> createInPanel (const juce::String& tag, const juce::String& name);
}
