// Peak memory of a thumbnail request. The operating system's figure comes from the real command
// run as a child process; it counts the mapped document's pages as well as the heap. The heap's
// own peak comes from counting this program's C++ allocations during an in-process request
// (cairo's and libplist's C allocations are not in it).

#include "BenchSupport.h"
#include "BenchTwins.h"

#include <atomic>
#include <malloc.h>
#include <new>

namespace {

std::atomic<size_t> heapInUse{0};
std::atomic<size_t> heapPeak{0};

void noteAllocation(size_t size)
{
    size_t now = heapInUse += size;
    size_t peak = heapPeak.load(std::memory_order_relaxed);
    while (now > peak && !heapPeak.compare_exchange_weak(peak, now, std::memory_order_relaxed)) {}
}

benchmark::Counter bytes(double value)
{
    return benchmark::Counter(value, benchmark::Counter::kDefaults, benchmark::Counter::OneK::kIs1024);
}

void BM_CommandPeakRSS(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    BenchTemporaryPNG png;
    BenchChildRun run;
    long peak = 0;
    for (auto _ : state) {
        run = benchRunThumbnailCommand(path, png.path());
        if (run.maxResidentKiB == 0) return state.SkipWithError("the command could not be run");
        peak = std::max(peak, run.maxResidentKiB);
    }
    state.counters["peak_rss"] = bytes(static_cast<double>(peak) * 1024);
    // 2 while the document's outlines draw nothing.
    state.counters["exit_status"] = WIFEXITED(run.status) ? WEXITSTATUS(run.status) : -1;
}
BENCHMARK_CAPTURE(BM_CommandPeakRSS, text, benchTextDocument)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK_CAPTURE(BM_CommandPeakRSS, package, benchPackageDocument)->Unit(benchmark::kMillisecond)->UseRealTime();

// The dictionary route holds the tree of the whole document, which bounds the size of the
// property-list documents that are read at all.
void BM_CommandPeakRSSThroughDict(benchmark::State& state, const char* document, const char* form)
{
    BM_CommandPeakRSS(state, benchDictRouteDocument(document, form).c_str());
}
BENCHMARK_CAPTURE(BM_CommandPeakRSSThroughDict, refused_text, benchTextDocument, "refused")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_CommandPeakRSSThroughDict, real_size_xml, benchRealSizeDocument, "xml")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();
BENCHMARK_CAPTURE(BM_CommandPeakRSSThroughDict, real_size_binary, benchRealSizeDocument, "binary")
    ->Unit(benchmark::kMillisecond)
    ->UseRealTime();

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
