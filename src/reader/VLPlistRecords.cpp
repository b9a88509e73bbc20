#include "reader/VLPlistRecords.h"

Value readPlistMergedDict(VLPlistParseInfo* info)
{
    if (skipPlistSpace(info) && *info->curr == '{') return parsePlistMutableDict(info);
    return mergedDictOfList(parsePlistArray(info));
}

Value mergedDictOfList(const Value& list)
{
    if (!list.isArray()) return Value();
    ValueDictionary merged;
    for (const Value& item : list.array())
        for (const auto& [key, value] : item.dictionary()) merged[key] = value;
    return Value(std::move(merged));
}
