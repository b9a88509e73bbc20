#pragma once

#include <algorithm>
#include <cstddef>
#include <map>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// A dictionary that keeps its keys in insertion order and also answers by index. Changes take
// a monitor on the dictionary, since layers of one glyph may be added from several threads.
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

    size_t count() const { return _array.size(); }
    bool empty() const { return _array.empty(); }

    // The value for key, or a default (null) value.
    V objectForKey(std::string_view key) const
    {
        auto it = _dictionary.find(key);
        return it == _dictionary.end() ? V() : it->second;
    }

    void setObject_forKey(V value, const std::string& key)
    {
        std::lock_guard lock(_monitor);
        auto [it, inserted] = _dictionary.try_emplace(key);
        if (inserted) _array.push_back(key);
        it->second = std::move(value);
    }

    void removeObjectForKey(std::string_view key)
    {
        std::lock_guard lock(_monitor);
        auto it = _dictionary.find(key);
        if (it == _dictionary.end()) return;
        _dictionary.erase(it);
        // A key inserted twice leaves with both of its places.
        _array.erase(std::remove(_array.begin(), _array.end(), key), _array.end());
    }

    // The key goes in at the index; a key that has a value already then stands twice in the
    // order, both places sharing the value. Callers that want a move use moveFromIndex_To.
    void insertObject_forKey_atIndex(V value, const std::string& key, size_t index)
    {
        std::lock_guard lock(_monitor);
        _array.insert(_array.begin() + static_cast<std::ptrdiff_t>(std::min(index, _array.size())), key);
        _dictionary[key] = std::move(value);
    }

    // The place of the first occurrence of the key, or npos.
    size_t indexOfKey(std::string_view key) const
    {
        auto it = std::find(_array.begin(), _array.end(), key);
        return it == _array.end() ? npos : static_cast<size_t>(it - _array.begin());
    }

    void removeObjectAtIndex(size_t index)
    {
        if (const std::string* key = keyAtIndex(index)) removeObjectForKey(std::string(*key));
    }
    void removeLastObject()
    {
        if (!_array.empty()) removeObjectAtIndex(_array.size() - 1);
    }

    // The key at from goes behind the one at to when moving forward, before it when moving back.
    void moveFromIndex_To(size_t from, size_t to)
    {
        if (from >= _array.size() || to >= _array.size() || from == to) return;
        std::string key = _array[from];
        _array.insert(_array.begin() + static_cast<std::ptrdiff_t>(to > from ? to + 1 : to), key);
        _array.erase(_array.begin() + static_cast<std::ptrdiff_t>(to < from ? from + 1 : from));
    }

    void exchangeObjectAtIndex_withObjectAtIndex(size_t a, size_t b)
    {
        if (a < _array.size() && b < _array.size()) std::swap(_array[a], _array[b]);
    }

    // Sorts the keys, not the values.
    template <typename Compare> void sortUsingComparator(Compare compare)
    {
        std::stable_sort(_array.begin(), _array.end(), compare);
    }

    template <typename Block> void enumerateKeysAndObjectsUsingBlock(Block&& block) const
    {
        bool stop = false;
        for (size_t i = 0; i < _array.size() && !stop; ++i) block(_array[i], objectForKey(_array[i]), stop);
    }

    static constexpr size_t npos = static_cast<size_t>(-1);

    void removeAllObjects()
    {
        std::lock_guard lock(_monitor);
        _dictionary.clear();
        _array.clear();
    }

    // Null past the end.
    const std::string* keyAtIndex(size_t index) const { return index < _array.size() ? &_array[index] : nullptr; }
    V objectAtIndex(size_t index) const { return index < _array.size() ? objectForKey(_array[index]) : V(); }

    const std::vector<std::string>& allKeys() const { return _array; }
    std::vector<V> allValues() const
    {
        std::vector<V> values;
        values.reserve(_array.size());
        for (const std::string& key : _array) values.push_back(objectForKey(key));
        return values;
    }

private:
    std::map<std::string, V, std::less<>> _dictionary;
    std::vector<std::string> _array;
    mutable std::recursive_mutex _monitor;
};
