#include "GFXDisplayFloat.h"

#include "BasePluginEditor.h"

juce::String GFXDisplayFloat::getParameterText() const
{
    auto* p = getParameter();
    auto* editor = getEditor();

    if (p == nullptr || editor == nullptr)
        return {};

    return editor->getPlugin().getParameterDisplayText ((int) p->getIndex(), p->getNormalisedValue());
}
