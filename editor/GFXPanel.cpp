#include "GFXPanel.h"

#include "BasePluginEditor.h"
#include "ControlFactory.h"
#include "SkinValues.h"

GFXPanel::GFXPanel (const juce::String& name)
    : juce::Component (name)
{
}

void GFXPanel::loadOwnAttributes (const juce::XmlElement& element)
{
    transparent = SkinValues::readYesNo (element, "transparent", false);
    setInterceptsMouseClicks (false, true);
}

void GFXPanel::loadGeometry (const juce::XmlElement& element)
{
    setBounds (loadStripGeometry (element));

    if (const auto* controls = element.getChildByName ("controls"))
        loadChildControls (*controls);
}

void GFXPanel::loadChildControls (const juce::XmlElement& controls)
{
    auto* editor = getEditor();
    const juce::Point<int> offset (SkinValues::readInt (controls, "ofsX"), SkinValues::readInt (controls, "ofsY"));

    for (auto* element : controls.getChildIterator())
    {
        auto control = ControlFactory::createInPanel (element->getTagName(), element->getStringAttribute ("name"));

        if (control == nullptr)
            continue;

        auto& plugin = editor->getPlugin();
        editor->registerController (*control);
        control->loadFromSkin (*element, plugin.getParameterManager(), plugin.getEventRegistry(), *editor);

        auto& component = control->getComponent();
        component.setTopLeftPosition (component.getPosition() + offset);
        addAndMakeVisible (component);
        children.push_back (std::move (control));
    }
}

void GFXPanel::paint (juce::Graphics& g)
{
    if (transparent)
        return;

    if (hasStrip())
        drawFrame (g, 0);
    else
        g.fillAll (juce::Colour (0xff2b2d31));
}
