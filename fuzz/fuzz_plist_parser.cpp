#include "model/VLGlyph.h"
#include "reader/VLGlyphListReader.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistSkippers.h"
#include "reader/VLPlistSkippersPath.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace {

struct SkipOutcome {
    bool skipped;
    ptrdiff_t offset;
    std::optional<std::string> error;
    uint32_t depth;
    bool operator==(const SkipOutcome&) const = default;
};

SkipOutcome skipOn(VLPlistSkipPath path, const uint8_t* data, size_t size, uint32_t depth, bool dictionaryContent)
{
    setPlistSkipPath(path);
    VLPlistParseInfo info;
    SkipOutcome outcome{false, -1, std::nullopt, depth};
    if (openPlistParseInfoWithBytes(data, size, &info)) {
        info.depth = depth;
        if (dictionaryContent) {
            ++info.curr;
            outcome.skipped = skipPlistDictContent(&info);
        } else {
            outcome.skipped = skipPlistValue(&info);
        }
        outcome.offset = info.curr - info.begin;
        if (info.error) outcome.error = info.error->localizedDescription();
        outcome.depth = info.depth;
    }
    closePlistParseInfo(&info);
    return outcome;
}

// The structural scan must end every value where the scalar rules end it, and fail where they fail.
void compareSkipPaths(const uint8_t* data, size_t size, uint32_t depth, bool dictionaryContent)
{
    SkipOutcome scalar = skipOn(VLPlistSkipPath::scalar, data, size, depth, dictionaryContent);
    for (VLPlistSkipPath path : {VLPlistSkipPath::sse2, VLPlistSkipPath::avx2, VLPlistSkipPath::avx512})
        if (plistSkipPathSupported(path) && !(skipOn(path, data, size, depth, dictionaryContent) == scalar)) abort();
}

struct ListOutcome {
    std::optional<std::vector<std::string>> glyphs;
    ptrdiff_t offset;
    std::optional<std::string> error;
    bool operator==(const ListOutcome&) const = default;
};

// A glyph list read by one thread, or by two with the second guessing from the middle of the input.
ListOutcome readGlyphs(const uint8_t* data, size_t size, bool twoThreads)
{
    VLPlistParseInfo info;
    ListOutcome outcome{std::nullopt, -1, std::nullopt};
    if (openPlistParseInfoWithBytes(data, size, &info)) {
        auto glyphs = twoThreads ? readGlyphListGuessingAt(&info, 3, info.begin + size / 2, nullptr)
                                 : readPlistObjects<VLGlyph>(&info, 3);
        // Not the names: a glyph without one is named with a random UUID.
        if (glyphs) outcome.glyphs.emplace();
        for (const auto& glyph : glyphs ? *glyphs : std::vector<std::shared_ptr<VLGlyph>>())
            outcome.glyphs->push_back(std::to_string(glyph->glyphId()) + " " + glyph->unicode());
        outcome.offset = info.curr - info.begin;
        if (info.error) outcome.error = info.error->description();
    }
    closePlistParseInfo(&info);
    return outcome;
}

} // namespace

// The parser and the skippers read the same bytes, each from its own parse info, since a skipper
// must pass over anything the parser accepts without building it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    VLPlistParseInfo parsed;
    if (openPlistParseInfoWithBytes(data, size, &parsed)) parsePlistValue(&parsed, true);
    closePlistParseInfo(&parsed);

    // Near the nesting limit as well as at the top of a document.
    for (uint32_t depth : {0u, VLPlistMaximumNesting - 8})
        for (bool dictionaryContent : {false, true}) compareSkipPaths(data, size, depth, dictionaryContent);
    // A second thread's guess at a record is confirmed or its glyphs are dropped: never another outcome.
    if (!(readGlyphs(data, size, true) == readGlyphs(data, size, false))) abort();
    return 0;
}
