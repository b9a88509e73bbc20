#pragma once

#include "platform/Value.h"
#include "platform/VLUnsetValue.h"
#include "reader/VLPlistParseInfo.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistTypedReaders.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

// The records of a list in a document's dictionary tree. Each element goes through `make`, which
// answers null for an element it can't build; such elements are left out unless `required`, in
// which case the whole list fails. A list longer than the class allows fails too, as it does in
// the streaming readers.
template <typename K, typename Make>
std::optional<std::vector<std::shared_ptr<K>>> readDictRecords(const Value& list, bool required, Make&& make)
{
    if (list.count() > maximumRecordsInList<K>()) return std::nullopt;
    std::vector<std::shared_ptr<K>> records;
    for (const Value& element : list.array()) {
        auto record = make(element);
        if (record)
            records.push_back(std::move(record));
        else if (required)
            return std::nullopt;
    }
    return records;
}

// The records of K's dictionary reader; elements that are not dictionaries are left out.
template <typename K>
std::optional<std::vector<std::shared_ptr<K>>> readDictObjects(const Value& list, uint8_t format, bool required = false)
{
    return readDictRecords<K>(list, required, [&](const Value& element) -> std::shared_ptr<K> {
        return element.isDictionary() ? K::initWithDict_format(element, format) : nullptr;
    });
}

// A compact line of the text form held as a string value: the streaming line reader `read`
// runs over the string's bytes, so that both routes read a line the same way.
template <typename Read> bool readLineOfString(const std::string& line, Read&& read)
{
    VLPlistParseInfo info;
    if (!openPlistParseInfoWithBytes(line.data(), line.size(), &info)) return false;
    bool ok = read(&info);
    closePlistParseInfo(&info);
    return ok;
}

// A point as a list (x, y), or as the text "{x, y}" read by the streaming point reader; nothing
// for anything else.
inline std::optional<Point> pointFromValue(const Value& value)
{
    if (value.isArray() && value.count() >= 2) return Point{value[size_t{0}].doubleValue(), value[size_t{1}].doubleValue()};
    if (!value.isString()) return std::nullopt;
    Point point;
    readLineOfString("\"" + value.string() + "\";", [&](VLPlistParseInfo* info) {
        point = parsePlistPoint(info);
        return true;
    });
    if (point.x == VLUnsetValue) return std::nullopt;
    return point;
}

// A transform as a list of six numbers or as the text "{m11, m12, m21, m22, tX, tY}"; left as it
// is for anything else.
inline void transformFromValue(const Value& value, double m[6])
{
    if (value.isArray() && value.count() >= 6) {
        for (size_t i = 0; i < 6; ++i) m[i] = value[i].doubleValue();
        return;
    }
    if (value.isString()) readLineOfString(value.string(), [&](VLPlistParseInfo* info) {
        parsePlistTransform(info, m);
        return true;
    });
}
