#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLMetricValue.h"

#include <algorithm>
#include <cmath>

namespace {

bool isNear(double a, double b, double tolerance)
{
    return std::fabs(a - b) < tolerance;
}

} // namespace

bool VLFontMaster::isOnMetricsLine_layer(Point point, const VLLayer* layer)
{
    if (isNear(point.y, 0, 0.5)) return true;
    auto glyph = layer ? layer->glyph() : nullptr;
    if (glyph && glyph->category() == "Mark" && isNear(point.x, 0, 0.1)) return true;
    if (!layer) return false;
    auto values = layer->metricsForMaster(*this);
    return std::any_of(values.begin(), values.end(),
                       [&](const auto& value) { return isNear(point.y, value->position(), 0.5); });
}

int8_t VLFontMaster::isOnMetrics_metrics_inLayer(double y, const ValueList& metrics, const VLLayer* layer)
{
    if (isNear(y, 0, 0.5)) return 1;
    for (const auto& value : metrics) {
        if (!value || (layer && layer->isSecondaryMetric(*value))) continue;
        double position = value->position();
        if (isNear(y, position, 0.5)) return 1;
        double edge = position + value->overshoot();
        if (y >= std::min(position, edge) && y <= std::max(position, edge)) return 2;
    }
    return -1;
}
