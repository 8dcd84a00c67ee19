#include "benchmarks/contest.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <ctime>
#include <limits>

namespace {

double processorSeconds()
{
    timespec now{};
    clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + 1e-9 * static_cast<double>(now.tv_nsec);
}

double secondsOf(const std::function<void()>& work)
{
    const double start = processorSeconds();
    work();
    return processorSeconds() - start;
}

void hold(benchmark::State& state, const Contest& contest)
{
    double ours = std::numeric_limits<double>::max();
    double theirs = ours;
    for (auto _ : state) {
        if (contest.prepare)
            contest.prepare();
        const double seconds = secondsOf(contest.ours);
        ours = std::min(ours, seconds);
        theirs = std::min(theirs, secondsOf(contest.theirs));
        state.SetIterationTime(seconds);
    }
    state.counters["ours"] = ours * 1e9 / contest.units;
    state.counters["theirs"] = theirs * 1e9 / contest.units;
    state.counters["ratio"] = ours / theirs;
    state.SetLabel(contest.peer);
}

class TableReporter : public benchmark::BenchmarkReporter
{
public:
    bool ReportContext(const Context&) override
    {
        std::printf("%-44s %-28s %9s %9s %7s\n", "operation", "peer", "ours, ns", "peer, ns", "ratio");
        return true;
    }

    void ReportRuns(const std::vector<Run>& runs) override
    {
        for (const Run& run : runs) {
            const auto number = [&run](const char* name) { return run.counters.at(name).value; };
            std::printf("%-44s %-28s %9.3f %9.3f %7.2f\n", run.run_name.function_name.c_str(),
                        run.report_label.c_str(), number("ours"), number("theirs"), number("ratio"));
        }
        std::fflush(stdout);
    }
};

} // namespace

void addContest(const Contest& contest)
{
    benchmark::RegisterBenchmark(contest.operation.c_str(), [contest](benchmark::State& state) {
        hold(state, contest);
    })->UseManualTime();
}

int runContests(int argc, char** argv)
{
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 2;
    TableReporter table;
    benchmark::RunSpecifiedBenchmarks(&table);
    benchmark::Shutdown();
    return 0;
}
