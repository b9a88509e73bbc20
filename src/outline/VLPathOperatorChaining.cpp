#include "outline/VLPathOperator.h"

#include "geometry/VLGeometry.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <optional>

namespace {

// A quadratic run that closes on itself is a contour of its own.
bool closesItself(const VLPathSegment& segment)
{
    return segment.type() == VLPathSegment::QCurve &&
           (VLPointsWithin(segment.pointAtIndex(0), segment.lastPoint(), 0.01) || segment.lastPoint().x > 100000000);
}

// The segments not yet chained, found by where they start or end without a search through all:
// chaining thousands of segments must not cost the square of their count.
class Remaining {
public:
    explicit Remaining(const VLSegments& segments)
        : _segments(segments), _used(segments.size(), false), _byStart(order(true)), _byEnd(order(false))
    {
    }

    bool isUsed(size_t index) const { return _used[index]; }
    void use(size_t index) { _used[index] = true; }
    void unuse(size_t index) { _used[index] = false; }
    std::vector<size_t> startingAt(Point p) const { return find(_byStart, p, true); }
    bool somethingEndsAt(Point p) const { return !find(_byEnd, p, false).empty(); }

private:
    static Point endOf(const VLPathSegment& segment, bool start)
    {
        return start ? segment.pointAtIndex(0) : segment.lastPoint();
    }

    std::vector<size_t> order(bool start) const
    {
        std::vector<size_t> indexes(_segments.size());
        std::iota(indexes.begin(), indexes.end(), size_t{0});
        std::sort(indexes.begin(), indexes.end(),
                  [&](size_t a, size_t b) { return endOf(_segments[a], start).x < endOf(_segments[b], start).x; });
        return indexes;
    }

    std::vector<size_t> find(const std::vector<size_t>& sorted, Point p, bool start) const
    {
        std::vector<size_t> found;
        auto it = std::lower_bound(sorted.begin(), sorted.end(), p.x - 0.001, [&](size_t k, double x) {
            return endOf(_segments[k], start).x < x;
        });
        for (; it != sorted.end() && endOf(_segments[*it], start).x < p.x + 0.001; ++it)
            if (!_used[*it] && VLPointsWithin(endOf(_segments[*it], start), p, 0.001)) found.push_back(*it);
        std::sort(found.begin(), found.end());
        return found;
    }

