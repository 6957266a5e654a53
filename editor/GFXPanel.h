#pragma once

#include "BaseGFXController.h"
#include "GUIController.h"

#include <memory>
#include <vector>

// A container drawn from the first frame of its strip (nothing when
// `transparent` is "yes"), holding the controls of its `controls` child.
// Their positions are relative to the panel, shifted by `ofsX`/`ofsY`.
class GFXPanel : public juce::Component,
                 public GUIController,
                 public BaseGFXController
{
public:
    explicit GFXPanel (const juce::String& name);

    juce::Component& getComponent() override { return *this; }

    int getNumChildControls() const noexcept { return (int) children.size(); }
    GUIController* getChildControl (int index) const { return children[(size_t) index].get(); }

    void paint (juce::Graphics& g) override;

protected:
    void loadOwnAttributes (const juce::XmlElement& element) override;
    void loadGeometry (const juce::XmlElement& element) override;
    void showParameterValue() override {}

private:
    void loadChildControls (const juce::XmlElement& controls);

    bool transparent = false;
    std::vector<std::unique_ptr<GUIController>> children;
};
