#include "outline/VLComponent.h"

#include "platform/BezierPath.h"

#include <initializer_list>
#include <iterator>

// Figures in the component's own space, a glyph's height tall, so that a reference that can't
// be drawn is seen where it stands rather than leaving a gap: each is a frame, so that it can't
// be taken for a real outline.
namespace {

BezierPath polygonFrame(std::initializer_list<Point> outer, double inset)
{
    BezierPath path;
    Point centre{};
    for (Point p : outer) centre = {centre.x + p.x / static_cast<double>(outer.size()), centre.y + p.y / static_cast<double>(outer.size())};
    bool first = true;
    for (Point p : outer) {
        first ? path.moveToPoint(p) : path.lineToPoint(p);
        first = false;
    }
    path.closePath();
    // The inner contour runs the other way, so the non-zero fill leaves it open.
    first = true;
    for (auto it = std::rbegin(outer); it != std::rend(outer); ++it) {
        Point p{centre.x + (it->x - centre.x) * inset, centre.y + (it->y - centre.y) * inset};
        first ? path.moveToPoint(p) : path.lineToPoint(p);
        first = false;
    }
    path.closePath();
    return path;
}

} // namespace

std::shared_ptr<BezierPath> VLComponent::newMissingBaseGlyphPath()
{
    static const BezierPath figure = polygonFrame({{0, 0}, {500, 0}, {500, 700}, {0, 700}}, 0.8);
    return figure.copy();
}

std::shared_ptr<BezierPath> VLComponent::newEmptyBaseGlyphPath()
{
    static const BezierPath figure = polygonFrame({{250, 0}, {500, 350}, {250, 700}, {0, 350}}, 0.7);
    return figure.copy();
}

std::shared_ptr<BezierPath> VLComponent::newBadReferencePath()
{
    static const BezierPath figure = polygonFrame({{0, 0}, {500, 0}, {250, 700}}, 0.6);
    return figure.copy();
}
