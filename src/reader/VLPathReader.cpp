#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "reader/VLPlistCompact.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

std::shared_ptr<VLPath> VLPath::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto path = init();
    path->_closed = true;
    if (!skipPlistSpace(info)) return nullptr;
    if (*info->curr == '"') {
        ++info->curr;
        return path->parseVelmorLine_format(info, format) ? path : nullptr;
    }
    bool ok = readPlistRecord(info, [&] {
        if (matchKey(info, "closed")) return path->setClosed(parsePlistBoolValue(info)), true;
        if (matchKey(info, "nodes")) {
            auto nodes = readPlistObjects<VLNode>(info, format);
            if (nodes) path->setNodesFast(std::move(*nodes));
            return nodes.has_value();
        }
        if (matchKey(info, "attributes") || matchKey(info, "attr")) {
            Value attributes = parsePlistMutableDict(info);
            path->setAttributes_format(attributes.dictionary(), format);
            return true;
        }
        if (matchKey(info, "locked")) return path->setLocked(parsePlistBoolValue(info)), true;
        return false;
    });
    return ok ? path : nullptr;
}

bool VLPath::parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format)
{
    _closed = true;
    if (*info->curr == '"') return true;
    if (*info->curr == 'o') {
        _closed = false;
        stepPlistBlindly(info, *(info->curr + 1) == ' ' ? 2 : 1);
    }
    Nodes nodes;
    nodes.reserve(30);
    auto stops = [](uint8_t c) { return c == '\n' || c == '"' || c == ')' || c == ','; };
    while (!atPlistEnd(info) && !stops(*info->curr)) {
        if (nodes.size() == VLPathMaximumNodes) {
            reportPlistError(info, "Too many entries: %s", VLNode::className);
            return false;
        }
        if (!takePlistRecord(info, VLNode::className)) return false;
        const uint8_t* before = info->curr;
        if (auto node = VLNode::initWithVelmorParser_format(info, format)) nodes.push_back(std::move(node));
        if (*info->curr == ';') ++info->curr;
        // A node that can't be read is passed over, one byte at a time if need be.
        if (info->curr == before) ++info->curr;
    }
    setNodesFast(std::move(nodes));
    return true;
}
