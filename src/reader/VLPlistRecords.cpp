#include "reader/VLPlistRecords.h"

bool enterPlistList(VLPlistParseInfo* info, const VLPlistNesting& nesting)
{
    if (!nesting.allowed) {
        reportPlistError(info, "Too deeply nested");
        return false;
    }
    if (!skipPlistSpace(info)) return false;
    if (*info->curr != '(') {
        reportPlistError(info, "Unexpected character '0x%x' (expected “%s”)", *info->curr, "(");
        return false;
    }
    ++info->curr;
    return true;
}

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
