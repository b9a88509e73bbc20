#include "model/VLAxis.h"
#include "platform/NumberConversion.h"
#include "model/VLFont.h"
#include "model/VLInstance.h"
#include "model/VLMetricValue.h"

bool VLInstance::postRead_format(VLError*, uint8_t)
{
    setupCustomParametersCache();
    if (!_readBuffer || !_font) return true;
    auto it = _readBuffer->find("interpolations");
    if (it == _readBuffer->end()) return true;
    const Value& interpolations = it->second;
    const auto& axes = _font->axes();
    for (size_t i = 0; i < axes.size() && i < interpolations.count(); ++i)
        setAxisValue_forId(VLMetricValue::initWithPosition(VLSinglePrecision(interpolations[i].doubleValue())),
                           axes[i]->axisId());
    return true;
}
