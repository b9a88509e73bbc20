#include "reader/VLPlistSkippersPath.h"

#ifdef __x86_64__

#include "reader/VLPlistSkippersBlocks.h"

#include <immintrin.h>

namespace {

// Two vectors of 32 bytes; unquoted characters and line space are looked up by nibble.
struct ClassesAVX2 {
    static __m256i table(const std::array<uint8_t, 64>& bytes)
    {
        return _mm256_loadu_si256(reinterpret_cast<const __m256i*>(bytes.data()));
    }
    template <typename Test> static uint64_t bits(const uint8_t* p, Test test)
    {
        __m256i low = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p));
        __m256i high = _mm256_loadu_si256(reinterpret_cast<const __m256i*>(p + 32));
        return static_cast<uint32_t>(_mm256_movemask_epi8(test(low))) |
               static_cast<uint64_t>(static_cast<uint32_t>(_mm256_movemask_epi8(test(high)))) << 32;
    }
    static __m256i is(__m256i x, char c) { return _mm256_cmpeq_epi8(x, _mm256_set1_epi8(c)); }

    static PlistBlockClasses list(const uint8_t* p)
    {
        // Bytes from 0x80 on have a high nibble without a bit, and shuffle to 0, which no such byte is.
        uint64_t notUnquoted = bits(p, [](__m256i x) {
            __m256i nibble = _mm256_set1_epi8(0x0f);
            __m256i row = _mm256_shuffle_epi8(table(plistUnquotedByLowNibble), _mm256_and_si256(x, nibble));
            __m256i bit = _mm256_shuffle_epi8(table(plistHighNibbleBits),
                                              _mm256_and_si256(_mm256_srli_epi16(x, 4), nibble));
            return _mm256_cmpeq_epi8(_mm256_and_si256(row, bit), _mm256_setzero_si256());
        });
        return {
            ~notUnquoted,
            bits(p, [](__m256i x) { return _mm256_cmpeq_epi8(_mm256_shuffle_epi8(table(plistSpaceByLowNibble), x), x); }),
            bits(p, [](__m256i x) { return is(x, '('); }),
            bits(p, [](__m256i x) { return is(x, ')'); }),
            bits(p, [](__m256i x) { return is(x, ','); }),
        };
    }
    static void addOthers(const uint8_t* p, PlistBlockClasses& c)
    {
        c.openBrace = bits(p, [](__m256i x) { return is(x, '{'); });
        c.closeBrace = bits(p, [](__m256i x) { return is(x, '}'); });
        c.semicolon = bits(p, [](__m256i x) { return is(x, ';'); });
        c.equals = bits(p, [](__m256i x) { return is(x, '='); });
        c.quote = bits(p, [](__m256i x) { return is(x, '"'); });
        c.backslash = bits(p, [](__m256i x) { return is(x, '\\'); });
    }
};

} // namespace

const uint8_t* scanPlistStructureAVX2(const uint8_t* content, const uint8_t* end, bool dictionary,
                                      uint32_t maximumLevels)
{
    return scanPlistStructure<ClassesAVX2>(content, end, dictionary, maximumLevels);
}

#endif
