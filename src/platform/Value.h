#pragma once

#include "platform/Color.h"

#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

class Value;
using ValueArray = std::vector<Value>;
using ValueDictionary = std::map<std::string, Value, std::less<>>;
using ValueData = std::vector<uint8_t>;

// A property-list value: null, bool, integer, real, string, data, array, dictionary or colour.
// Strings, data, arrays and dictionaries are shared by reference, as the platform's objects are:
// copying a Value is cheap, and a change through one copy is seen by all.
class Value {
public:
    enum class Type { Null, Bool, Integer, Real, String, Data, Array, Dictionary, Color };

    Value() = default;
    Value(std::nullptr_t) {}
    Value(bool b) : _v(b) {}
    Value(int i) : _v(static_cast<int64_t>(i)) {}
    Value(int64_t i) : _v(i) {}
    Value(double d) : _v(d) {}
    Value(const char* s) : _v(std::make_shared<const std::string>(s)) {}
    Value(std::string s) : _v(std::make_shared<const std::string>(std::move(s))) {}
    Value(std::string_view s) : _v(std::make_shared<const std::string>(s)) {}
    // Adopts a string buffer that others may share, such as a uniqued escaped string.
    Value(std::shared_ptr<const std::string> s) : _v(std::move(s)) {}
    Value(ValueData d) : _v(std::make_shared<ValueData>(std::move(d))) {}
    Value(ValueArray a) : _v(std::make_shared<ValueArray>(std::move(a))) {}
    Value(ValueDictionary d) : _v(std::make_shared<ValueDictionary>(std::move(d))) {}
    Value(const Color& c) : _v(c) {}

    Type type() const { return static_cast<Type>(_v.index()); }
    bool isNull() const { return type() == Type::Null; }
    bool isBool() const { return type() == Type::Bool; }
    bool isInteger() const { return type() == Type::Integer; }
    bool isReal() const { return type() == Type::Real; }
    bool isNumber() const { return isBool() || isInteger() || isReal(); }
    bool isString() const { return type() == Type::String; }
    bool isData() const { return type() == Type::Data; }
    bool isArray() const { return type() == Type::Array; }
    bool isDictionary() const { return type() == Type::Dictionary; }
    bool isColor() const { return type() == Type::Color; }

    // Numeric readings in the platform's manner: a number of any kind converts, a string is
    // read as a decimal number, anything else is 0.
    double doubleValue() const;
    int64_t integerValue() const;
    bool boolValue() const;

    // Accessors that expect the type; a value of another type yields an empty instance.
    const std::string& string() const;
    const ValueData& data() const;
    const ValueArray& array() const;
    const ValueDictionary& dictionary() const;
    const Color* color() const { return std::get_if<Color>(&_v); }
    ValueArray* mutableArray();
    ValueDictionary* mutableDictionary();
    const std::shared_ptr<const std::string>& sharedString() const;

    // Dictionary look-up; null when this is not a dictionary or the key is missing.
    const Value& operator[](std::string_view key) const;
    // Array look-up; null past the end.
    const Value& operator[](size_t index) const;
    size_t count() const;

    // Content equality, as the platform's isEqual: an integer equals a real of the same value.
    friend bool operator==(const Value& a, const Value& b);

    // A readable text form, for messages and "%@".
    std::string description() const;

private:
    std::variant<std::monostate, bool, int64_t, double, std::shared_ptr<const std::string>,
                 std::shared_ptr<ValueData>, std::shared_ptr<ValueArray>, std::shared_ptr<ValueDictionary>, Color>
        _v;
};

