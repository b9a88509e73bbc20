// A whole thumbnail request in-process, as the command serves it: import, layout, draw into a
// 256-pixel context and write the PNG; and, beside it, the floor under any reader of the document:
// mapping it and reading each of its bytes once.

#include "BenchSupport.h"

#include <cstring>
#include <sys/mman.h>
#include <vector>

namespace {

constexpr int side = 256;

void BM_Thumbnail(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    BenchTemporaryPNG png;
    bool written = false;
    for (auto _ : state) written = benchThumbnail(path, side, png.path());
    // 0 while the document's outlines draw nothing, and then no PNG is written.
    state.counters["drawn"] = written;
}
BENCHMARK_CAPTURE(BM_Thumbnail, text, benchTextDocument)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_Thumbnail, package, benchPackageDocument)->Unit(benchmark::kMillisecond);

// Maps the file and searches it for a byte that a text document does not hold; whether it could.
bool mapAndReadEveryByte(const char* path)
{
    int fd = open(path, O_RDONLY | O_CLOEXEC);
    struct stat status;
    if (fd < 0 || fstat(fd, &status) != 0) return false;
    size_t size = static_cast<size_t>(status.st_size);
    void* mapping = mmap(nullptr, size, PROT_READ, MAP_PRIVATE, fd, 0);
    close(fd);
    if (mapping == MAP_FAILED) return false;
    benchmark::DoNotOptimize(std::memchr(mapping, 0, size));
    munmap(mapping, size);
    return true;
}

void BM_MapAndReadEveryByte(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    for (auto _ : state)
        if (!mapAndReadEveryByte(path)) return state.SkipWithError("the document could not be mapped");
}
BENCHMARK_CAPTURE(BM_MapAndReadEveryByte, text, benchTextDocument)->Unit(benchmark::kMillisecond);

// The request and the reading of every byte in turn, so that both meet the same load on the
// machine; the time is the request's, and `ratio` the median of request over reading.
void BM_ThumbnailOverReading(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    BenchTemporaryPNG png;
    std::vector<double> ratios;
    double reading = 0;
    for (auto _ : state) {
        auto start = std::chrono::steady_clock::now();
        benchThumbnail(path, side, png.path());
        double request = benchSecondsSince(start);
        start = std::chrono::steady_clock::now();
        mapAndReadEveryByte(path);
        double read = benchSecondsSince(start);
        state.SetIterationTime(request);
        reading += read;
        ratios.push_back(request / read);
    }
    std::nth_element(ratios.begin(), ratios.begin() + static_cast<long>(ratios.size() / 2), ratios.end());
    state.counters["ratio"] = ratios[ratios.size() / 2];
    state.counters["reading_ms"] = reading * 1000 / static_cast<double>(ratios.size());
}
BENCHMARK_CAPTURE(BM_ThumbnailOverReading, text, benchTextDocument)->Unit(benchmark::kMillisecond)->UseManualTime();

} // namespace

BENCHMARK_MAIN();
