#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"

#include <cstddef>
#include <cstdint>

// The parser and the skipper read the same bytes, each from its own parse info, since a skipper
// must pass over anything the parser accepts without building it.
extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    VLPlistParseInfo parsed;
    if (openPlistParseInfoWithBytes(data, size, &parsed)) parsePlistValue(&parsed, true);
    closePlistParseInfo(&parsed);

    VLPlistParseInfo skipped;
    if (openPlistParseInfoWithBytes(data, size, &skipped)) skipPlistValue(&skipped);
    closePlistParseInfo(&skipped);
    return 0;
}
