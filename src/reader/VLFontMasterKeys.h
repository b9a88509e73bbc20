#pragma once

#include "model/VLFontMaster.h"
#include "model/VLMetricValue.h"
#include "platform/Value.h"

#include <memory>
#include <vector>

// A master's "axesValues": a list in the order of the font's axes, or a dictionary by axis tag.
// Either waits in the read buffer until the axes are known.
inline void setMasterAxesValues(VLFontMaster& master, const Value& values)
{
    master.setReadBuffer_forKey(values, values.isDictionary() ? "axesValuesDict" : "axesValues");
}

// A master's "metricValues", each as read, wait in the read buffer until the metrics are known.
inline void setMasterMetricValues(VLFontMaster& master, const std::vector<std::shared_ptr<VLMetricValue>>& values)
{
    ValueArray buffer;
    for (const auto& value : values)
        buffer.push_back(Value(ValueDictionary{{"pos", value->position()}, {"over", value->overshoot()}}));
    master.setReadBuffer_forKey(Value(std::move(buffer)), "metricValues");
}
