#pragma once

#include "reader/VLPlistCompact.h"
#include "reader/VLPlistNumbers.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistTypedReaders.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <optional>

// The value behind a key of a record in the text, read by the readers of the record tables.
// Key tables that both routes share are templates over this and VLDictKeySource, so that a key
// means the same whichever route reads it. Each reader leaves `curr` behind what it read.
class VLPlistKeySource {
public:
    explicit VLPlistKeySource(VLPlistParseInfo* info) : _info(info) {}

    template <size_t N> bool is(const char (&key)[N]) { return matchKey(_info, key); }
    // False at the end of the input; otherwise the value's first byte stands at `curr`.
    bool hasValue() { return skipPlistSpace(_info); }
    // After hasValue: whether the value is a parenthesised list.
    bool atList() const { return *_info->curr == '('; }

    double number() { return parsePlistDoubleValue(_info); }
    int64_t integer() { return readPlistInteger(_info); }
    Value string() { return parsePlistStringValue(_info); }
    Point point() { return parsePlistPoint(_info); }
    Value dict() { return parsePlistDict(_info); }
    Value array() { return parsePlistArray(_info); }
    Value mergedDict() { return readPlistMergedDict(_info); }
    Value value() { return parsePlistValue(_info, true); }
    void transform(double m[6]) { parsePlistTransform(_info, m); }
    // After atList.
    std::optional<Color> color() { return parsePlistColor(_info); }

    // A parenthesised list of at most `*count` numbers; `*count` becomes their number.
    bool numbers(double* values, int* count)
    {
        size_t index = 0;
        if (!parseDoubleTupleAt(_info->curr, &index, values, count)) {
            reportPlistError(_info, "Too many values");
            return false;
        }
        _info->curr += index + 1;
        return true;
    }

    // Whether the value, quoted or not, starts with the two letters of `word`; if so `curr`
    // moves `length` bytes from behind a quote without looking at them. After hasValue.
    bool startsWithWord(const char (&word)[3], size_t length)
    {
        const uint8_t* start = _info->curr + (*_info->curr == '"' ? 1 : 0);
        if (_info->end - start < 2 || std::memcmp(start, word, 2) != 0) return false;
        _info->curr = start;
        stepPlistBlindly(_info, length);
        return true;
    }

    template <typename K> std::optional<std::vector<std::shared_ptr<K>>> objects(uint8_t format)
    {
        return readPlistObjects<K>(_info, format);
    }
    template <typename K> std::shared_ptr<K> object(uint8_t format)
    {
        return skipPlistSpace(_info) ? readPlistObject<K>(_info, format, nullptr) : nullptr;
    }

private:
    VLPlistParseInfo* _info;
};
