#pragma once

#include "reader/VLPlistLexical.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistParseInfo.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <type_traits>
#include <vector>

// The loop of every record reader: keys separated by ";" up to a "}", which stays unread.
// handleKey reads the key at `curr` and its value; false when the key is unknown or its value
// fails, which fails the record. Records with a compact form pass handleLine, which takes over
// when a round starts with a double quote (stepped over) and ends the record.
template <typename HandleKey, typename HandleLine>
bool readPlistRecordOrLine(VLPlistParseInfo* info, HandleKey&& handleKey, HandleLine&& handleLine)
{
    while (true) {
        if (!skipPlistSpace(info)) return false;
        if (*info->curr == '}') return true;
        if constexpr (!std::is_same_v<std::decay_t<HandleLine>, std::nullptr_t>) {
            if (*info->curr == '"') {
                ++info->curr;
                return handleLine();
            }
        }
        if (!handleKey()) return false;
        if (info->error) return false;
        if (!skipPlistSpace(info) || *info->curr != ';') return true;
        ++info->curr;
    }
}

template <typename HandleKey> bool readPlistRecord(VLPlistParseInfo* info, HandleKey&& handleKey)
{
    return readPlistRecordOrLine(info, handleKey, nullptr);
}

template <typename K>
concept VLStreamRecord = requires(VLPlistParseInfo* info, uint8_t format) {
    { K::initWithVelmorParser_format(info, format) } -> std::same_as<std::shared_ptr<K>>;
};

template <typename K, typename Container>
concept VLContainedDictRecord = requires(const Value& dict, Container container, uint8_t format) {
    { K::initWithDict_container_format(dict, container, format) } -> std::same_as<std::shared_ptr<K>>;
};

// One record of class K in any of its forms: the compact line form, a dictionary read by K's
// own stream reader, or a dictionary parsed first and handed to K.
template <typename K, typename Container>
std::shared_ptr<K> readPlistObject(VLPlistParseInfo* info, uint8_t format, Container container)
{
    uint8_t c = *info->curr;
    if constexpr (VLStreamRecord<K>) {
        if (c == '"' || c == '(') return K::initWithVelmorParser_format(info, format);
        if (c == '{') {
            ++info->curr;
            auto record = K::initWithVelmorParser_format(info, format);
            if (record) ++info->curr; // the closing brace, left unread by the record loop
            return record;
        }
    } else if (c == '{') {
        Value dict = parsePlistDict(info);
        if (dict.isNull()) {
            if (!info->error) reportPlistError(info, "reading: %s", K::className);
            return nullptr;
        }
        if constexpr (VLContainedDictRecord<K, Container>)
            return K::initWithDict_container_format(dict, container, format);
        else
            return K::initWithDict_format(dict, format);
    }
    if (!info->error) reportPlistError(info, "Unexpected character '0x%x' (expected “%s”)", c, "( or \"");
    return nullptr;
}

// Record classes that bound the length of their lists say so with maximumInList.
template <typename K> constexpr size_t maximumRecordsInList()
{
    if constexpr (requires { K::maximumInList; })
        return K::maximumInList;
    else
        return SIZE_MAX;
}

// Steps into a list at `curr`, behind its "(", under the nesting counted by `nesting`; false, with
// the error reported, when there is no list or it nests too deeply.
bool enterPlistList(VLPlistParseInfo* info, const VLPlistNesting& nesting);

// The records of class K of a list from `curr`, which stands behind the list's "(" or behind a
// "," after a record, appended to `records`; `curr` ends behind the ")". False when the list or a
// record fails, or when the list is longer than the class allows. Before each record, with `curr`
// on its first byte, atRecord(records) may end the read: it returns nothing to go on, or the
// result of the whole read.
template <typename K, typename Container, typename AtRecord>
bool readPlistObjectsFrom(VLPlistParseInfo* info, uint8_t format, Container container,
                          std::vector<std::shared_ptr<K>>& records, AtRecord&& atRecord)
{
    while (true) {
        if (!skipPlistSpace(info)) return false;
        if (*info->curr == ')') break;
        if constexpr (!std::is_same_v<std::decay_t<AtRecord>, std::nullptr_t>) {
            if (std::optional<bool> result = atRecord(records)) return *result;
        }
        if (records.size() == maximumRecordsInList<K>()) {
            reportPlistError(info, "Too many entries: %s", K::className);
            return false;
        }
        if (!takePlistRecord(info, K::className)) return false;
        auto record = readPlistObject<K>(info, format, container);
        if (!record) {
            if (!info->error) reportPlistError(info, "reading: %s", K::className);
            return false;
        }
        records.push_back(std::move(record));
        if (!skipPlistSpace(info)) return false;
        if (*info->curr == ',') {
            ++info->curr;
            continue;
        }
        if (*info->curr == ')') break;
        if (!info->error) reportPlistError(info, "reading: %s", K::className);
        return false;
    }
    ++info->curr;
    return true;
}

// A parenthesised list of records of class K; nothing when the list or any record fails, or
// when it is longer than the class allows.
template <typename K, typename Container = std::nullptr_t>
std::optional<std::vector<std::shared_ptr<K>>> readPlistObjects(VLPlistParseInfo* info, uint8_t format,
                                                                Container container = nullptr)
{
    VLPlistNesting nesting(info);
    if (!enterPlistList(info, nesting)) return std::nullopt;
    std::vector<std::shared_ptr<K>> records;
    if (!readPlistObjectsFrom(info, format, container, records, nullptr)) return std::nullopt;
    return records;
}

// A dictionary, or a list whose dictionaries are merged with later keys winning.
Value readPlistMergedDict(VLPlistParseInfo* info);
// The dictionaries of a list merged, later keys winning; null for anything but a list.
Value mergedDictOfList(const Value& list);
