#pragma once

#include <cstdint>

// Who changed a parameter. Each change carries it from the setter to the
// plug-in's router, which decides by it what else the change sets off: a
// change from the host is not echoed back to the host, values a preset
// brings are not edits to store into a slot, and so on.
enum class ChangeOrigin : uint8_t
{
    quiet,   // sets the value and tells nobody (scratch copies, set-up)
    host,    // the host's automation and parameter calls
    editor,  // the editor's controls, pages and browser
    midi,    // a controller through the MIDI map
    preset,  // a preset's values applied, or the preset parameters shown
    fade,    // a preset's values applied at the quiet point of a silent change
    restore, // a project's state or a settings file read back
    internal // a value the plug-in works out itself (the decay estimate)
};

// Changes that the user made to the sound, which automatic storing keeps.
constexpr bool isEdit (ChangeOrigin origin) noexcept
{
    return origin == ChangeOrigin::host || origin == ChangeOrigin::editor || origin == ChangeOrigin::midi;
}
