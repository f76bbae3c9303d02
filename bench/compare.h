#ifndef COMPARE_H
#define COMPARE_H

#include <benchmark/benchmark.h>
#include <valgrind/callgrind.h>

#include <string>

/// Each program defines this; it runs when there is an application object. Returns false when the two ways of
/// a comparison do not come to the same, for then it would be worth nothing.
[[nodiscard]] bool registerBenchmarks();

/// Runs @a work for as long as Google Benchmark asks.
///
/// Under callgrind, started with --instr-atstart=no, each run is counted alone and its count dumped under
/// @a name, so that one process counts every benchmark and nothing of what prepares it.
template <typename Work>
void run(benchmark::State &state, const std::string &name, const Work &work)
{
    if (RUNNING_ON_VALGRIND != 0)
        work(); // fills Qt's caches; there is but one run to count
    for (auto _ : state) {
        CALLGRIND_START_INSTRUMENTATION;
        work();
        CALLGRIND_STOP_INSTRUMENTATION;
        CALLGRIND_DUMP_STATS_AT(name.c_str());
    }
}

/// Registers two ways to one result as NAME/ours and NAME/bare. What they work on is prepared anew for each,
/// by
/// @a prepareOurs and @a prepareBare, which return the work to run.
template <typename PrepareOurs, typename PrepareBare>
void compare(const std::string &name, PrepareOurs prepareOurs, PrepareBare prepareBare)
{
    const auto add = [](const std::string &fullName, auto prepare) {
        benchmark::RegisterBenchmark(fullName.c_str(), [fullName, prepare](benchmark::State &state) {
            run(state, fullName, prepare());
        })->Unit(benchmark::kMicrosecond);
    };
    add(name + "/ours", prepareOurs);
    add(name + "/bare", prepareBare);
}

#endif
