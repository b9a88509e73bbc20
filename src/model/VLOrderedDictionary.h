#pragma once

#include "model/VLRange.h"
#include "model/VLValueHelpers.h"
#include "platform/Value.h"

#include <algorithm>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <string_view>
#include <type_traits>
#include <vector>

// A dictionary that keeps its keys in insertion order and also answers by index. Changes take
// a monitor on the dictionary, since layers of one glyph may be added from several threads.
//
// `_array` normally holds each key of `_dictionary` once. insertObject_forKey_atIndex with a key
// that is already there is the one exception: the key then stands twice and its value is shared.
// Removing a key always removes every place where it stands, so the two fields agree again.
template <typename V> class VLOrderedDictionary {
public:
    VLOrderedDictionary() = default;
    VLOrderedDictionary(const VLOrderedDictionary& other)
    {
        std::lock_guard lock(other._monitor);
        _dictionary = other._dictionary;
        _array = other._array;
    }
    VLOrderedDictionary& operator=(const VLOrderedDictionary& other)
    {
        if (this == &other) return *this;
        VLOrderedDictionary copy(other);
        std::lock_guard lock(_monitor);
        _dictionary = std::move(copy._dictionary);
        _array = std::move(copy._array);
        return *this;
    }

    // Takes the other dictionary's keys in its order. With values of type Value, every value is
    // copied deeply, so nested dictionaries stay property-list dictionaries; where the values are
    // themselves ordered dictionaries, each nested dictionary is converted the same way, and
    // values that are not dictionaries have no place and are left out.
    static VLOrderedDictionary initConvertFromDictionary(const ValueDictionary& dictionary)
    {
        VLOrderedDictionary result;
        for (const auto& [key, value] : dictionary) result.setConvertedObject_forKey(value, key);
        return result;
    }
    static VLOrderedDictionary initConvertFromDictionary(const VLOrderedDictionary<Value>& dictionary)
    {
        VLOrderedDictionary result;
        dictionary.enumerateKeysAndObjectsUsingBlock(
            [&](const std::string& key, const Value& value, bool&) { result.setConvertedObject_forKey(value, key); });
        return result;
    }

    size_t count() const { return _array.size(); }
    bool empty() const { return _array.empty(); }

    // The value for key, or a default (null) value.
    V objectForKey(std::string_view key) const
    {
        auto it = _dictionary.find(key);
        return it == _dictionary.end() ? V() : it->second;
    }

    // The value for key; a missing one is made by `make` and stored first.
    template <typename Factory> V objectForKey_defaultClass(const std::string& key, Factory make)
    {
        std::lock_guard lock(_monitor);
        auto it = _dictionary.find(key);
        if (it != _dictionary.end()) return it->second;
        V value = make();
        setObject_forKey(value, key);
        return value;
    }

    void setObject_forKey(V value, const std::string& key)
    {
        std::lock_guard lock(_monitor);
        auto [it, inserted] = _dictionary.try_emplace(key);
        if (inserted) _array.push_back(key);
        it->second = std::move(value);
    }

    // A key that exists already is not moved but stands twice afterwards; moveFromIndex_To is
    // the way to move one. An index past the end appends.
    void insertObject_forKey_atIndex(V value, const std::string& key, size_t index)
    {
        std::lock_guard lock(_monitor);
        _array.insert(_array.begin() + static_cast<long>(std::min(index, _array.size())), key);
        _dictionary[key] = std::move(value);
    }

    void removeObjectForKey(std::string_view key)
    {
        std::lock_guard lock(_monitor);
        auto it = _dictionary.find(key);
        if (it == _dictionary.end()) return;
        // The key may view one of the entries that the removal shifts.
        const std::string owned(key);
        _array.erase(std::remove(_array.begin(), _array.end(), owned), _array.end());
        _dictionary.erase(it);
    }

    void removeObjectAtIndex(size_t index)
    {
        std::lock_guard lock(_monitor);
        if (const std::string* key = keyAtIndex(index)) removeObjectForKey(*key);
    }

    void removeLastObject()
    {
        std::lock_guard lock(_monitor);
        if (!_array.empty()) removeObjectAtIndex(_array.size() - 1);
    }

    // Clipped to the keys there are.
    void removeObjectsInRange(VLRange range)
    {
        std::lock_guard lock(_monitor);
        range = range.clippedTo(_array.size());
        auto first = _array.begin() + static_cast<long>(range.location);
        removeObjectsForKeys(std::vector<std::string>(first, first + static_cast<long>(range.length)));
    }

    // From `from` up to, not including, `to`.
    void removeObjectFromIndex_To(size_t from, size_t to)
    {
        if (to > from) removeObjectsInRange({from, to - from});
    }

    void removeObjectsForKeys(const std::vector<std::string>& keys)
    {
        std::lock_guard lock(_monitor);
        for (const std::string& key : keys) removeObjectForKey(key);
    }

    void removeAllObjects()
    {
        std::lock_guard lock(_monitor);
        _dictionary.clear();
        _array.clear();
    }

    // The key at `from` goes to `to`: inserted behind the target when moving down the list, before
    // it when moving up, and then the old place is removed. Indexes past the end do nothing.
    void moveFromIndex_To(size_t from, size_t to)
    {
        std::lock_guard lock(_monitor);
        if (from >= _array.size() || to >= _array.size()) return;
        std::string key = _array[from];
        _array.insert(_array.begin() + static_cast<long>(to > from ? to + 1 : to), std::move(key));
        _array.erase(_array.begin() + static_cast<long>(to < from ? from + 1 : from));
    }

    void exchangeObjectAtIndex_withObjectAtIndex(size_t index1, size_t index2)
    {
        std::lock_guard lock(_monitor);
        if (index1 < _array.size() && index2 < _array.size()) std::swap(_array[index1], _array[index2]);
    }
    void swipeIndex_with(size_t index1, size_t index2) { exchangeObjectAtIndex_withObjectAtIndex(index1, index2); }

    // Orders the keys, not the values; the comparator answers -1, 0 or 1 for two keys.
    template <typename Comparator> void sortUsingComparator(Comparator comparator)
    {
        std::lock_guard lock(_monitor);
        std::stable_sort(_array.begin(), _array.end(),
                         [&](const std::string& a, const std::string& b) { return comparator(a, b) < 0; });
    }

    // Null past the end.
    const std::string* keyAtIndex(size_t index) const { return index < _array.size() ? &_array[index] : nullptr; }
    V objectAtIndex(size_t index) const { return index < _array.size() ? objectForKey(_array[index]) : V(); }
    std::optional<size_t> indexOfKey(std::string_view key) const
    {
        auto it = std::find(_array.begin(), _array.end(), key);
        if (it == _array.end()) return std::nullopt;
        return static_cast<size_t>(it - _array.begin());
    }

    const std::vector<std::string>& allKeys() const { return _array; }
    std::vector<std::string> reverseKeyEnumerator() const { return {_array.rbegin(), _array.rend()}; }
    std::vector<V> allValues() const
    {
        std::vector<V> values;
        values.reserve(_array.size());
        for (const std::string& key : _array) values.push_back(objectForKey(key));
        return values;
    }

    std::vector<std::string> allKeysForObject(const V& object) const
    {
        std::vector<std::string> keys;
        for (const std::string& key : _array)
            if (objectForKey(key) == object) keys.push_back(key);
        return keys;
    }

    // The values in order, each once.
    std::vector<V> allDistinctValues() const
    {
        std::vector<V> values;
        for (const std::string& key : _array) {
            V value = objectForKey(key);
            if (std::find(values.begin(), values.end(), value) == values.end()) values.push_back(std::move(value));
        }
        return values;
    }

    // block(key, value, stop) in order until it sets stop; it must not change the dictionary.
    template <typename Block> void enumerateKeysAndObjectsUsingBlock(Block block) const
    {
        bool stop = false;
        for (const std::string& key : _array) {
            block(key, _dictionary.find(key)->second, stop);
            if (stop) return;
        }
    }

private:
    void setConvertedObject_forKey(const Value& value, const std::string& key)
    {
        if constexpr (std::is_same_v<V, Value>)
            setObject_forKey(deepMutableCopy(value), key);
        else if (value.isDictionary())
            setObject_forKey(V::initConvertFromDictionary(value.dictionary()), key);
    }

    std::map<std::string, V, std::less<>> _dictionary;
    std::vector<std::string> _array;
    mutable std::recursive_mutex _monitor;
};
