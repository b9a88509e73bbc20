#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLPath.h"
#include "reader/VLDictKeySource.h"
#include "reader/VLLayerKeys.h"

namespace {

template <typename K> bool appendShapes(VLLayer::Shapes& shapes, const Value& list, uint8_t format)
{
    auto records = readDictRecords<K>(list, false, [&](const Value& element) { return K::initWithDict_format(element, format); });
    if (!records) return false;
    shapes.insert(shapes.end(), records->begin(), records->end());
    return true;
}

// An element with "nodes" is a path, one with "ref" a component; others are left out.
std::shared_ptr<VLShape> shapeFromDict(const Value& element, uint8_t format)
{
    if (!element.isDictionary()) return nullptr;
    if (!element["nodes"].isNull()) return VLPath::initWithDict_format(element, format);
    if (!element["ref"].isNull()) return VLComponent::initWithDict_format(element, format);
    return nullptr;
}

std::optional<VLLayer::Shapes> shapesFromDict(const Value& dict, uint8_t format)
{
    VLLayer::Shapes shapes;
    if (format >= 2) {
        auto records = readDictRecords<VLShape>(dict["shapes"], false,
                                                [&](const Value& element) { return shapeFromDict(element, format); });
        if (!records) return std::nullopt;
        shapes = std::move(*records);
    } else if (!appendShapes<VLPath>(shapes, dict["paths"], format) ||
               !appendShapes<VLComponent>(shapes, dict["components"], format)) {
        return std::nullopt;
    }
    if (shapes.size() > VLLayerMaximumShapes) return std::nullopt;
    return shapes;
}

} // namespace

std::shared_ptr<VLLayer> VLLayer::initWithDict_format(const Value& dict, uint8_t format)
{
    auto layer = init();
    layer->_disableUpdates = true;
    double width = dict["width"].isNull() ? 100.0 : dict["width"].doubleValue();
    layer->_width = width < 0 ? 0.0 : width;
    if (!dict["vertWidth"].isNull()) layer->setVertWidth(static_cast<double>(dict["vertWidth"].integerValue()));
    if (!dict["vertOrigin"].isNull()) layer->setVertOrigin(static_cast<double>(dict["vertOrigin"].integerValue()));
    readDictKeys(dict, [&](VLDictKeySource& source) { readCommonLayerKey(*layer, source, format); });
    auto shapes = shapesFromDict(dict, format);
    if (!shapes) return nullptr;
    if (!shapes->empty()) layer->setShapesFast(std::move(*shapes));
    if (layer->_associatedMasterId.empty()) layer->_associatedMasterId = layer->_layerId;
    return layer;
}
