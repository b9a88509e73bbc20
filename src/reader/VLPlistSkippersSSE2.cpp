#include "reader/VLPlistSkippersPath.h"

#ifdef __x86_64__

#include "reader/VLPlistSkippersBlocks.h"

#include <emmintrin.h>

namespace {

// Four vectors of 16 bytes; without a byte shuffle, the classes are ranges and single bytes.
struct ClassesSSE2 {
    template <typename Test> static uint64_t bits(const uint8_t* p, Test test)
    {
        uint64_t result = 0;
        for (int i = 0; i < 4; ++i) {
            __m128i x = _mm_loadu_si128(reinterpret_cast<const __m128i*>(p + 16 * i));
            result |= static_cast<uint64_t>(static_cast<uint16_t>(_mm_movemask_epi8(test(x)))) << (16 * i);
        }
        return result;
    }
    static __m128i is(__m128i x, char c) { return _mm_cmpeq_epi8(x, _mm_set1_epi8(c)); }
    // The bytes from `first` to `last`, by a signed comparison of the bytes moved to the bottom.
    static __m128i within(__m128i x, char first, char last)
    {
        __m128i moved = _mm_add_epi8(x, _mm_set1_epi8(static_cast<char>(-128 - first)));
        return _mm_cmplt_epi8(moved, _mm_set1_epi8(static_cast<char>(-128 + last - first + 1)));
    }

    static PlistBlockClasses list(const uint8_t* p)
    {
        return {
            bits(p,
                 [](__m128i x) {
                     __m128i letters = within(_mm_or_si128(x, _mm_set1_epi8(0x20)), 'a', 'z');
                     __m128i punctuation = _mm_or_si128(is(x, '$'), is(x, '_'));
                     return _mm_or_si128(_mm_or_si128(letters, within(x, '-', ':')), punctuation);
                 }),
            bits(p,
                 [](__m128i x) {
                     return _mm_or_si128(_mm_or_si128(is(x, ' '), is(x, '\n')), _mm_or_si128(is(x, '\t'), is(x, '\r')));
                 }),
            bits(p, [](__m128i x) { return is(x, '('); }),
            bits(p, [](__m128i x) { return is(x, ')'); }),
            bits(p, [](__m128i x) { return is(x, ','); }),
        };
    }
    static void addOthers(const uint8_t* p, PlistBlockClasses& c)
    {
        c.openBrace = bits(p, [](__m128i x) { return is(x, '{'); });
        c.closeBrace = bits(p, [](__m128i x) { return is(x, '}'); });
        c.semicolon = bits(p, [](__m128i x) { return is(x, ';'); });
        c.equals = bits(p, [](__m128i x) { return is(x, '='); });
        c.quote = bits(p, [](__m128i x) { return is(x, '"'); });
        c.backslash = bits(p, [](__m128i x) { return is(x, '\\'); });
    }
};

} // namespace

const uint8_t* scanPlistStructureSSE2(const uint8_t* content, const uint8_t* end, bool dictionary,
                                      uint32_t maximumLevels)
{
    return scanPlistStructure<ClassesSSE2>(content, end, dictionary, maximumLevels);
}

#endif
