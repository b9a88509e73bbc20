#pragma once

#include <cstddef>
#include <optional>
#include <vector>

// A place in a tree of lists: one index per level.
using VLIndexPath = std::vector<size_t>;

inline std::optional<size_t> lastIndex(const VLIndexPath& path)
{
    if (path.empty()) return std::nullopt;
    return path.back();
}

inline VLIndexPath indexPathByAddingOneToLastIndex(VLIndexPath path)
{
    if (!path.empty()) ++path.back();
    return path;
}

// There is no place before the first one of a level, so that path becomes empty.
inline VLIndexPath indexPathBySubtractingOneToLastIndex(VLIndexPath path)
{
    if (path.empty() || path.back() == 0) return {};
    --path.back();
    return path;
}
