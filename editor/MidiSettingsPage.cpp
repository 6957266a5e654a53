#include "MidiSettingsPage.h"

#include "DialogFolder.h"
#include "OptionsPanel.h"

MidiSettingsPage::MidiSettingsPage (MidiControl& m, ParameterManager& parameters)
    : midi (m)
{
    for (auto* p : parameters.getAllParameters())
        if (p->isAutomatable())
            automatable.add (p);

    list.setModel (this);
    list.setTitle ("Controller map");
    // The keys scroll the list; a screen reader needs no scroll bar beside it.
    list.getVerticalScrollBar().setAccessible (false);
    list.setRowHeight (18);
    list.setColour (juce::ListBox::backgroundColourId, juce::Colour (0xff1a1a1c));
    addAndMakeVisible (list);

    learnButton.setToggleState (midi.isLearnMode(), juce::dontSendNotification);
    learnButton.onClick = [this] { midi.setLearnMode (learnButton.getToggleState()); };
    loadButton.onClick = [this] { loadMap(); };
    saveButton.onClick = [this] { saveMap(); };
    clearButton.onClick = [this] { midi.clear(); };

    for (auto* b : { (juce::Component*) &learnButton, (juce::Component*) &loadButton,
                     (juce::Component*) &saveButton, (juce::Component*) &clearButton })
        addAndMakeVisible (b);

    midi.addListener (this);
}

MidiSettingsPage::~MidiSettingsPage()
{
    midi.removeListener (this);
}

void MidiSettingsPage::paint (juce::Graphics& g)
{
    g.setColour (juce::Colour (0xffbef6ff));
    g.setFont (OptionsPanel::getFont (13.0f));
    g.drawText ("Controller map (click a row or press Return to choose its parameter)", 10, 4, getWidth() - 20, 18,
                juce::Justification::centredLeft);
}

void MidiSettingsPage::resized()
{
    auto area = getLocalBounds().reduced (10, 4);
    area.removeFromTop (20);
    auto side = area.removeFromRight (130);
    area.removeFromRight (10);
    list.setBounds (area);

    for (auto* b : { (juce::Component*) &learnButton, (juce::Component*) &loadButton,
                     (juce::Component*) &saveButton, (juce::Component*) &clearButton })
    {
        b->setBounds (side.removeFromTop (26));
        side.removeFromTop (8);
    }
}

void MidiSettingsPage::paintListBoxItem (int row, juce::Graphics& g, int width, int height, bool selected)
{
    if (selected)
        g.fillAll (juce::Colour (0xff3a4a58));

    const auto* p = midi.getParameterAt (row);
    g.setFont (OptionsPanel::getFont (13.0f));
    g.setColour (juce::Colour (0xff8a8f98));
    g.drawText ("CC#" + juce::String (row), 6, 0, 60, height, juce::Justification::centredLeft);
    g.setColour (p != nullptr ? juce::Colours::white : juce::Colour (0xff55585e));
    g.drawText (p != nullptr ? p->getName() : juce::String ("-"), 70, 0, width - 76, height, juce::Justification::centredLeft);
}

juce::String MidiSettingsPage::getNameForRow (int row)
{
    const auto* p = midi.getParameterAt (row);
    return "CC#" + juce::String (row) + ": " + (p != nullptr ? p->getName() : juce::String ("none"));
}

void MidiSettingsPage::listBoxItemClicked (int row, const juce::MouseEvent&)
{
    chooseParameterFor (row);
}

void MidiSettingsPage::chooseParameterFor (int controller)
{
    juce::PopupMenu menu;
    menu.addItem (1, "(none)", true, midi.getParameterAt (controller) == nullptr);

    for (int i = 0; i < automatable.size(); ++i)
        menu.addItem (i + 2, automatable[i]->getName(), true, midi.getParameterAt (controller) == automatable[i]);

    juce::Component::SafePointer<MidiSettingsPage> safeThis (this);
    menu.showMenuAsync (juce::PopupMenu::Options().withTargetComponent (&list), [safeThis, controller] (int result)
    {
        if (safeThis == nullptr || result == 0)
            return;

        safeThis->midi.assign (controller, result == 1 ? nullptr : safeThis->automatable[result - 2], true);
    });
}

void MidiSettingsPage::loadMap()
{
    chooser = std::make_unique<juce::FileChooser> (MidiControl::openDialogTitle, dialogFolder (midi.getLastFolder()), MidiControl::fileWildcard);
    chooser->launchAsync (juce::FileBrowserComponent::openMode | juce::FileBrowserComponent::canSelectFiles,
                          [this] (const juce::FileChooser& fc)
    {
        if (fc.getResult() != juce::File())
            midi.loadFile (fc.getResult());
    });
}

void MidiSettingsPage::saveMap()
{
    chooser = std::make_unique<juce::FileChooser> (MidiControl::saveDialogTitle, dialogFolder (midi.getLastFolder()), MidiControl::fileWildcard);
    chooser->launchAsync (juce::FileBrowserComponent::saveMode | juce::FileBrowserComponent::canSelectFiles
                              | juce::FileBrowserComponent::warnAboutOverwriting,
                          [this] (const juce::FileChooser& fc)
    {
        if (fc.getResult() != juce::File())
            midi.saveFile (fc.getResult().withFileExtension (MidiControl::fileExtension));
    });
}

void MidiSettingsPage::midiLearnModeChanged (bool isOn)
{
    juce::Component::SafePointer<MidiSettingsPage> safeThis (this);
    juce::MessageManager::callAsync ([safeThis, isOn]
    {
        if (safeThis != nullptr)
            safeThis->learnButton.setToggleState (isOn, juce::dontSendNotification);
    });
}

void MidiSettingsPage::midiMapChanged()
{
    list.repaint();
}
