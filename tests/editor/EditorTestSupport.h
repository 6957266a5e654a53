#pragma once

#include "editor/BasePluginEditor.h"
#include "editor/GUIController.h"
#include "engine/Quorlane.h"

#include <gtest/gtest.h>

namespace EditorTest
{
    inline std::unique_ptr<juce::XmlElement> skin (const char* text)
    {
        auto root = juce::parseXML (juce::String (text));
        jassert (root != nullptr);
        return root;
    }

    // Lets posted messages (button clicks) arrive, and the plug-in's poll
    // (every 20 ms) deliver deferred parameter notifications.
    inline void pumpMessages (int milliseconds = 50)
    {
        juce::MessageManager::getInstance()->runDispatchLoopUntil (milliseconds);
    }

    template <typename Control>
    Control& find (const BasePluginEditor& editor, const juce::String& name)
    {
        auto* control = dynamic_cast<Control*> (editor.findController (name));

        if (control == nullptr)
            throw std::runtime_error (("no control " + name).toStdString());

        return *control;
    }

    // Records what controls report.
    struct RecordingListener : GUIController::Listener
    {
        void controllerEvent (GUIController&, int eventId) override { events.add (eventId); }
        void controllerMoved (GUIController& source) override { moved.add (&source); }

        juce::Array<int> events;
        juce::Array<GUIController*> moved;
    };
}
