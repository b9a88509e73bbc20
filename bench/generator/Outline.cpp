#include "generator/Outline.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace velmor::generator {

namespace {

constexpr double degrees = std::numbers::pi / 180.0;

void scaleX(Outline& outline, double factor, double shift) {
    for (Path& path : outline.paths)
        for (Node& node : path.nodes)
            node.position.x = node.position.x * factor + shift;
}

// Places the drawn letter between its side bearings at the location's width.
Outline finish(Outline outline, double drawnWidth, double sideBearing, const Location& location) {
    const double factor = location.width / 100.0;
    scaleX(outline, factor, sideBearing);
    outline.advance = drawnWidth * factor + 2.0 * sideBearing;
    return outline;
}

} // namespace

void Path::arc(Point centre, double rx, double ry, double from, double to, bool smooth) {
    const double handle = 4.0 / 3.0 * std::tan((to - from) / 4.0);
    const auto at = [&](double angle, double along) {
        return Point{centre.x + rx * (std::cos(angle) - along * std::sin(angle)),
                     centre.y + ry * (std::sin(angle) + along * std::cos(angle))};
    };
    nodes.push_back({at(from, handle), NodeType::OffCurve});
    nodes.push_back({at(to, -handle), NodeType::OffCurve});
    nodes.push_back({at(to, 0.0), NodeType::Curve, smooth});
}

double stemWidth(const Location& location) { return 22.0 + 0.17 * (location.weight - 100.0); }

// Two legs meeting in a flat apex, a crossbar, and a triangular counter above it.
Outline letterA(const Location& location) {
    const double stem = stemWidth(location);
    const double leg = 0.95 * stem;
    const double width = 560.0 + 0.5 * stem;
    const double half = width / 2.0;
    const double apex = std::max(6.0, 0.35 * stem);
    const double slope = (half - apex) / 700.0;
    const auto innerLeft = [&](double y) { return leg + slope * y; };
    const auto innerRight = [&](double y) { return width - leg - slope * y; };
    const double meet = (width - 2.0 * leg) / (2.0 * slope);
    const double barBottom = 150.0 + 0.05 * stem;
    const double barTop = barBottom + 0.7 * stem;

    Path outer;
    outer.line({0, 0});
    outer.line({leg, 0});
    outer.line({innerLeft(barBottom), barBottom});
    outer.line({innerRight(barBottom), barBottom});
    outer.line({width - leg, 0});
    outer.line({width, 0});
    outer.line({half + apex, 700});
    outer.line({half - apex, 700});

    Path counter; // clockwise, so that it stays a hole under the non-zero rule
    counter.line({innerLeft(barTop), barTop});
    counter.line({half, meet});
    counter.line({innerRight(barTop), barTop});

    return finish({{outer, counter}, 0.0}, width, 15.0 + 0.15 * stem, location);
}

// A single-storey g: an elliptic bowl on the baseline, a stem on its right side and a tail
// that hooks to the left down to the descender.
Outline letterG(const Location& location) {
    const double stem = stemWidth(location);
    const double rx = 230.0 + 0.25 * stem;
    const double sideBearing = 20.0 + 0.1 * stem;
    const Point bowl{rx, 250.0};
    const double ry = 260.0;
    const double pi = std::numbers::pi;

    Path outerBowl;
    for (int quarter = 0; quarter < 4; ++quarter)
        outerBowl.arc(bowl, rx, ry, quarter * pi / 2, (quarter + 1) * pi / 2, true);
    Path innerBowl;
    for (int quarter = 0; quarter < 4; ++quarter)
        innerBowl.arc(bowl, rx - stem, ry - 0.7 * stem, -quarter * pi / 2, -(quarter + 1) * pi / 2, true);

    const double right = bowl.x + rx;
    const double left = right - stem;
    const Point hook{bowl.x, -20.0};
    const double outerRy = 180.0;
    const double innerRx = rx - stem;
    const double innerRy = outerRy - 0.7 * stem;
    const double end = -160.0 * degrees;

    Path tail;
    tail.line({left, 500});
    tail.nodes.push_back({{left, hook.y}, NodeType::Line, true});
    tail.arc(hook, innerRx, innerRy, 0.0, -pi / 2, true);
    tail.arc(hook, innerRx, innerRy, -pi / 2, end, false);
    tail.line({hook.x + rx * std::cos(end), hook.y + outerRy * std::sin(end)});
    tail.arc(hook, rx, outerRy, end, -pi / 2, true);
    tail.arc(hook, rx, outerRy, -pi / 2, 0.0, true);
    tail.line({right, 500});

    return finish({{outerBowl, innerBowl, tail}, 0.0}, 2.0 * rx, sideBearing, location);
}

// The usual box with a box-shaped hole.
Outline notdef(const Location& location) {
    const double stem = 0.6 * stemWidth(location);
    const double width = 400.0;
    Path outer;
    outer.line({0, 0});
    outer.line({width, 0});
    outer.line({width, 700});
    outer.line({0, 700});
    Path inner;
    inner.line({stem, stem});
    inner.line({stem, 700 - stem});
    inner.line({width - stem, 700 - stem});
    inner.line({width - stem, stem});
    return finish({{outer, inner}, 0.0}, width, 50.0, location);
}

} // namespace velmor::generator
