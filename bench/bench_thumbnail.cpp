// A whole thumbnail request in-process, as the command serves it: import, layout, draw into a
// 256-pixel context and write the PNG.

#include "BenchSupport.h"

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

} // namespace

BENCHMARK_MAIN();
