#pragma once

#include "reader/VLDictRecords.h"
#include "reader/VLPlistRecords.h"
#include "reader/VLPlistTypedReaders.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string_view>

// The value of one entry of a record's dictionary, answered as the text's readers answer for the
// same value (see VLPlistKeySource). A value of the wrong kind reads as the text's readers read
// one that isn't there.
class VLDictKeySource {
public:
    VLDictKeySource(std::string_view key, const Value& value) : _key(key), _value(value) {}

    template <size_t N> bool is(const char (&key)[N]) const { return _key == std::string_view(key, N - 1); }
    bool hasValue() const { return true; }
    bool atList() const { return _value.isArray(); }

    double number() const { return _value.doubleValue(); }
    int64_t integer() const { return _value.integerValue(); }
    Value string() const { return _value.isString() ? _value : Value(); }
    Point point() const { return pointFromValue(_value).value_or(Point{VLUnsetValue, 0}); }
    Value dict() const { return _value.isDictionary() ? _value : Value(); }
    Value array() const { return _value.isArray() ? _value : Value(); }
    Value mergedDict() const { return _value.isDictionary() ? _value : mergedDictOfList(_value); }
    const Value& value() const { return _value; }
    void transform(double m[6]) const { transformFromValue(_value, m); }

    std::optional<Color> color() const
    {
        double c[10] = {255.0, 255.0, 255.0, 1.0};
        int count = 10;
        if (!numbers(c, &count) || count == 0) return std::nullopt;
        return colorWithComponents_count(c, count);
    }

    bool numbers(double* values, int* count) const
    {
        if (!_value.isArray() || _value.count() > static_cast<size_t>(*count)) return false;
        *count = static_cast<int>(_value.count());
        for (int i = 0; i < *count; ++i) values[i] = _value[static_cast<size_t>(i)].doubleValue();
        return true;
    }

    bool startsWithWord(const char (&word)[3], size_t) const
    {
        return _value.isString() && _value.string().starts_with(std::string_view(word, 2));
    }

    template <typename K> std::optional<std::vector<std::shared_ptr<K>>> objects(uint8_t format) const
    {
        return readDictRecords<K>(_value, false,
                                  [&](const Value& element) { return K::initWithDict_format(element, format); });
    }
    template <typename K> std::shared_ptr<K> object(uint8_t format) const
    {
        return K::initWithDict_format(_value, format);
    }

private:
    std::string_view _key;
    const Value& _value;
};

// Every entry of a record's dictionary through the key table `readKey`. Keys that the table
// doesn't know, and values it can't read, are passed over, as everywhere on this route.
template <typename ReadKey> void readDictKeys(const Value& dict, ReadKey&& readKey)
{
    for (const auto& [key, value] : dict.dictionary()) {
        VLDictKeySource source(key, value);
        readKey(source);
    }
}
