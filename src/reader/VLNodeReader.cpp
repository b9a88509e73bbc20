#include "outline/VLNode.h"
#include "reader/VLPlistCompact.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistTypedReaders.h"

namespace {

bool startsNumber(uint8_t c)
{
    return c == '-' || isPlistDigit(c);
}

// User data inside a node; a dictionary that does not parse is passed over, but the node must
// not stand still on it.
bool readNodeUserData(VLNode& node, VLPlistParseInfo* info)
{
    const uint8_t* before = info->curr;
    Value userData = parsePlistMutableDict(info);
    if (userData.isDictionary()) node.setUserData(userData.dictionary());
    return info->curr != before;
}

} // namespace

std::shared_ptr<VLNode> VLNode::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto node = init();
    bool ok;
    if (*info->curr == '(') {
        ++info->curr;
        ok = node->readListWithVelmorParser_format(info, format);
    } else {
        if (*info->curr == '"') ++info->curr;
        ok = node->readLineWithVelmorParser(info);
    }
    if (!ok) return nullptr;
    node->setPositionPrecise(node->position());
    return node;
}

bool VLNode::readLineWithVelmorParser(VLPlistParseInfo* info)
{
    if (!skipPlistSpace(info)) return false;
    while (true) {
        skipPlistSpace(info);
        uint8_t c = *info->curr;
        switch (c) {
        case 0:
        case '\n':
        case '\r':
        case ',':
        case ';': return true;
        case '"': ++info->curr; return true;
        case 'L': _type = VLNodeType::LINE, stepPlistBlindly(info, 4); continue;
        case 'C': _type = VLNodeType::CURVE, stepPlistBlindly(info, 5); continue;
        case 'H': _type = VLNodeType::HOBBY, stepPlistBlindly(info, 5); continue;
        case 'Q': _type = VLNodeType::QCURVE, stepPlistBlindly(info, 6); continue;
        case 'O': _type = VLNodeType::OFFCURVE, stepPlistBlindly(info, 8); continue;
        case 'S': _connection = SMOOTH, stepPlistBlindly(info, 6); continue;
        case 'l': _type = VLNodeType::LINE, ++info->curr; continue;
        case 'c': _type = VLNodeType::CURVE, ++info->curr; continue;
        case 'h': _type = VLNodeType::HOBBY, ++info->curr; continue;
        case 'q': _type = VLNodeType::QCURVE, ++info->curr; continue;
        case 'o': _type = VLNodeType::OFFCURVE, ++info->curr; continue;
        case 's': _connection = SMOOTH, ++info->curr; continue;
        case 'n': _type = VLNodeType::LINE, stepPlistBlindly(info, 3); continue;
        case '{': {
            info->inQuotedString = true;
            bool moved = readNodeUserData(*this, info);
            info->inQuotedString = false;
            if (!moved) return false;
            continue;
        }
        default:
            if (!startsNumber(c)) return false;
            double x = parsePlistDoubleValue(info);
            double y = parsePlistDoubleValue(info);
            setPosition({x, y});
        }
    }
}

bool VLNode::readListWithVelmorParser_format(VLPlistParseInfo* info, uint8_t)
{
    if (!skipPlistSpace(info)) return false;
    while (true) {
        if (!skipPlistSpace(info)) return false;
        uint8_t c = *info->curr;
        switch (c) {
        case ',':
        case '\n':
        case '\r': ++info->curr; continue;
        case ')': ++info->curr; return true;
        case 0:
        case ';': return true;
        case '{':
            if (!readNodeUserData(*this, info)) return false;
            continue;
        default: {
            if (applyListLetter(c)) {
                ++info->curr;
                continue;
            }
            if (!startsNumber(c)) return false;
            double x = parsePlistDoubleValue(info);
            stepPlistBlindly(info, 1);
            double y = parsePlistDoubleValue(info);
            setPosition({x, y});
        }
        }
    }
}

bool VLNode::applyListLetter(uint8_t letter)
{
    switch (letter) {
    case 'c': _type = VLNodeType::CURVE; return true;
    case 'h': _type = VLNodeType::HOBBY; return true;
    case 'l': _type = VLNodeType::LINE; return true;
    case 'o': _type = VLNodeType::OFFCURVE; return true;
    case 'q': _type = VLNodeType::QCURVE; return true;
    case 's':
    case 'S': _connection = SMOOTH; return true;
    case 't': _connection = SMOOTH_OTHER; return true;
    case 'C': setOrientationFast(OrientationCenter); return true;
    case 'R': setOrientationFast(OrientationRight); return true;
    case 'X': _locked = true; return true;
    default: return false;
    }
}
