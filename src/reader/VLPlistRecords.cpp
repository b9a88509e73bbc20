#include "reader/VLPlistRecords.h"

Value readPlistMergedDict(VLPlistParseInfo* info)
{
    if (skipPlistSpace(info) && *info->curr == '{') return parsePlistMutableDict(info);
    Value list = parsePlistArray(info);
    if (list.isNull()) return list;
    ValueDictionary merged;
    for (const Value& item : list.array())
        for (const auto& [key, value] : item.dictionary()) merged[key] = value;
    return Value(std::move(merged));
}
