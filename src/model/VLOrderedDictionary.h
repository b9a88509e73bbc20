#pragma once

#include <algorithm>
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
        _array.erase(std::remove(_array.begin(), _array.end(), key), _array.end());
    }

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