    const VLSegments& _segments;
    std::vector<bool> _used;
    std::vector<size_t> _byStart;
    std::vector<size_t> _byEnd;
};

// A segment that starts at one of the starting points and that a chain can come back to.
std::optional<size_t> startAtStartingPoint(const VLSegments& segments, Remaining& remaining,
                                           const std::vector<Point>& startingPoints)
{
    for (Point point : startingPoints)
        for (size_t index : remaining.startingAt(point)) {
            remaining.use(index);
            if (remaining.somethingEndsAt(segments[index].pointAtIndex(0))) return index;
            remaining.unuse(index);
        }
    return std::nullopt;
}

// The next segment, in order, that some chain can arrive at; segments before it lead nowhere
// and go.
std::optional<size_t> takeStart(const VLSegments& segments, Remaining& remaining, size_t& next,
                                const std::vector<Point>& startingPoints)
{
    if (auto start = startAtStartingPoint(segments, remaining, startingPoints)) return start;
    for (; next < segments.size(); ++next) {
        if (remaining.isUsed(next)) continue;
        const VLPathSegment& first = segments[next];
        remaining.use(next);
        if (closesItself(first) || remaining.somethingEndsAt(first.pointAtIndex(0)) ||
            VLPointsWithin(first.lastPoint(), first.pointAtIndex(0), 0.01))
            return next++;
    }
    return std::nullopt;
}

// The turn from the way in (previous to current point) to the way out along the candidate, in
// 0 to 2 pi: ink keeps to the left, so a black contour takes the widest turn and a counter the
// narrowest, which keeps touching contours apart.
size_t bestSegment(const VLSegments& segments, const std::vector<size_t>& candidates, bool isBlackContour,
                   Point current, Point previous)
{
    if (candidates.size() == 1) return candidates.front();
    double best = isBlackContour ? 1.1754943508222875e-38 : 3.4028234663852886e+38;
    std::optional<size_t> winner;
    Point d{current.x - previous.x, current.y - previous.y};
    for (size_t index : candidates) {
        const VLPathSegment& candidate = segments[index];
        if (candidate.lengthFast() < 0.05) return index;
        Point second = candidate.pointAtIndex(1);
        Point e{current.x - second.x, current.y - second.y};
        double angle = std::atan2(d.x * e.y - d.y * e.x, d.x * e.x + d.y * e.y);
        if (angle < 0) angle += 2 * M_PI;
        if (isBlackContour ? angle > best : angle < best) best = angle, winner = index;
    }
    return winner.value_or(candidates.front());
}

void addSegment(const VLPathSegment& segment, VLPath& path)
{
    auto elements = segment.elements();
    if (segment.type() == VLPathSegment::Line) {
        path.addNodeFastWithPosition_type_connection(segment.lastPoint(), VLNodeType::LINE, 0);
        return;
    }
    for (size_t i = 1; i + 1 < elements.size(); ++i)
        path.addNodeFastWithPosition_type_connection(elements[i], VLNodeType::OFFCURVE, 0);
    path.addNodeFastWithPosition_type_connection(
        segment.lastPoint(), segment.type() == VLPathSegment::QCurve ? VLNodeType::QCURVE : VLNodeType::CURVE, 0);
}

// Before the last point of the segment: where the way into its end comes from.
Point pointBeforeEnd(const VLPathSegment& segment)
{
    return segment.pointAtIndex(segment.countOfPoints() - 2);
}

// The path a segment was drawn from, when the walk handed its nodes over.
std::shared_ptr<VLPath> sourcePath(const VLPathSegment& segment)
{
    const auto& objects = segment.objects();
    auto node = objects.empty() ? nullptr : std::dynamic_pointer_cast<VLNode>(objects.front());
    return node ? node->parentPath() : nullptr;
}

// An open chain starts with its first point; a closed one ends there. The new path takes the
// attributes of the path its first segment came from, so that a stroked or coloured contour stays
// so after its overlaps are gone.
std::shared_ptr<VLPath> pathOf(const std::vector<VLPathSegment>& chain, bool closed)
{
    auto path = VLPath::init();
    if (auto source = sourcePath(chain.front())) path->setAttributes_format(source->attributes(), 3);
    if (!closed) path->addNodeFastWithPosition_type_connection(chain.front().pointAtIndex(0), VLNodeType::LINE, 0);
    for (const auto& segment : chain) addSegment(segment, *path);
    path->setClosed(closed);
    return path;
}

std::shared_ptr<VLPath> chainFrom(size_t start, const VLSegments& segments, Remaining& remaining)
{
    Point origin = segments[start].pointAtIndex(0);
    bool isBlack = !(segments[start].options() & VLPathSegment::OptionClockwise);
    std::vector<VLPathSegment> chain{segments[start]};
    while (!VLPointsWithin(chain.back().lastPoint(), origin, 0.01)) {
        const VLPathSegment& current = chain.back();
        auto candidates = remaining.startingAt(current.lastPoint());
        // A chain that finds no way on stays open.
        if (candidates.empty()) return pathOf(chain, false);
        size_t next = bestSegment(segments, candidates, isBlack, current.lastPoint(), pointBeforeEnd(current));
        remaining.use(next);
        chain.push_back(segments[next]);
    }
    return pathOf(chain, true);
}

} // namespace

std::vector<std::shared_ptr<VLPath>> VLPathOperator::pathsFromSegments_startingPoints_italicAngle(
    VLSegments segments, const std::vector<Point>& startingPoints, double italicAngle)
{
    // Stable: the order of segments is only nearly strict, within a tenth of a unit.
    std::stable_sort(segments.begin(), segments.end(), [&](const VLPathSegment& a, const VLPathSegment& b) {
        return a.compare_italicAngle(b, italicAngle) < 0;
    });
    std::vector<std::shared_ptr<VLPath>> paths;
    Remaining remaining(segments);
    size_t next = 0;
    while (auto start = takeStart(segments, remaining, next, startingPoints)) {
        auto path = chainFrom(*start, segments, remaining);
        path->checkConnections();
        paths.push_back(path);
    }
    return paths;
}
