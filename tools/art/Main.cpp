#include "BrowserArt.h"
#include "IconArt.h"
#include "PanelArt.h"
#include "SkinDocument.h"

#include "editor/DoubleResolution.h"

#include <juce_gui_basics/juce_gui_basics.h>

#include <iostream>

// quorlane-art draws the editor's images and writes skin.xml into the
// resources folder; `make art` runs it. With --preview it also writes a
// picture of the assembled panel for checking the look, and with --icons the
// application's icons for the Linux packages.
namespace
{
    int fail (const juce::String& message)
    {
        std::cerr << "quorlane-art: " << message << std::endl;
        return 1;
    }

    // Each file is written whole or not at all.
    bool writeFile (const juce::File& target, const std::function<bool (juce::OutputStream&)>& write)
    {
        juce::TemporaryFile temporary (target);

        {
            juce::FileOutputStream stream (temporary.getFile());

            if (! stream.openedOk() || ! write (stream))
                return false;

            stream.flush();

            if (! stream.getStatus().wasOk())
                return false;
        }

        return temporary.overwriteTargetFileWithTemporary();
    }

    bool writePng (const juce::File& target, const juce::Image& image)
    {
        return writeFile (target, [&] (juce::OutputStream& out) { return juce::PNGImageFormat().writeImageToStream (image, out); });
    }

    bool fontsInstalled()
    {
        const auto names = juce::Font::findAllTypefaceNames();
        return names.contains ("Nimbus Sans Narrow") && names.contains ("URW Gothic");
    }
}

int main (int argc, char* argv[])
{
    const juce::ScopedJuceInitialiser_GUI juce;

    juce::String previewPath, iconsPath;
    bool usable = argc >= 2 && argc % 2 == 0;

    for (int i = 2; usable && i < argc; i += 2)
    {
        const juce::String option (argv[i]);

        if (option == "--preview")
            previewPath = argv[i + 1];
        else if (option == "--icons")
            iconsPath = argv[i + 1];
        else
            usable = false;
    }

    if (! usable)
        return fail ("usage: quorlane-art RESOURCES_FOLDER [--preview PREVIEW.png] [--icons ICON_FOLDER]");

    const auto folder = juce::File::getCurrentWorkingDirectory().getChildFile (argv[1]);

    if (! folder.isDirectory())
        return fail (folder.getFullPathName() + " is not a folder");

    // The images replace files of the same names, so only the plug-in's own
    // resources folder is accepted.
    const auto parameterDescription = folder.getChildFile ("parameters.xml");

    if (! parameterDescription.existsAsFile())
        return fail (folder.getFullPathName() + " is not Quorlane's resources folder (it has no parameters.xml)");

    if (! fontsInstalled())
        return fail ("the fonts \"Nimbus Sans Narrow\" and \"URW Gothic\" are missing (Debian package fonts-urw-base35)");

    // Every image once as the skin names it and once at double resolution,
    // drawn afresh at that size rather than enlarged.
    auto art = drawPanelArt (1.0f);
    auto doubled = drawPanelArt ((float) DoubleResolution::factor);

    for (auto* set : { &art, &doubled })
    {
        const auto browser = drawBrowserArt (set == &art ? 1.0f : (float) DoubleResolution::factor);
        set->insert (set->end(), browser.begin(), browser.end());
    }

    for (const auto* set : { &art, &doubled })
        for (const auto& file : *set)
            if (! writePng (folder.getChildFile (file.fileName), file.image))
                return fail ("cannot write " + folder.getChildFile (file.fileName).getFullPathName());

    const auto skin = createSkinDocument();
    const auto skinFile = folder.getChildFile ("skin.xml");

    juce::XmlElement::TextFormat format;
    format.lineWrapLength = 200;

    if (! writeFile (skinFile, [&] (juce::OutputStream& out) { skin->writeTo (out, format); return true; }))
        return fail ("cannot write " + skinFile.getFullPathName());

    std::cout << "wrote " << art.size() + doubled.size() << " images and skin.xml to " << folder.getFullPathName() << std::endl;

    if (previewPath.isNotEmpty())
    {
        const auto previewFile = juce::File::getCurrentWorkingDirectory().getChildFile (previewPath);

        const auto parameters = juce::parseXML (parameterDescription);

        if (parameters == nullptr)
            return fail ("cannot read " + parameterDescription.getFullPathName());

        if (! writePng (previewFile, drawPanelPreview (art, *parameters)))
            return fail ("cannot write " + previewFile.getFullPathName());

        std::cout << "wrote " << previewFile.getFullPathName() << std::endl;
    }

    if (iconsPath.isNotEmpty())
    {
        const auto iconFolder = juce::File::getCurrentWorkingDirectory().getChildFile (iconsPath);

        if (! iconFolder.createDirectory())
            return fail ("cannot create " + iconFolder.getFullPathName());

        const auto icons = drawIconArt();

        for (const auto& icon : icons)
            if (! writePng (iconFolder.getChildFile (icon.fileName), icon.image))
                return fail ("cannot write " + iconFolder.getChildFile (icon.fileName).getFullPathName());

        std::cout << "wrote " << icons.size() << " icons to " << iconFolder.getFullPathName() << std::endl;
    }

    return 0;
}
