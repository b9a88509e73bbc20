#include "outline/VLNode.h"
#include "platform/Log.h"
#include "reader/VLDictRecords.h"

namespace {

// The list form's elements after the coordinates: letters and user data.
bool readListElement(VLNode& node, const Value& element)
{
    if (element.isDictionary()) return node.setUserData(element.dictionary()), true;
    if (!element.isString()) return false;
    for (unsigned char letter : element.string())
        if (!node.applyListLetter(letter)) return false;
    return true;
}

std::shared_ptr<VLNode> nodeFromList(const Value& list)
{
    auto node = VLNode::init();
    node->setPosition({list[size_t{0}].doubleValue(), list[size_t{1}].doubleValue()});
    for (size_t i = 2; i < list.count(); ++i)
        if (!readListElement(*node, list[i])) VLLog("Unknown element in node: " + list[i].description());
    return node;
}

} // namespace

std::shared_ptr<VLNode> VLNode::initWithArray_format(const Value& element, uint8_t format)
{
    std::shared_ptr<VLNode> node;
    if (element.isArray() && element.count() >= 2) node = nodeFromList(element);
    if (element.isString())
        readLineOfString(element.string(), [&](VLPlistParseInfo* info) {
            node = initWithVelmorParser_format(info, format);
            return true;
        });
    if (node) node->setPositionPrecise(node->position());
    return node;
}
