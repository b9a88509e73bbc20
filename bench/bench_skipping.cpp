// How fast the skippers pass over the glyph list of the large text document: the bulk of what a
// thumbnail request scans.

#include "BenchSupport.h"
#include "reader/VLPlistSkippers.h"

#include <cstring>

namespace {

// The value of the font-level "glyphs" key, the one key the generator writes at the start of a line.
const uint8_t* glyphList(const VLPlistParseInfo& info)
{
    static constexpr char key[] = "\nglyphs = ";
    const void* found = memmem(info.begin, static_cast<size_t>(info.end - info.begin), key, sizeof key - 1);
    return found ? static_cast<const uint8_t*>(found) + sizeof key - 1 : nullptr;
}

void BM_SkipGlyphList(benchmark::State& state)
{
    if (benchDocumentMissing(state, benchTextDocument)) return;
    VLPlistParseInfo info;
    const uint8_t* start = openPlistParseInfo(benchTextDocument, &info) ? glyphList(info) : nullptr;
    if (!start) return state.SkipWithError("no glyph list in the document");
    for (auto _ : state) {
        info.curr = start;
        bool skipped = skipPlistArray(&info);
        benchmark::DoNotOptimize(skipped);
        if (!skipped || *info.curr != ';') return state.SkipWithError("the glyph list did not skip");
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * (info.curr - start));
    closePlistParseInfo(&info);
}
BENCHMARK(BM_SkipGlyphList)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
