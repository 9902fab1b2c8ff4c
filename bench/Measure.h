#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <map>
#include <string>
#include <vector>

namespace zv::bench {

/// Reads the library's options; other words stay in `argv`. The repetitions of all benchmarks take turns, so
/// that what else the machine does falls on all of them alike.
inline void initialize(int& argc, char** argv)
{
    std::string turns = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> words(argv, argv + argc);
    words.insert(words.begin() + 1, turns.data());
    argc = static_cast<int>(words.size());
    benchmark::Initialize(&argc, words.data());
    std::copy_n(words.begin(), argc, argv);
}

/// Nine repetitions. The file that --benchmark_out names keeps each of them, the screen shows what they have
/// in common.
inline benchmark::internal::Benchmark* steady(benchmark::internal::Benchmark* run)
{
    return run->Repetitions(9)->DisplayAggregatesOnly()->MinTime(0.2)->Unit(benchmark::kMicrosecond);
}

/// A run that is a measure by itself and tells its own time, so often.
inline benchmark::internal::Benchmark* timed(benchmark::internal::Benchmark* run, int repetitions)
{
    return run->Iterations(1)
        ->Repetitions(repetitions)
        ->DisplayAggregatesOnly()
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// Keeps the medians, so that ratios can be told at the end.
class Medians final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                runs_.insert_or_assign(run.run_name.function_name + run.run_name.args, run);
    }
    /// The processor's time: where nothing waits, what else the machine does must not count. Like the others
    /// no number where a filter left it out.
    double of(const std::string& name) const { return number(name, &Run::GetAdjustedCPUTime); }
    double elapsed(const std::string& name) const { return number(name, &Run::GetAdjustedRealTime); }
    double counter(const std::string& name, const std::string& which) const
    {
        return number(name, [&](const Run& run) { return run.counters.at(which).value; });
    }

private:
    template <class Which>
    double number(const std::string& name, Which which) const
    {
        const auto found = runs_.find(name);
        return found == runs_.end() ? std::nan("") : std::invoke(which, found->second);
    }
    std::map<std::string, Run> runs_;
};

} // namespace zv::bench
