#include "SkinDocument.h"

#include "SkinLayout.h"

namespace
{
    using SkinLayout::Control;
    using SkinLayout::Kind;

    const char* tagFor (Kind kind)
    {
        switch (kind)
        {
            case Kind::Knob:         return "Knob";
            case Kind::Button:       return "Button";
            case Kind::Display:      return "Display";
            case Kind::DisplayFloat: return "DisplayFloat";
            case Kind::Animation:    return "Animation";
        }

        return "";
    }

    void addAction (juce::XmlElement& actions, const char* type, const char* event)
    {
        auto* action = actions.createNewChildElement ("action");
        action->setAttribute ("type", type);
        action->setAttribute ("event", event);
    }

    std::unique_ptr<juce::XmlElement> elementFor (const Control& control)
    {
        auto element = std::make_unique<juce::XmlElement> (tagFor (control.kind));
        element->setAttribute ("name", control.name);

        const bool isDisplay = control.kind == Kind::Display || control.kind == Kind::DisplayFloat;

        if (control.kind == Kind::Button)
        {
            element->setAttribute ("autorepeat", control.autorepeat ? "yes" : "no");

            auto* actions = element->createNewChildElement ("actions");
            addAction (*actions, "onClick", control.target);

            if (*control.ctrlEvent != 0)
                addAction (*actions, "onClickWithCtrl", control.ctrlEvent);
        }
        else if (*control.target != 0)
        {
            auto* link = element->createNewChildElement ("links")->createNewChildElement ("link");
            link->setAttribute ("as", "connectedTo");
            link->setAttribute ("param", control.target);
        }

        if (control.keyEvents != nullptr)
        {
            auto* actions = element->createNewChildElement ("actions");
            addAction (*actions, "onPrevious", control.keyEvents->previous);
            addAction (*actions, "onNext", control.keyEvents->next);
            addAction (*actions, "onOpen", control.keyEvents->open);
        }

        if (isDisplay)
        {
            element->setAttribute ("caretColour", SkinLayout::displayCaretColour);
            element->setAttribute ("backgroundColour", SkinLayout::displayBackgroundColour);
            element->setAttribute ("readonly", control.kind == Kind::DisplayFloat ? "yes" : "no");
        }

        auto* gfx = element->createNewChildElement ("gfx");
        gfx->setAttribute ("resource", control.strip->resource);

        if (isDisplay)
        {
            gfx->setAttribute ("firstASCII", juce::String::charToString (SkinLayout::fontFirstCharacter));
            gfx->setAttribute ("fontHeight", control.strip->frameHeight);
        }
        else
        {
            gfx->setAttribute ("framesNum", control.strip->frames);
        }

        auto* pos = element->createNewChildElement ("pos");
        pos->setAttribute ("left", control.bounds.getX());
        pos->setAttribute ("top", control.bounds.getY());

        auto* size = element->createNewChildElement ("size");
        size->setAttribute ("width", control.bounds.getWidth());
        size->setAttribute ("height", control.bounds.getHeight());

        return element;
    }
}

std::unique_ptr<juce::XmlElement> createSkinDocument()
{
    auto skin = std::make_unique<juce::XmlElement> ("PluginEditor");
    skin->setAttribute ("application", "Quorlane");
    skin->setAttribute ("background", "Background.png");

    for (const auto& control : SkinLayout::controls())
        skin->addChildElement (elementFor (control).release());

    return skin;
}
