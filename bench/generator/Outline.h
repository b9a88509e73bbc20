#pragma once

#include <vector>

namespace velmor::generator {

struct Point {
    double x = 0.0;
    double y = 0.0;
};

enum class NodeType { Line, Curve, OffCurve };

struct Node {
    Point position;
    NodeType type = NodeType::Line;
    bool smooth = false;
    bool named = false; // carries user data with a name
};

// A closed path: its last node is the start point, as in the document.
struct Path {
    std::vector<Node> nodes;

    void line(Point p) { nodes.push_back({p, NodeType::Line}); }
    // Appends a cubic arc of the ellipse around centre from angle `from` to `to` (radians),
    // good for arcs of up to a quarter turn.
    void arc(Point centre, double rx, double ry, double from, double to, bool smooth);
};

// A location in the design space: weight 100 to 900, width in percent.
struct Location {
    double weight = 400.0;
    double width = 100.0;
};

// Thickness of a vertical stem at a location: what makes masters differ in weight.
double stemWidth(const Location& location);

struct Outline {
    std::vector<Path> paths;
    double advance = 0.0;
};

// Letters the thumbnail shows, simple but recognisable: y up, baseline 0, cap height 700,
// x-height 500, descender -200. Their node structure doesn't depend on the location.
Outline letterA(const Location& location);
Outline letterG(const Location& location);
Outline notdef(const Location& location);

} // namespace velmor::generator
