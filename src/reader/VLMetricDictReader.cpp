#include "model/VLMetric.h"

void VLMetric::setNameOrType(const std::string& name)
{
    if (uint8_t type = typeForTypeName(name))
        setType(type);
    else
        setName(name);
}

std::shared_ptr<VLMetric> VLMetric::initWithDict_format(const Value& dict, uint8_t)
{
    auto metric = init();
    if (dict["name"].isString()) metric->setNameOrType(dict["name"].string());
    if (dict["type"].isString()) metric->setTypeName(dict["type"].string());
    if (!dict["horizontal"].isNull()) metric->setHorizontal(dict["horizontal"].boolValue());
    if (dict["filter"].isString()) metric->setFilterString(dict["filter"].string());
    return metric;
}
