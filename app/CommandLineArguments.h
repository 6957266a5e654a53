#pragma once

#include <juce_core/juce_core.h>

// The program's arguments, without its name, as the user typed them. On
// Windows they come from the UTF-16 command line: argv there holds them in
// the ANSI code page, which loses names in other scripts.
juce::StringArray commandLineArguments (int argc, char* argv[]);
