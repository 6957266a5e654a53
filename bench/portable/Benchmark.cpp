#include "benchmark/benchmark.h"
#include "ProcessCpuTime.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>
#include <regex>

namespace benchmark
{
namespace
{
struct Options
{
    std::string filter = ".";
    int repetitions = 1;
    bool aggregatesOnly = false;
};

Options options;

std::vector<std::unique_ptr<internal::Benchmark>>& registry()
{
    static std::vector<std::unique_ptr<internal::Benchmark>> benchmarks;
    return benchmarks;
}

// One repetition's figures: CPU time per iteration and the finished counters.
struct Result
{
    double cpuPerIteration = 0.0;
    std::int64_t iterations = 0;
    std::map<std::string, double> counters;
};

// Process CPU time under Wine advances in 10 ms steps, so no run is kept
// that lasted less than a second: the steps then stay within 1 %.
constexpr double shortestRun = 1.0;

Result runOnce (const internal::Benchmark& benchmark, const std::vector<std::int64_t>& arguments)
{
    const double minTime = std::max (benchmark.minTime, shortestRun);

    // As Google Benchmark does: grow the iteration count until one run lasts
    // the minimum time, then keep that run.
    for (std::int64_t iterations = 1;;)
    {
        State state (arguments, iterations);
        benchmark.function (state);
        const double seconds = state.cpuSeconds();

        if (seconds >= minTime || iterations >= 1000000000)
        {
            Result result;
            result.cpuPerIteration = seconds / (double) iterations;
            result.iterations = iterations;

            for (const auto& [name, counter] : state.counters)
            {
                double value = counter.value;
                if ((counter.flags & Counter::kIsRate) != 0)
                    value /= seconds;
                if ((counter.flags & Counter::kInvert) != 0)
                    value = 1.0 / value;
                result.counters[name] = value;
            }

            return result;
        }

        const double factor = seconds > 0.0 ? std::min (10.0, minTime * 1.4 / seconds) : 10.0;
        iterations = std::max (iterations + 1, (std::int64_t) std::ceil ((double) iterations * factor));
    }
}

double median (std::vector<double> values)
{
    std::sort (values.begin(), values.end());
    const auto n = values.size();
    return n % 2 == 1 ? values[n / 2] : 0.5 * (values[n / 2 - 1] + values[n / 2]);
}

void print (const std::string& name, TimeUnit unit, const Result& result)
{
    static const char* unitNames[] = { "ns", "us", "ms", "s" };
    static const double unitScales[] = { 1e9, 1e6, 1e3, 1.0 };

    std::printf ("%-56s %13.4g %s %12lld", name.c_str(), result.cpuPerIteration * unitScales[unit], unitNames[unit],
                 (long long) result.iterations);

    for (const auto& [counter, value] : result.counters)
        std::printf (" %s=%.6g", counter.c_str(), value);

    std::printf ("\n");
    std::fflush (stdout);
}

std::string fullName (const internal::Benchmark& benchmark, const std::vector<std::int64_t>& arguments)
{
    auto name = benchmark.name;

    for (std::size_t i = 0; i < arguments.size(); ++i)
        name += "/" + (i < benchmark.argumentNames.size() ? benchmark.argumentNames[i] + ":" : std::string())
              + std::to_string (arguments[i]);

    return name;
}

bool takeFlag (const char* argument, const char* flag, std::string& value)
{
    const auto length = std::strlen (flag);
    if (std::strncmp (argument, flag, length) != 0 || argument[length] != '=')
        return false;

    value = argument + length + 1;
    return true;
}
}

State::State (std::vector<std::int64_t> args, std::int64_t count)
    : arguments (std::move (args)), iterationsToRun (count) {}

State::Iterator State::begin()
{
    started = processCpuSeconds();
    return { this, iterationsToRun };
}

bool State::Iterator::operator!= (const Iterator&) const
{
    if (left > 0)
        return true;

    state->PauseTiming();
    return false;
}

void State::PauseTiming() { measured += processCpuSeconds() - started; }
void State::ResumeTiming() { started = processCpuSeconds(); }

internal::Benchmark* internal::registerBenchmark (const char* name, void (*function) (State&))
{
    registry().push_back (std::make_unique<Benchmark> (name, function));
    return registry().back().get();
}

void Initialize (int* argc, char** argv)
{
    int kept = 1;

    for (int i = 1; i < *argc; ++i)
    {
        std::string value;

        if (takeFlag (argv[i], "--benchmark_filter", value))
            options.filter = value;
        else if (takeFlag (argv[i], "--benchmark_repetitions", value))
            options.repetitions = std::max (1, std::atoi (value.c_str()));
        else if (takeFlag (argv[i], "--benchmark_report_aggregates_only", value))
            options.aggregatesOnly = value == "true" || value == "1";
        else
            argv[kept++] = argv[i];
    }

    *argc = kept;
}

bool ReportUnrecognizedArguments (int argc, char** argv)
{
    for (int i = 1; i < argc; ++i)
        std::fprintf (stderr, "%s: unrecognised argument '%s'\n", argv[0], argv[i]);

    return argc > 1;
}

void RunSpecifiedBenchmarks()
{
    const std::regex filter (options.filter);
    std::printf ("%-56s %16s %12s\n", "Benchmark", "CPU", "Iterations");

    for (const auto& benchmark : registry())
    {
        auto argumentSets = benchmark->argumentSets;
        if (argumentSets.empty())
            argumentSets.push_back ({});

        for (const auto& arguments : argumentSets)
        {
            const auto name = fullName (*benchmark, arguments);
            if (! std::regex_search (name, filter))
                continue;

            std::vector<Result> results;

            for (int r = 0; r < options.repetitions; ++r)
            {
                results.push_back (runOnce (*benchmark, arguments));
                if (! options.aggregatesOnly || options.repetitions == 1)
                    print (name, benchmark->timeUnit, results.back());
            }

            if (options.repetitions == 1)
                continue;

            Result middle;
            std::vector<double> times;
            for (const auto& result : results)
                times.push_back (result.cpuPerIteration);
            middle.cpuPerIteration = median (times);
            middle.iterations = (std::int64_t) results.size();

            for (const auto& [counter, ignored] : results.front().counters)
            {
                std::vector<double> values;
                for (const auto& result : results)
                    values.push_back (result.counters.at (counter));
                middle.counters[counter] = median (values);
            }

            print (name + "_median", benchmark->timeUnit, middle);
        }
    }
}

void Shutdown() {}
}
