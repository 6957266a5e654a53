#pragma once

#include "BlinkingComponent.h"

#include "framework/Parameter.h"

#include <juce_gui_basics/juce_gui_basics.h>

class BasePluginEditor;
class EventRegistry;
class ParameterManager;

// The base of every skin control: bound to at most one parameter (it follows
// the parameter's changes on the message thread) and to editor events by
// gesture, which it reports to its listeners together with user movements.
class GUIController : public Parameter::Listener,
                      public virtual BlinkingComponent
{
public:
    struct Listener
    {
        virtual ~Listener() = default;
        virtual void controllerEvent (GUIController& source, int eventId) = 0;
        virtual void controllerMoved (GUIController& source) = 0;
    };

    ~GUIController() override;

    virtual juce::Component& getComponent() = 0;

    // Stores the event id for a gesture this kind knows; other types are ignored.
    virtual void assignAction (const juce::String& type, int eventId, const juce::String& eventName);

    void addListener (Listener* listener);

    // Links and actions, the title a screen reader reads, then the kind's own
    // attributes, film strip, size and position, then the bound parameter's
    // current value.
    void loadFromSkin (const juce::XmlElement& element, const ParameterManager& parameters,
                       const EventRegistry& events, BasePluginEditor& editor);

    Parameter* getParameter() const noexcept { return parameter; }
    void bindTo (Parameter* newParameter);

protected:
    virtual void loadOwnAttributes (const juce::XmlElement& element);
    virtual void loadGeometry (const juce::XmlElement& element) = 0;

    // Shows the bound parameter's value; runs on the message thread.
    virtual void showParameterValue() = 0;

    void fireEvent (int eventId);
    void reportMovement();

    // Writes a user's value into the bound parameter, with notification.
    void setParameterFromUser (float normalisedValue);

    // Tells the host that the user starts or ends moving this control.
    void beginUserGesture();
    void endUserGesture();

    void blinkStateChanged() override { getComponent().repaint(); }

    BasePluginEditor* getEditor() const noexcept { return editor; }

    // What a control without a film strip draws: a plain plate with its name.
    void drawFallback (juce::Graphics& g, float proportion);

    static constexpr int noEvent = -1;

private:
    void parameterChanged (Parameter& changed) override;
    void nameForAccessibility();
    void loadLinks (const juce::XmlElement& element, const ParameterManager& parameters);
    void loadActions (const juce::XmlElement& element, const EventRegistry& events);

    Parameter* parameter = nullptr;
    BasePluginEditor* editor = nullptr;
    juce::Array<Listener*> listeners;
};
