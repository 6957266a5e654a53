#pragma once

// The part of Google Benchmark's interface that bench/ uses, for builds whose
// toolchain has no Google Benchmark library (the Windows cross-build). It
// times the way Google Benchmark does by default, in process CPU time, and
// derives the counters the same way, so figures from both builds compare.

#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace benchmark
{
enum TimeUnit { kNanosecond, kMicrosecond, kMillisecond, kSecond };

struct Counter
{
    enum Flags { kDefaults = 0, kIsRate = 1, kInvert = 2 };

    Counter (double v = 0.0, int f = kDefaults) : value (v), flags (f) {}

    double value;
    int flags;
};

inline Counter::Flags operator| (Counter::Flags a, Counter::Flags b) { return (Counter::Flags) ((int) a | (int) b); }

class State
{
public:
    State (std::vector<std::int64_t> arguments, std::int64_t iterationsToRun);

    // A type that may go unused, so that `auto _` draws no warning.
    struct [[maybe_unused]] Value {};

    // The loop `for (auto _ : state)` runs the measured iterations; the clock
    // runs from the first step until the loop ends, less any paused time.
    class Iterator
    {
    public:
        Iterator (State* owner, std::int64_t remaining) : state (owner), left (remaining) {}
        Value operator*() const { return {}; }
        Iterator& operator++() { --left; return *this; }
        bool operator!= (const Iterator&) const;

    private:
        State* state;
        std::int64_t left;
    };

    Iterator begin();
    Iterator end() { return { this, 0 }; }

    std::int64_t range (std::size_t index) const { return arguments.at (index); }
    std::int64_t iterations() const { return iterationsToRun; }
    void PauseTiming();
    void ResumeTiming();

    std::map<std::string, Counter> counters;

    double cpuSeconds() const { return measured; }

private:
    std::vector<std::int64_t> arguments;
    std::int64_t iterationsToRun;
    double started = 0.0, measured = 0.0;
};

namespace internal
{
class Benchmark
{
public:
    Benchmark (std::string benchmarkName, std::function<void (State&)> benchmarkFunction)
        : name (std::move (benchmarkName)), function (std::move (benchmarkFunction)) {}

    Benchmark* Arg (std::int64_t value) { argumentSets.push_back ({ value }); return this; }
    Benchmark* Args (const std::vector<std::int64_t>& values) { argumentSets.push_back (values); return this; }
    Benchmark* ArgName (const std::string& argumentName) { argumentNames = { argumentName }; return this; }
    Benchmark* ArgNames (const std::vector<std::string>& names) { argumentNames = names; return this; }
    Benchmark* MinTime (double seconds) { minTime = seconds; return this; }
    Benchmark* Unit (TimeUnit unit) { timeUnit = unit; return this; }
    Benchmark* Apply (void (*customise) (Benchmark*)) { customise (this); return this; }

    std::string name;
    std::function<void (State&)> function;
    std::vector<std::vector<std::int64_t>> argumentSets;
    std::vector<std::string> argumentNames;
    double minTime = 0.5;
    TimeUnit timeUnit = kNanosecond;
};

Benchmark* registerBenchmark (const char* name, void (*function) (State&));
}

template <typename T>
inline void DoNotOptimize (T const& value)
{
    asm volatile ("" : : "r,m" (value) : "memory");
}

void Initialize (int* argc, char** argv);
bool ReportUnrecognizedArguments (int argc, char** argv);
void RunSpecifiedBenchmarks();
void Shutdown();
}

#define QUORLANE_BENCHMARK_JOIN2(a, b) a##b
#define QUORLANE_BENCHMARK_JOIN(a, b) QUORLANE_BENCHMARK_JOIN2 (a, b)
#define BENCHMARK(function) \
    static ::benchmark::internal::Benchmark* QUORLANE_BENCHMARK_JOIN (registered_, __LINE__) \
        [[maybe_unused]] = ::benchmark::internal::registerBenchmark (#function, function)
