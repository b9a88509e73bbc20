#include "outline/VLComponent.h"

#include "platform/BezierPath.h"

#include <algorithm>
#include <vector>

// Figures in the component's own space, a glyph's height tall, so that a reference that can't
// be drawn is seen where it stands rather than leaving a gap: each is a frame, so that it can't
// be taken for a real outline.
namespace {

void appendPolygon(BezierPath& path, const std::vector<Point>& corners)
{
    path.moveToPoint(corners.front());
    for (size_t i = 1; i < corners.size(); ++i) path.lineToPoint(corners[i]);
    path.closePath();
}

// The polygon, and inside it the same polygon shrunk towards its centre and run the other way,
// which the non-zero fill leaves open.
BezierPath polygonFrame(std::vector<Point> corners, double inset)
{
    Point centre{};
    for (Point p : corners) centre = {centre.x + p.x, centre.y + p.y};
    centre = {centre.x / static_cast<double>(corners.size()), centre.y / static_cast<double>(corners.size())};
    BezierPath path;
    appendPolygon(path, corners);
    std::reverse(corners.begin(), corners.end());
    for (Point& p : corners) p = {centre.x + (p.x - centre.x) * inset, centre.y + (p.y - centre.y) * inset};
    appendPolygon(path, corners);
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
