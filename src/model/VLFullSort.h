#pragma once

#include <cstddef>
#include <utility>
#include <vector>

// A sort for orders that are not total: an element that the comparator places after a later
// one (answer 1) is moved behind it and its place is tried again. The budget of 3n moves ends
// the sort also for a comparator that isn't consistent.
template <typename T, typename Compare>
void fullSort(std::vector<T>& items, Compare compare)
{
    long n = static_cast<long>(items.size());
    if (n < 2) return;
    long budget = 3 * n;
    for (long i = 0;; ++i) {
        for (long j = i + 1; j < n; ++j) {
            if (compare(items[static_cast<size_t>(i)], items[static_cast<size_t>(j)]) != 1) continue;
            T moving = std::move(items[static_cast<size_t>(i)]);
            items.erase(items.begin() + i);
            items.insert(items.begin() + j, std::move(moving));
            --i;
            --budget;
            break;
        }
        if (budget < 1 || n - 1 <= i + 1) return;
    }
}
