#include "model/VLMetric.h"
#include "reader/VLPlistRecordReading.h"
#include "reader/VLPlistRecords.h"

std::shared_ptr<VLMetric> VLMetric::initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t)
{
    auto metric = init();
    bool ok = readPlistRecord(info, [&] {
        if (matchKey(info, "name")) {
            metric->setNameOrType(readPlistString(info));
            return true;
        }
        if (matchKey(info, "type")) return metric->setTypeName(readPlistString(info)), true;
        if (matchKey(info, "horizontal")) return metric->setHorizontal(parsePlistBoolValue(info)), true;
        if (matchKey(info, "filter")) return metric->setFilterString(readPlistString(info)), true;
        return false;
    });
    return ok ? metric : nullptr;
}
