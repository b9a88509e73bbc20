#include "model/VLCustomParameter.h"

#include "platform/VLUnsetValue.h"

#include <cmath>
#include <cstdlib>

std::shared_ptr<VLCustomParameter> VLCustomParameter::init()
{
    return std::make_shared<VLCustomParameter>();
}

std::shared_ptr<VLCustomParameter> VLCustomParameter::initWithName_value(const std::optional<std::string>& name,
                                                                         const Value& value)
{
    if (!name) return nullptr;
    auto parameter = init();
    parameter->_name = *name;
    parameter->_value = value;
    parameter->validateValue();
    return parameter;
}

void VLCustomParameter::setValue(const Value& value)
{
    if (value == _value) return;
    _value = value;
    _isValidated = false;
}

// No parameter of this program holds a list of records that would need converting into
// objects, so validation only marks the value as seen.
void VLCustomParameter::validateValueFormat(uint8_t)
{
    _isValidated = true;
}

int64_t VLCustomParameter::integerValue() const
{
    return static_cast<int64_t>(std::llround(_value.doubleValue()));
}

double VLCustomParameter::localizedValueForScript(const std::string& script) const
{
    if (!_value.isString()) return VLUnsetValue;
    const std::string& text = _value.string();
    size_t colon = text.find(':');
    if (colon == std::string::npos) return script == "default" ? _value.doubleValue() : VLUnsetValue;
    if (text.compare(0, colon, script) != 0) return VLUnsetValue;
    return std::strtod(text.c_str() + colon + 1, nullptr);
}

namespace {

ValueArray componentsOf(const Value& value)
{
    if (value.isArray()) return value.array();
    ValueArray parts;
    const std::string& text = value.string();
    for (size_t start = 0;;) {
        size_t comma = text.find(',', start);
        parts.emplace_back(text.substr(start, comma - start));
        if (comma == std::string::npos) return parts;
        start = comma + 1;
    }
}

// A component is the integer of its text form: "128.9" is 128.
double unitComponent(const Value& component)
{
    return static_cast<double>(component.integerValue()) / 255.0;
}

} // namespace

std::optional<Color> VLCustomParameter::colorFromValue(const Value& value)
{
    if (const Color* color = value.color()) return *color;
    if (!value.isString() && !value.isArray()) return std::nullopt;
    ValueArray parts = componentsOf(value);
    auto c = [&](size_t i) { return unitComponent(parts[i]); };
    switch (parts.size()) {
    case 2: return Color::colorWithCalibratedWhite_alpha(c(0), c(1));
    case 3: return Color::colorWithCalibratedRed_green_blue_alpha(c(0), c(1), c(2), 1.0);
    case 4: return Color::colorWithCalibratedRed_green_blue_alpha(c(0), c(1), c(2), c(3));
    case 5: return Color::colorWithDeviceCyan_magenta_yellow_black_alpha(c(0), c(1), c(2), c(3), c(4));
    default: return std::nullopt;
    }
}
