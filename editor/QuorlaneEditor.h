#pragma once

#include "CorvelleEffectEditor.h"

class Quorlane;

// Quorlane's window: the product line's effect editor with its own about text.
class QuorlaneEditor : public CorvelleEffectEditor
{
public:
    explicit QuorlaneEditor (CorvelleEffect& effect) : CorvelleEffectEditor (effect) {}

protected:
    juce::String getAboutText() const override;
};
