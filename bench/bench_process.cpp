// The command as a file browser runs it, a process per thumbnail: start-up, the request and the
// PNG. The times are wall times of the child; `cpu_ms` is its user and system time, which other
// work on the machine disturbs less.

#include "BenchSupport.h"

#include <vector>

namespace {

void reportRuns(benchmark::State& state, double cpuSeconds)
{
    state.counters["cpu_ms"] = cpuSeconds * 1000 / static_cast<double>(state.iterations());
}

// Start-up alone: loading and linking the command and its libraries.
void BM_CommandStartUp(benchmark::State& state)
{
    double cpu = 0;
    for (auto _ : state) {
        BenchChildRun run = benchRunCommand({"--version"});
        if (run.status != 0) return state.SkipWithError("the command could not be run");
        state.SetIterationTime(run.seconds);
        cpu += run.cpuSeconds;
    }
    reportRuns(state, cpu);
}
BENCHMARK(BM_CommandStartUp)->Unit(benchmark::kMillisecond)->UseManualTime();

void BM_Command(benchmark::State& state, const char* document)
{
    if (benchDocumentMissing(state, document)) return;
    BenchTemporaryPNG png;
    double cpu = 0;
    for (auto _ : state) {
        BenchChildRun run = benchRunThumbnailCommand(document, png.path());
        if (run.status != 0) return state.SkipWithError("the command did not write a thumbnail");
        state.SetIterationTime(run.seconds);
        cpu += run.cpuSeconds;
    }
    reportRuns(state, cpu);
}
BENCHMARK_CAPTURE(BM_Command, smallest, benchSmallestDocument)->Unit(benchmark::kMillisecond)->UseManualTime();
BENCHMARK_CAPTURE(BM_Command, real_size, benchRealSizeDocument)->Unit(benchmark::kMillisecond)->UseManualTime();

// The real-size document and the smallest example in turn; `ratio` and `cpu_ratio` are the medians
// of their quotients.
void BM_CommandRealSizeOverSmallest(benchmark::State& state)
{
    if (benchDocumentMissing(state, benchRealSizeDocument)) return;
    BenchTemporaryPNG png;
    std::vector<double> ratios, cpuRatios;
    for (auto _ : state) {
        BenchChildRun real = benchRunThumbnailCommand(benchRealSizeDocument, png.path());
        BenchChildRun smallest = benchRunThumbnailCommand(benchSmallestDocument, png.path());
        if (real.status != 0 || smallest.status != 0) return state.SkipWithError("the command did not write a thumbnail");
        state.SetIterationTime(real.seconds);
        ratios.push_back(real.seconds / smallest.seconds);
        cpuRatios.push_back(real.cpuSeconds / smallest.cpuSeconds);
    }
    auto median = [](std::vector<double>& values) {
        std::nth_element(values.begin(), values.begin() + static_cast<long>(values.size() / 2), values.end());
        return values[values.size() / 2];
    };
    state.counters["ratio"] = median(ratios);
    state.counters["cpu_ratio"] = median(cpuRatios);
}
BENCHMARK(BM_CommandRealSizeOverSmallest)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
