#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLInstance.h"
#include "model/VLMetricValue.h"
#include "platform/NumberConversion.h"

bool VLInstance::postRead_format(VLError*, uint8_t)
{
    setupCustomParametersCache();
    const auto& buffer = readBuffer();
    if (!buffer || !_font) return true;
    auto it = buffer->find("interpolations");
    if (it == buffer->end()) return true;
    const Value& interpolations = it->second;
    const auto& axes = _font->axes();
    for (size_t i = 0; i < axes.size() && i < interpolations.count(); ++i)
        setAxisValue_forId(VLMetricValue::initWithPosition(VLSinglePrecision(interpolations[i].doubleValue())),
                           axes[i]->axisId());
    return true;
}
