// Peak memory of a thumbnail request. The operating system's figure comes from the real command
// run as a child process; it counts the mapped document's pages as well as the heap. The heap's
// own peak comes from counting this program's C++ allocations during an in-process request
// (cairo's and libplist's C allocations are not in it).

#include "BenchSupport.h"

#include <atomic>
#include <fcntl.h>
#include <malloc.h>
#include <new>
#include <spawn.h>
#include <sys/resource.h>
#include <sys/wait.h>

extern char** environ;

namespace {

std::atomic<size_t> heapInUse{0};
std::atomic<size_t> heapPeak{0};

void noteAllocation(size_t size)
{
    size_t now = heapInUse += size;
    size_t peak = heapPeak.load(std::memory_order_relaxed);
    while (now > peak && !heapPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {}
}

struct ChildRun {
    int status = -1;
    long maxResidentKiB = 0;
};

// Runs the command with its messages discarded; its own peak, not that of earlier children.
ChildRun runCommand(const char* document, const std::string& png)
{
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, STDERR_FILENO, "/dev/null", O_WRONLY, 0);
    const char* argv[] = {VELMOR_THUMBNAILER, "-s", "256", document, png.c_str(), nullptr};
    pid_t pid;
    ChildRun run;
    if (posix_spawn(&pid, argv[0], &actions, nullptr, const_cast<char**>(argv), environ) == 0) {
        struct rusage usage;
        if (wait4(pid, &run.status, 0, &usage) == pid) run.maxResidentKiB = usage.ru_maxrss;
    }
    posix_spawn_file_actions_destroy(&actions);
    return run;
}

benchmark::Counter bytes(double value)
{
    return benchmark::Counter(value, benchmark::Counter::kDefaults, benchmark::Counter::OneK::kIs1024);
}

void BM_CommandPeakRSS(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    BenchTemporaryPNG png;
    ChildRun run;
    long peak = 0;
    for (auto _ : state) {
        run = runCommand(path, png.path());
        if (run.maxResidentKiB == 0) return state.SkipWithError("the command could not be run");
        peak = std::max(peak, run.maxResidentKiB);
    }
    state.counters["peak_rss"] = bytes(static_cast<double>(peak) * 1024);
    // 2 while the document's outlines draw nothing.
    state.counters["exit_status"] = WIFEXITED(run.status) ? WEXITSTATUS(run.status) : -1;
}
BENCHMARK_CAPTURE(BM_CommandPeakRSS, text, benchTextDocument)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_CommandPeakRSS, package, benchPackageDocument)->Unit(benchmark::kMillisecond)->UseRealTime();

void BM_HeapPeak(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    BenchTemporaryPNG png;
    size_t peak = 0;
    for (auto _ : state) {
        size_t before = heapInUse.load();
        heapPeak = before;
        benchThumbnail(path, 256, png.path());
        peak = std::max(peak, heapPeak.load() - before);
    }
    state.counters["heap_peak"] = bytes(static_cast<double>(peak));
}
BENCHMARK_CAPTURE(BM_HeapPeak, text, benchTextDocument)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_HeapPeak, package, benchPackageDocument)->Unit(benchmark::kMillisecond);

} // namespace

void* operator new(size_t size)
{
    void* p = std::malloc(size ? size : 1);
    if (!p) throw std::bad_alloc();
    noteAllocation(malloc_usable_size(p));
    return p;
}

void operator delete(void* p) noexcept
{
    if (!p) return;
    heapInUse -= malloc_usable_size(p);
    std::free(p);
}

void operator delete(void* p, size_t) noexcept
{
    operator delete(p);
}

BENCHMARK_MAIN();
