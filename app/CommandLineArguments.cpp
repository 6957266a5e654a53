#include "CommandLineArguments.h"

#if defined(_WIN32)
 #include <windows.h>

 #include <shellapi.h>

juce::StringArray commandLineArguments (int, char*[])
{
    juce::StringArray arguments;
    int count = 0;

    if (auto* wide = CommandLineToArgvW (GetCommandLineW(), &count))
    {
        for (int i = 1; i < count; ++i)
            arguments.add (juce::String (wide[i]));

        LocalFree (wide);
    }

    return arguments;
}
#else
juce::StringArray commandLineArguments (int argc, char* argv[])
{
    juce::StringArray arguments;

    for (int i = 1; i < argc; ++i)
        arguments.add (juce::String::fromUTF8 (argv[i]));

    return arguments;
}
#endif
