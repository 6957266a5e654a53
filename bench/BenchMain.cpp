#include <benchmark/benchmark.h>
#include <juce_events/juce_events.h>

// The plug-in's instances expect JUCE's message thread and singletons, as in a
// host.
int main (int argc, char** argv)
{
    juce::ScopedJuceInitialiser_GUI juce;
    benchmark::Initialize (&argc, argv);

    if (benchmark::ReportUnrecognizedArguments (argc, argv))
        return 1;

    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
