#include "BrowserArt.h"

#include "ButtonArt.h"

#include "editor/DoubleResolution.h"
#include "editor/PresetBrowserButtons.h"

std::vector<ArtFile> drawBrowserArt (float scale)
{
    using PresetBrowserButtons::Face;
    std::vector<ArtFile> art;

    for (const auto& button : PresetBrowserButtons::buttons)
    {
        const bool legend = button.face == Face::Legend;
        const SkinLayout::Strip strip { button.image, legend ? PresetBrowserButtons::legendWidth : PresetBrowserButtons::arrowWidth,
                                        PresetBrowserButtons::keyHeight, SkinLayout::buttonFrames };
        const auto face = legend ? SkinLayout::Face::Legend
                                 : (button.face == Face::UpArrow ? SkinLayout::Face::UpArrow : SkinLayout::Face::DownArrow);
        const SkinLayout::Control control { SkinLayout::Kind::Button, button.name, "", &strip,
                                            { strip.frameWidth, strip.frameHeight }, button.name, face };

        art.push_back ({ scale > 1.0f ? DoubleResolution::fileNameFor (button.image) : juce::String (button.image),
                         ButtonArt::drawStrip (control, scale) });
    }

    return art;
}
