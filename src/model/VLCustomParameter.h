#pragma once

#include "platform/Color.h"
#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class VLCustomParameterOwner;

// One open-ended setting of a font, master or instance: a name and a property-list value.
class VLCustomParameter {
public:
    // Named "New Parameter" with the value "New Value".
    static std::shared_ptr<VLCustomParameter> init();
    // Null without a name; the value is validated at once.
    static std::shared_ptr<VLCustomParameter> initWithName_value(const std::optional<std::string>& name,
                                                                  const Value& value);

    // ---- reader/VLCustomParameterDictReader.cpp: the dictionary route. Older documents may
    // write a parameter as a one-entry dictionary of name and value. Null without a name.
    static std::shared_ptr<VLCustomParameter> initWithDict_format(const Value& dict, uint8_t format);

    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    const Value& value() const { return _value; }
    // A changed value must go through validation again.
    void setValue(const Value& value);
    void setValueFast(const Value& value) { _value = value; }
    bool active() const { return _active; }
    void setActive(bool active) { _active = active; }

    // The owner; unretained, so a parameter must not outlive it.
    VLCustomParameterOwner* parent() const { return _parent; }
    void setParent(VLCustomParameterOwner* owner) { _parent = owner; }

    void validateValue() { validateValueFormat(0); }
    void validateValueFormat(uint8_t format);
    bool isValidated() const { return _isValidated; }
    void postRead(uint8_t format) { validateValueFormat(format); }

    // The value as a number rounded to nearest, halves away from zero; 0 when it isn't one.
    int64_t integerValue() const;
    // "script:number" for that script, or a plain number for "default"; VLUnsetValue otherwise.
    double localizedValueForScript(const std::string& script) const;

    // A colour as stored, or its components 0-255 as a list or as text joined by commas:
    // white and alpha, RGB, RGBA, or CMYK and alpha. Anything else gives nothing.
    static std::optional<Color> colorFromValue(const Value& value);

private:
    std::string _name = "New Parameter";
    Value _value = Value("New Value");
    bool _active = true;
    bool _isValidated = false;
    VLCustomParameterOwner* _parent = nullptr;
};
