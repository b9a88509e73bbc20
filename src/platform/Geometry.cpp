#include "platform/Geometry.h"

#include <algorithm>

Rect unionRect(const Rect& a, const Rect& b)
{
    if (a.isEmpty()) return b;
    if (b.isEmpty()) return a;
    double minX = std::min(a.minX(), b.minX());
    double minY = std::min(a.minY(), b.minY());
    double maxX = std::max(a.maxX(), b.maxX());
    double maxY = std::max(a.maxY(), b.maxY());
    return {{minX, minY}, {maxX - minX, maxY - minY}};
}

bool intersectsRect(const Rect& a, const Rect& b)
{
    if (a.isEmpty() || b.isEmpty()) return false;
    return a.minX() < b.maxX() && b.minX() < a.maxX() && a.minY() < b.maxY() && b.minY() < a.maxY();
}
