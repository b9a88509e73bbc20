#pragma once

// Points, sizes and rectangles in font units, y upward.

struct Point {
    double x = 0.0;
    double y = 0.0;
    friend bool operator==(const Point&, const Point&) = default;
};

struct Size {
    double width = 0.0;
    double height = 0.0;
    friend bool operator==(const Size&, const Size&) = default;
};

struct Rect {
    Point origin;
    Size size;
    friend bool operator==(const Rect&, const Rect&) = default;

    double minX() const { return origin.x; }
    double minY() const { return origin.y; }
    double maxX() const { return origin.x + size.width; }
    double maxY() const { return origin.y + size.height; }
    bool isEmpty() const { return size.width <= 0.0 || size.height <= 0.0; }
};

// The union ignores empty rectangles, so a running union can start from the zero rectangle.
Rect unionRect(const Rect& a, const Rect& b);
bool intersectsRect(const Rect& a, const Rect& b);
