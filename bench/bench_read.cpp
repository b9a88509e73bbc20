// The reads a thumbnail request is made of: the font-level read of a whole document, and the full
// read of every layer of every glyph, which is what drawing all glyphs would cost.

#include "BenchTwins.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLPath.h"

namespace {

std::shared_ptr<VLFont> readFont(const char* path)
{
    VLError error;
    return VLFont::initWithURL_error(path, &error);
}

void BM_ReadFont(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    for (auto _ : state) {
        auto font = readFont(path);
        if (!font) return state.SkipWithError("the document could not be read");
        benchmark::DoNotOptimize(font.get());
        // Freeing is part of a request too: the command's process ends, a service's loader goes.
    }
}
BENCHMARK_CAPTURE(BM_ReadFont, text, benchTextDocument)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadFont, package, benchPackageDocument)->Unit(benchmark::kMillisecond);

// The dictionary route builds every glyph's record tree up front, where the streaming route
// skips over the glyphs until they are drawn. "refused" is the second chance: the streaming
// reader stops at the first master, then the whole text is parsed into one tree.
void BM_ReadFontThroughDict(benchmark::State& state, const char* document, const char* form)
{
    BM_ReadFont(state, benchDictRouteDocument(document, form).c_str());
}
BENCHMARK_CAPTURE(BM_ReadFontThroughDict, refused_text, benchTextDocument, "refused")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadFontThroughDict, real_size_xml, benchRealSizeDocument, "xml")->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadFont, real_size_text, benchRealSizeDocument)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadFontThroughDict, real_size_binary, benchRealSizeDocument, "binary")
    ->Unit(benchmark::kMillisecond);

struct RecordCounts {
    int64_t layers = 0;
    int64_t shapes = 0;
    int64_t nodes = 0;
};

RecordCounts countRecords(const VLFont& font)
{
    RecordCounts counts;
    for (const auto& glyph : font.glyphs()) {
        counts.layers += static_cast<int64_t>(glyph->countOfLayers());
        for (const auto& layer : glyph->layers().allValues()) {
            counts.shapes += static_cast<int64_t>(layer->shapes().size());
            for (const auto& shape : layer->shapes())
                if (auto path = std::dynamic_pointer_cast<VLPath>(shape))
                    counts.nodes += static_cast<int64_t>(path->nodes().size());
        }
    }
    return counts;
}

void BM_ReadAllLayers(benchmark::State& state, const char* path)
{
    if (benchDocumentMissing(state, path)) return;
    std::shared_ptr<VLFont> font;
    for (auto _ : state) {
        // A glyph reads its layers once, so each round needs a font that has not read them yet.
        state.PauseTiming();
        font.reset();
        font = readFont(path);
        if (!font) return state.SkipWithError("the document could not be read");
        state.ResumeTiming();
        for (const auto& glyph : font->glyphs())
            if (!glyph->readLayersFormat(font->formatVersion())) return state.SkipWithError("a glyph's layers failed");
    }
    RecordCounts counts = countRecords(*font);
    auto rate = [&](int64_t perRound) {
        return benchmark::Counter(static_cast<double>(perRound * static_cast<int64_t>(state.iterations())),
                                  benchmark::Counter::kIsRate);
    };
    state.counters["layers/s"] = rate(counts.layers);
    state.counters["shapes/s"] = rate(counts.shapes);
    state.counters["nodes/s"] = rate(counts.nodes);
}
BENCHMARK_CAPTURE(BM_ReadAllLayers, text, benchTextDocument)->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(BM_ReadAllLayers, package, benchPackageDocument)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
