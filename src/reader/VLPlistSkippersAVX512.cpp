#include "reader/VLPlistSkippersPath.h"

#ifdef __x86_64__

#include "reader/VLPlistSkippersBlocks.h"

#include <immintrin.h>

namespace {

// One vector of 64 bytes, compared into mask registers; unquoted characters and line space are
// looked up by nibble.
struct ClassesAVX512 {
    static __m512i table(const std::array<uint8_t, 64>& bytes) { return _mm512_loadu_si512(bytes.data()); }
    static uint64_t is(__m512i x, char c) { return _mm512_cmpeq_epi8_mask(x, _mm512_set1_epi8(c)); }

    static PlistBlockClasses list(const uint8_t* p)
    {
        __m512i x = _mm512_loadu_si512(p);
        __m512i nibble = _mm512_set1_epi8(0x0f);
        // Bytes from 0x80 on have a high nibble without a bit, and shuffle to 0, which no such byte is.
        __m512i row = _mm512_shuffle_epi8(table(plistUnquotedByLowNibble), _mm512_and_si512(x, nibble));
        __m512i bit = _mm512_shuffle_epi8(table(plistHighNibbleBits), _mm512_and_si512(_mm512_srli_epi16(x, 4), nibble));
        return {
            _mm512_test_epi8_mask(row, bit),
            _mm512_cmpeq_epi8_mask(_mm512_shuffle_epi8(table(plistSpaceByLowNibble), x), x),
            is(x, '('),
            is(x, ')'),
            is(x, ','),
        };
    }
    static void addOthers(const uint8_t* p, PlistBlockClasses& c)
    {
        __m512i x = _mm512_loadu_si512(p);
        c.openBrace = is(x, '{');
        c.closeBrace = is(x, '}');
        c.semicolon = is(x, ';');
        c.equals = is(x, '=');
        c.quote = is(x, '"');
        c.backslash = is(x, '\\');
    }
};

} // namespace

const uint8_t* scanPlistStructureAVX512(const uint8_t* content, const uint8_t* end, bool dictionary,
                                        uint32_t maximumLevels)
{
    return scanPlistStructure<ClassesAVX512>(content, end, dictionary, maximumLevels);
}

#endif
