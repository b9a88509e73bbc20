#include "model/VLCustomParameter.h"

std::shared_ptr<VLCustomParameter> VLCustomParameter::initWithDict_format(const Value& dict, uint8_t format)
{
    if (!dict.isDictionary()) return nullptr;
    Value name = dict["name"];
    Value value = dict["value"];
    if (format == 1 && (name.isNull() || value.isNull()) && dict.count() > 0) {
        const auto& first = *dict.dictionary().begin();
        name = Value(first.first);
        value = first.second;
    }
    if (!name.isString()) return nullptr;
    auto parameter = init();
    parameter->_name = name.string();
    parameter->_value = value;
    if (!dict["disabled"].isNull()) parameter->_active = !dict["disabled"].boolValue();
    parameter->validateValueFormat(format);
    return parameter;
}
