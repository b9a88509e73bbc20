// The glyph list of the 10,000-glyph document cut to its first records, read by one thread and by
// two: where the second thread starts to pay for itself (VLGlyphListSplitBytes).

#include "BenchSupport.h"
#include "model/VLGlyph.h"
#include "reader/VLGlyphListReader.h"
#include "reader/VLPlistSkippers.h"

#include <cstring>
#include <fstream>
#include <iterator>

namespace {

// "(" and the first `records` glyph records of the document's list, then ")"; empty when the
// document has no such list.
std::string firstGlyphRecords(const char* path, size_t records)
{
    std::ifstream file(path, std::ios::binary);
    std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
    const std::string opening = "\nglyphs = (";
    size_t start = text.find(opening);
    if (start == std::string::npos) return std::string();
    start += opening.size();
    VLPlistParseInfo info;
    openPlistParseInfoWithBytes(text.data(), text.size(), &info);
    info.curr = info.begin + start;
    for (size_t i = 0; i < records; ++i)
        if (!skipPlistDict(&info) || *info.curr++ != ',') break;
    std::string glyphs = "(";
    glyphs.append(text, start, static_cast<size_t>(info.curr - info.begin) - start).append("\n)");
    closePlistParseInfo(&info);
    return glyphs;
}

void BM_ReadGlyphList(benchmark::State& state, bool twoThreads)
{
    if (benchDocumentMissing(state, benchTextDocument)) return;
    std::string list = firstGlyphRecords(benchTextDocument, static_cast<size_t>(state.range(0)));
    VLPlistParseInfo info;
    openPlistParseInfoWithBytes(list.data(), list.size(), &info);
    bool split = false;
    for (auto _ : state) {
        info.curr = info.begin;
        auto glyphs = readGlyphListGuessingAt(&info, 3, twoThreads ? info.begin + list.size() / 2 : nullptr, &split);
        if (!glyphs) return state.SkipWithError("the list could not be read");
        benchmark::DoNotOptimize(glyphs->data());
    }
    state.counters["kB"] = static_cast<double>(list.size()) / 1000;
    state.counters["split"] = split;
    closePlistParseInfo(&info);
}
BENCHMARK_CAPTURE(BM_ReadGlyphList, one_thread, false)->RangeMultiplier(2)->Range(16, 8192)->Unit(benchmark::kMicrosecond);
BENCHMARK_CAPTURE(BM_ReadGlyphList, two_threads, true)->RangeMultiplier(2)->Range(16, 8192)->Unit(benchmark::kMicrosecond);

} // namespace

BENCHMARK_MAIN();
