#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "outline/VLPath.h"
#include "reader/VLLayerKeys.h"
#include "reader/VLPlistKeySource.h"
#include "reader/VLPlistLexical.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistSkippers.h"

#include <array>
#include <vector>

namespace {

bool skipMetricsKeys(VLPlistParseInfo* info)
{
    static constexpr std::array<const char*, 13> keys = {
        "leftMetricsKey",  "metricLeft",      "rightMetricsKey", "metricRight",      "widthMetricsKey",
        "metricWidth",     "vertWidthMetricsKey", "metricVertWidth", "metricVertOrigin", "topMetricsKey",
        "metricTop",       "bottomMetricsKey", "metricBottom"};
    for (const char* key : keys)
        if (matchPlistKey(info, key, std::char_traits<char>::length(key))) return true;
    return false;
}

// Older layers keep "paths" in front of "components": each "paths" list goes before everything
// read so far, the other lists behind it. The lists are joined once at the end, so that a record
// repeating its keys still reads in linear time.
class ShapeLists {
public:
    template <typename K> bool read(VLPlistParseInfo* info, uint8_t format, bool atFront)
    {
        auto shapes = readPlistObjects<K>(info, format);
        if (!shapes) return false;
        _count += shapes->size();
        if (_count > VLLayerMaximumShapes) {
            reportPlistError(info, "Too many entries: %s", K::className);
            return false;
        }
        auto& list = atFront ? _fronts.emplace_back() : _back;
        list.insert(list.end(), shapes->begin(), shapes->end());
        return true;
    }

    bool empty() const { return _fronts.empty() && _back.empty(); }

    VLLayer::Shapes joined()
    {
        VLLayer::Shapes all;
        for (auto front = _fronts.rbegin(); front != _fronts.rend(); ++front)
            all.insert(all.end(), front->begin(), front->end());
        all.insert(all.end(), _back.begin(), _back.end());
        return all;
    }

private:
    std::vector<VLLayer::Shapes> _fronts;
    VLLayer::Shapes _back;
    size_t _count = 0;
};

bool readLayerKey(VLLayer& layer, ShapeLists& shapes, VLPlistParseInfo* info, uint8_t format)
{
    if (skipMetricsKeys(info)) return skipPlistStringValue(info);
    if (matchKey(info, "width")) return layer.setWidthFast(parsePlistDoubleValue(info)), true;
    if (matchKey(info, "vertWidth")) return layer.setVertWidth(parsePlistDoubleValue(info)), true;
    if (matchKey(info, "vertOrigin")) return layer.setVertOrigin(parsePlistDoubleValue(info)), true;
    if (matchKey(info, "shapes")) return shapes.read<VLShape>(info, format, false);
    if (matchKey(info, "paths")) return shapes.read<VLPath>(info, format, true);
    if (matchKey(info, "components")) return shapes.read<VLComponent>(info, format, false);
    if (matchKey(info, "guideLines") || matchKey(info, "guides")) return skipPlistArray(info);
    if (matchKey(info, "annotations")) return skipPlistArray(info);
    // Background layers are not kept.
    if (matchKey(info, "background")) return skipPlistDict(info);
    VLPlistKeySource source(info);
    return readCommonLayerKey(layer, source, format);
}

} // namespace

std::shared_ptr<VLLayer> VLLayer::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format)
{
    auto layer = init();
    layer->_disableUpdates = true;
    layer->_width = 0;
    ShapeLists shapes;
    if (!readPlistRecord(info, [&] { return readLayerKey(*layer, shapes, info, format); })) return nullptr;
    if (!shapes.empty()) layer->setShapesFast(shapes.joined());
    if (layer->_associatedMasterId.empty()) layer->_associatedMasterId = layer->_layerId;
    return layer;
}
