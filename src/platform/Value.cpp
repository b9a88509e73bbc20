#include "platform/Value.h"
#include "platform/NumberConversion.h"

#include <cmath>
#include <cstdlib>
#include <sstream>

namespace {

const Value& nullValue()
{
    static const Value null;
    return null;
}

template <typename T> const T& emptyOf()
{
    static const T empty;
    return empty;
}

void describe(const Value& value, std::ostringstream& out)
{
    switch (value.type()) {
    case Value::Type::Null: out << "(null)"; break;
    case Value::Type::Bool: out << (value.boolValue() ? "1" : "0"); break;
    case Value::Type::Integer: out << value.integerValue(); break;
    case Value::Type::Real: out << value.doubleValue(); break;
    case Value::Type::String: out << value.string(); break;
    case Value::Type::Data: {
        static const char* hex = "0123456789abcdef";
        out << '<';
        for (uint8_t b : value.data()) out << hex[b >> 4] << hex[b & 15];
        out << '>';
        break;
    }
    case Value::Type::Array: {
        out << '(';
        const char* separator = "";
        for (const Value& item : value.array()) {
            out << separator;
            describe(item, out);
            separator = ", ";
        }
        out << ')';
        break;
    }
    case Value::Type::Dictionary:
        out << '{';
        for (const auto& [key, item] : value.dictionary()) {
            out << key << " = ";
            describe(item, out);
            out << "; ";
        }
        out << '}';
        break;
    case Value::Type::Color: {
        auto rgba = value.color()->rgba();
        out << "color(" << rgba[0] << ", " << rgba[1] << ", " << rgba[2] << ", " << rgba[3] << ')';
        break;
    }
    }
}

} // namespace

double Value::doubleValue() const
{
    switch (type()) {
    case Type::Bool: return std::get<bool>(_v) ? 1.0 : 0.0;
    case Type::Integer: return static_cast<double>(std::get<int64_t>(_v));
    case Type::Real: return std::get<double>(_v);
    case Type::String: return std::strtod(string().c_str(), nullptr);
    default: return 0.0;
    }
}

int64_t Value::integerValue() const
{
    switch (type()) {
    case Type::Bool: return std::get<bool>(_v) ? 1 : 0;
    case Type::Integer: return std::get<int64_t>(_v);
    case Type::Real: {
        return VLTruncatedInteger(std::get<double>(_v));
    }
    case Type::String: return std::strtoll(string().c_str(), nullptr, 10);
    default: return 0;
    }
}

bool Value::boolValue() const
{
    if (isString()) {
        const std::string& s = string();
        if (s == "YES" || s == "yes" || s == "true" || s == "TRUE") return true;
    }
    return doubleValue() != 0.0;
}

const std::string& Value::string() const
{
    if (auto p = std::get_if<std::shared_ptr<const std::string>>(&_v)) return **p;
    return emptyOf<std::string>();
}

const std::shared_ptr<const std::string>& Value::sharedString() const
{
    if (auto p = std::get_if<std::shared_ptr<const std::string>>(&_v)) return *p;
    static const std::shared_ptr<const std::string> none;
    return none;
}

const ValueData& Value::data() const
{
    if (auto p = std::get_if<std::shared_ptr<ValueData>>(&_v)) return **p;
    return emptyOf<ValueData>();
}

const ValueArray& Value::array() const
{
    if (auto p = std::get_if<std::shared_ptr<ValueArray>>(&_v)) return **p;
    return emptyOf<ValueArray>();
}

const ValueDictionary& Value::dictionary() const
{
    if (auto p = std::get_if<std::shared_ptr<ValueDictionary>>(&_v)) return **p;
    return emptyOf<ValueDictionary>();
}

ValueArray* Value::mutableArray()
{
    auto p = std::get_if<std::shared_ptr<ValueArray>>(&_v);
    return p ? p->get() : nullptr;
}

ValueDictionary* Value::mutableDictionary()
{
    auto p = std::get_if<std::shared_ptr<ValueDictionary>>(&_v);
    return p ? p->get() : nullptr;
}

const Value& Value::operator[](std::string_view key) const
{
    const ValueDictionary& d = dictionary();
    auto it = d.find(key);
    return it == d.end() ? nullValue() : it->second;
}

const Value& Value::operator[](size_t index) const
{
    const ValueArray& a = array();
    return index < a.size() ? a[index] : nullValue();
}

size_t Value::count() const
{
    switch (type()) {
    case Type::Array: return array().size();
    case Type::Dictionary: return dictionary().size();
    case Type::Data: return data().size();
    default: return 0;
    }
}

bool operator==(const Value& a, const Value& b)
{
    bool aNumber = a.isInteger() || a.isReal();
    bool bNumber = b.isInteger() || b.isReal();
    if (aNumber && bNumber) {
        if (a.isInteger() && b.isInteger()) return a.integerValue() == b.integerValue();
        return a.doubleValue() == b.doubleValue();
    }
    if (a.type() != b.type()) return false;
    switch (a.type()) {
    case Value::Type::Null: return true;
    case Value::Type::Bool: return a.boolValue() == b.boolValue();
    case Value::Type::String: return a.string() == b.string();
    case Value::Type::Data: return a.data() == b.data();
    case Value::Type::Array: return a.array() == b.array();
    case Value::Type::Dictionary: return a.dictionary() == b.dictionary();
    case Value::Type::Color: return *a.color() == *b.color();
    default: return false;
    }
}

std::string Value::description() const
{
    std::ostringstream out;
    describe(*this, out);
    return out.str();
}
