#pragma once

#include <algorithm>
#include <cstddef>

// A stretch of positions: where it starts and how many it covers.
struct VLRange {
    size_t location = 0;
    size_t length = 0;
    friend bool operator==(const VLRange&, const VLRange&) = default;

    // The part of the range that lies within count positions.
    VLRange clippedTo(size_t count) const
    {
        size_t start = std::min(location, count);
        return {start, std::min(length, count - start)};
    }
};
