#pragma once

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <malloc.h>
#include <map>
#include <string>
#include <vector>

namespace zv::bench {

/// Parses the library's options; other arguments stay in `argv`. The repetitions of all benchmarks are
/// interleaved, so that other load of the machine hits all of them alike.
inline void initialize(int& argc, char** argv)
{
    std::string turns = "--benchmark_enable_random_interleaving=true";
    std::vector<char*> words(argv, argv + argc);
    words.insert(words.begin() + 1, turns.data());
    argc = static_cast<int>(words.size());
    benchmark::Initialize(&argc, words.data());
    std::copy_n(words.begin(), argc, argv);
}

/// Nine repetitions: each goes to the file of --benchmark_out, the aggregates to the screen.
inline benchmark::internal::Benchmark* steady(benchmark::internal::Benchmark* run)
{
    return run->Repetitions(9)->DisplayAggregatesOnly()->MinTime(0.2)->Unit(benchmark::kMicrosecond);
}

/// For a run that measures its own time (manual timing): one iteration each, so many repetitions.
inline benchmark::internal::Benchmark* timed(benchmark::internal::Benchmark* run, int repetitions)
{
    return run->Iterations(1)
        ->Repetitions(repetitions)
        ->DisplayAggregatesOnly()
        ->UseManualTime()
        ->Unit(benchmark::kMillisecond);
}

/// What the process holds of memory that it asked for.
inline double megabytes()
{
    const struct mallinfo2 room = mallinfo2();
    return static_cast<double>(room.uordblks + room.hblkhd) / 1e6;
}

/// Reporter that keeps the medians, for ratios at the end.
class Medians final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override
    {
        ConsoleReporter::ReportRuns(runs);
        for (const Run& run : runs)
            if (run.aggregate_name == "median")
                runs_.insert_or_assign(run.run_name.function_name + run.run_name.args, run);
    }
    /// Median of the processor time, which other load does not distort, for benchmarks that never wait. NaN,
    /// as with the others, if a filter left the benchmark out.
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
