#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"
#include "reader/VLPlistSkippersPath.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <optional>
#include <string>

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
    return 0;
}
