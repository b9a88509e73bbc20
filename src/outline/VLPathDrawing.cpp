#include "geometry/VLCubic.h"
#include "geometry/VLGeometry.h"
#include "geometry/VLPenProtocol.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLCornerOutline.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "outline/VLPathPen.h"
#include "outline/VLSegmentCrossing.h"
#include "platform/VLUnsetValue.h"

#include <algorithm>
#include <array>
#include <cmath>

Point VLRoundToGrid(Point p, double grid)
{
    if (grid < 0.1) return p;
    auto round = [grid](double c) {
        double r = std::round((c + 1e-07) / grid) * grid;
        return grid > 1 ? std::round(r) : r;
    };
    return {round(p.x), round(p.y)};
}

namespace {

using NodeSegment = VLNodeSegment;

// The component hints of a path, by node index.
using CornerHints = std::vector<std::pair<long, std::shared_ptr<VLHint>>>;

// One full walk of a path into a pen: grid rounding on the way, handles never coarser than a
// whole unit.
class PathWalk {
public:
    PathWalk(const VLPath& path, VLPenProtocol& pen, const CornerHints& hints)
        : _path(path), _pen(pen), _hints(hints), _n(path.count()), _grid(path.gridLength()),
          _handleGrid(std::min(_grid, 1.0))
    {
    }

    void draw()
    {
        if (_path.closed())
            drawClosed();
        else
            drawOpen();
        for (const auto& extra : _extraPaths) extra->drawInPen(_pen);
    }

private:
    Point onCurve(Point p) const { return VLRoundToGrid(p, _grid); }
    Point handle(Point p) const { return VLRoundToGrid(p, _handleGrid); }
    // A HOBBY node ends a cubic whose handles are stored, so it draws as a CURVE node does.
    VLNodeType typeAt(long index) const
    {
        auto node = _path.nodeAtIndex(index);
        if (!node) return VLNodeType::None;
        return node->type() == VLNodeType::HOBBY ? VLNodeType::CURVE : node->type();
    }
    bool exists(long index) const { return _path.nodeAtIndex(index) != nullptr; }

    void drawOpen()
    {
        for (long i = 0; i < _n; ++i) {
            VLNodeType type = typeAt(i);
            if (type == VLNodeType::LINE || type == VLNodeType::CURVE) {
                _pen.moveTo(onCurve(_path.positionAtIndex(i)));
                break;
            }
        }
        for (long i = 0; i < _n; ++i) {
            long skipped = 0;
            if (prepareInOut(i, true, skipped)) drawNode(i, false, false, skipped);
            i += skipped;
        }
        _pen.endPath();
    }

    void drawClosed()
    {
        long i = -1;
        while (typeAt(i) == VLNodeType::OFFCURVE && i > -_n) --i;
        if (typeAt(i) == VLNodeType::OFFCURVE) return drawAllOffCurve();
        // A cap replaces two nodes: the walk starts where one ends, so that each is drawn whole.
        if (isUnderCap(i))
            for (long k = i, turns = 0; turns < _n; ++turns, k = previousOnCurve(k))
                if (isCap(previousOnCurve(k)) && !isCap(k)) {
                    i = k;
                    break;
                }
        // A step at the start could not be cut on the way back to it: start one corner earlier,
        // but only where the cut is made, so that masters a unit apart start on the same node.
        if (isOutsideStep(i) && stepIsCut(i))
            do
                --i;
            while (typeAt(i) == VLNodeType::OFFCURVE && i > -2 * _n);
        long skipped = 0;
        prepareInOut(i, false, skipped);
        drawNode(i, true, false, skipped);
        long end = i + _n + 1;
        for (++i; i < end; ++i) {
            bool isLast = i + 1 == end;
            // The start node is drawn already: its overlap can't be cut on the way back to it.
            if (prepareInOut(i, !isLast, skipped)) drawNode(i, false, isLast, skipped);
            i += skipped;
        }
        _pen.closePath();
    }

    bool stepIsCut(long i) const
    {
        PathWalk probe(*this);
        long skipped = 0;
        probe.prepareInOut(i, true, skipped);
        return skipped > 0;
    }

    // A TrueType contour without on-curve points: one quadratic run, marked as closed.
    void drawAllOffCurve()
    {
        std::vector<Point> points;
        points.reserve(static_cast<size_t>(_n) + 1);
        for (long i = 0; i < _n; ++i) points.push_back(handle(_path.positionAtIndex(i)));
        points.push_back({VLUnsetValue, 0});
        _pen.qCurveTo(points);
        _pen.closePath();
    }

    // Fills the in and out segments of the node at the index; false when there is nothing to draw.
    // skipped tells how many nodes a cut outside overlap removed behind this one.
    bool prepareInOut(long i, bool mayCut, long& skipped)
    {
        skipped = 0;
        VLNodeType type = typeAt(i);
        if (type == VLNodeType::OFFCURVE || type == VLNodeType::None) return false;
        if (_out.count >= 1) {
            _in.count = _out.count;
            std::reverse_copy(_out.points.begin(), _out.points.begin() + _out.count, _in.points.begin());
        } else if (type == VLNodeType::QCURVE) {
            _in = {{_path.positionAtIndex(i)}, 1};
        } else if (type == VLNodeType::CURVE) {
            if (!exists(i - 3)) return false;
            _in = {{_path.positionAtIndex(i), _path.positionAtIndex(i - 1), _path.positionAtIndex(i - 2),
                    _path.positionAtIndex(i - 3)},
                   4};
        } else {
            if (!exists(i - 1)) return false;
            _in = {{_path.positionAtIndex(i), _path.positionAtIndex(i - 1)}, 2};
        }
        if (mayCut && !hintAt(i) && !hintAt(i + 1) && (_in.count == 2 || _in.count == 4) && isOutsideStep(i) && cutOutsideOverlap(i)) {
            skipped = 1;
            return true;
        }
        prepareOut(i);
        return _in.count != 0;
    }

    // A line between two sharp corners with both neighbours on its right is a small outward step.
    bool isOutsideStep(long i) const
    {
        auto a = _path.nodeAtIndex(i);
        auto b = _path.nodeAtIndex(i + 1);
        if (!a || !b || b->type() != VLNodeType::LINE || a->connection() != 0 || b->connection() != 0) return false;
        Point pa = a->position(), pb = b->position();
        Point before = _path.positionAtIndex(i - 1);
        if (typeAt(i - 1) == VLNodeType::OFFCURVE && VLSquareDistance(before, pa) < 1e-8)
            before = _path.pointAtPathTime(static_cast<double>(i) - 0.1);
        Point after = _path.positionAtIndex(i + 2);
        if (typeAt(i + 2) == VLNodeType::OFFCURVE && VLSquareDistance(after, pb) < 1e-8)
            after = _path.pointAtPathTime(static_cast<double>(i) + 2.1);
        auto cross = [&](Point q) { return (pb.x - pa.x) * (q.y - pa.y) - (pb.y - pa.y) * (q.x - pa.x); };
        return cross(before) < 0 && cross(after) < 0;
    }

    // The segment that leaves the step's far corner: a line, or a curve through two off-curve
    // nodes; its points into out, false for anything else.
    bool segmentAfterStep(long i, NodeSegment& out) const
    {
        Point b = _path.positionAtIndex(i + 1);
        if (typeAt(i + 2) == VLNodeType::LINE) {
            out = {{b, _path.positionAtIndex(i + 2)}, 2};
            return true;
        }
        if (typeAt(i + 2) != VLNodeType::OFFCURVE || typeAt(i + 3) != VLNodeType::OFFCURVE ||
            typeAt(i + 4) != VLNodeType::CURVE)
            return false;
        out = {{b, _path.positionAtIndex(i + 2), _path.positionAtIndex(i + 3), _path.positionAtIndex(i + 4)}, 4};
        return true;
    }

    // Where the segments into the step and out of it cross close to it, the step is cut away: the
    // incoming segment ends at the crossing and the outgoing one starts there.
    bool cutOutsideOverlap(long i)
    {
        NodeSegment after;
        if (!segmentAfterStep(i, after)) return false;
        VLCubic in = _in.count == 4 ? VLCubic{_in.points[3], _in.points[2], _in.points[1], _in.points[0]}
                                    : lineAsCubic(_in.points[1], _in.points[0]);
        VLCubic out = after.count == 4 ? VLCubic{after.points[0], after.points[1], after.points[2], after.points[3]}
                                       : lineAsCubic(after.points[0], after.points[1]);
        auto crossing = VLCrossingNearCorner(in, out, _in.count == 2 && after.count == 2);
        if (!crossing) return false;
        VLCubic before = VLCubicSubcurve(in, 0, crossing->inTime);
        VLCubic rest = VLCubicSubcurve(out, crossing->outTime, 1);
        before[3] = rest[0] = crossing->point;
        if (_in.count == 4)
            _in.points = {before[3], before[2], before[1], before[0]};
        else
            _in.points[0] = before[3];
        _out = after.count == 4 ? NodeSegment{{rest[0], rest[1], rest[2], rest[3]}, 4} : NodeSegment{{rest[0], rest[3]}, 2};
        return true;
    }

    void prepareOut(long i)
    {
        VLNodeType next = typeAt(i + 1);
        _out.count = 0;
        if (next == VLNodeType::LINE || next == VLNodeType::QCURVE) {
            _out = {{_path.positionAtIndex(i), _path.positionAtIndex(i + 1)}, 2};
        } else if (next == VLNodeType::OFFCURVE && exists(i + 3)) {
            _out = {{_path.positionAtIndex(i), _path.positionAtIndex(i + 1), _path.positionAtIndex(i + 2),
                     _path.positionAtIndex(i + 3)},
                    4};
        }
    }

    const VLHint* hintAt(long i) const
    {
        long index = ((i % _n) + _n) % _n;
        for (const auto& [node, hint] : _hints)
            if (node == index) return hint.get();
        return nullptr;
    }

    bool isCap(long i) const
    {
        const VLHint* hint = hintAt(i);
        return hint && hint->type() == VLHintType::Cap;
    }

    long previousOnCurve(long i) const
    {
        long k = i - 1;
        while (typeAt(k) == VLNodeType::OFFCURVE && k > i - _n) --k;
        return k;
    }

    long nextOnCurve(long i) const
    {
        long k = i + 1;
        while (typeAt(k) == VLNodeType::OFFCURVE && k < i + _n) ++k;
        return k;
    }

    bool isUnderCap(long i) const { return isCap(i) || isCap(previousOnCurve(i)); }

    // A component hint draws in place of the node; without one, or where it can't be drawn, the
    // node draws as it is. A cap also eats the next node: skipped grows by the nodes it took.
    void drawNode(long i, bool isFirst, bool isLast, long& skipped)
    {
        const VLHint* hint = hintAt(i);
        if (!hint || !drawNodeCorner(const_cast<VLHint&>(*hint), i, isFirst, skipped)) drawNodeDefault(i, isFirst, isLast);
    }

    bool drawNodeCorner(VLHint& hint, long i, bool isFirst, long& skipped)
    {
        auto font = _path.font();
        auto glyph = font ? font->glyphForName(hint.name()) : nullptr;
        auto layer = glyph ? _path.getCornerLayer_font(*glyph, *font) : nullptr;
        if (!layer) return false;
        auto lock = layer->lockMonitor();
        VLPath::CornerDrawing drawing{_pen, _in, _out, isFirst, _extraPaths};
        switch (hint.type()) {
        case VLHintType::Corner: return _path.drawCornerWithPen_cornerLayer_cornerHint(drawing, *layer, hint);
        case VLHintType::Brush: return _path.drawBrushWithPen_cornerLayer_cornerHint(drawing, *layer, hint);
        case VLHintType::Segment: return _path.drawSegmentComponentWithPen_cornerLayer_cornerHint(drawing, *layer, hint);
        case VLHintType::Cap: return drawCap(drawing, *layer, hint, i, skipped);
        default: return false;
        }
    }

    // The cap's outgoing segment starts behind the node that it takes along.
    bool drawCap(VLPath::CornerDrawing& drawing, const VLLayer& layer, VLHint& hint, long i, long& skipped)
    {
        NodeSegment own = _out;
        long next = nextOnCurve(i);
        prepareOut(next);
        if (_path.drawCapWithPen_cornerLayer_cornerHint(drawing, layer, hint)) {
            skipped += next - i;
            return true;
        }
        _out = own;
        return false;
    }

    void drawNodeDefault(long i, bool isFirst, bool isLast)
    {
        if (isFirst) {
            Point start = onCurve(_out.count > 0 ? _out.points[0] : _in.points[1]);
            if (_in.count == 2 || !_pen.respondsToBeginPath()) {
                _pen.moveTo(start);
            } else {
                _pen.beginPath();
                _pen.setLastPoint(start);
            }
            return;
        }
        switch (typeAt(i)) {
        case VLNodeType::QCURVE: return drawQuadraticRun(i);
        case VLNodeType::CURVE:
            return _pen.curveTo_off1_off2(onCurve(_in.points[0]), handle(_in.points[2]), handle(_in.points[1]));
        case VLNodeType::LINE:
            // The closing line is left to closePath.
            if (!isLast) _pen.lineTo(onCurve(_in.points[0]));
            return;
        default: return;
        }
    }

    void drawQuadraticRun(long i)
    {
        std::vector<Point> run{onCurve(_path.positionAtIndex(i))};
        for (long k = i - 1; k > i - _n && typeAt(k) == VLNodeType::OFFCURVE; --k)
            run.insert(run.begin(), handle(_path.positionAtIndex(k)));
        if (run.size() < 2) return _pen.lineTo(run.front());
        _pen.qCurveTo(run);
    }

    const VLPath& _path;
    VLPenProtocol& _pen;
    const CornerHints& _hints;
    std::vector<std::shared_ptr<VLPath>> _extraPaths;
    long _n;
    double _grid;
    double _handleGrid;
    NodeSegment _in;
    NodeSegment _out;
};

} // namespace

void VLPath::drawInPen_openPen_secondaryPen_extraHandles(VLPenProtocol& pen, VLPenProtocol&, VLPenProtocol* secondPen,
                                                         std::vector<Point>*)
{
    if (_nodes.empty()) return;
    if (_nodes.size() == 1) {
        if (pen.ignoreSingleNodes()) return;
        pen.moveTo(_nodes.front()->position());
        if (_closed) pen.closePath();
        return;
    }
    for (const auto& node : _nodes) {
        Point p = node->position();
        if (std::isnan(p.x) || std::isnan(p.y)) node->setPositionFast({0, 0});
    }
    convertSpecialToBezier()->_drawInPen_secondaryPen(pen, secondPen);
}

namespace {

// Segment components move the nodes that corners sit on: the path is bent first, and the corners
// find their nodes again on the bent path by position.
void drawSegmentsThenCorners(const VLPath& path, VLPenProtocol& pen, const CornerHints& segments,
                             const CornerHints& corners)
{
    VLPathPen bentPen;
    PathWalk(path, bentPen, segments).draw();
    const auto& bentLayer = bentPen.layer();
    auto bent = std::dynamic_pointer_cast<VLPath>(bentLayer->objectInShapesAtIndex(0));
    if (!bent) return;
    VLLayer::Hints copies;
    for (const auto& [index, hint] : corners) {
        auto copy = hint->copyHint();
        copy->setOriginKnob({VLUnsetValue, 0});
        copy->setTargetKnob({VLUnsetValue, 0});
        copy->setOriginIndex({});
        copy->setTargetIndex({});
        copies.push_back(copy);
    }
    bentLayer->setHintsFast(copies);
    bentLayer->restoreHints();
    CornerHints found;
    for (const auto& copy : copies)
        if (copy->originIndex().size() >= 2 && copy->originIndex()[0] == 0)
            found.emplace_back(static_cast<long>(copy->originIndex()[1]), copy);
    // The bent path draws its corners from the font and grid of the path it came from.
    bent->setParent(path.parent());
    PathWalk(*bent, pen, found).draw();
}

} // namespace

// Hints whose glyph is missing, or that lost their node, leave the node to the default drawing.
// Hints that survived a flattening (found again by position) were drawn already.
void VLPath::_drawInPen_secondaryPen(VLPenProtocol& pen, VLPenProtocol*)
{
    CornerHints corners, segments;
    auto owner = layer();
    auto font = owner ? owner->font() : nullptr;
    long index = owner ? owner->indexOfObjectInShapes(this) : -1;
    if (font && index >= 0)
        for (const auto& hint : owner->hints()) {
            if (!hint->isDrawnCorner()) continue;
            if (!font->glyphForName(hint->name()) || !hint->updateIndexes()) continue;
            const VLIndexPath& origin = hint->originIndex();
            if (origin.size() < 2 || origin[0] != static_cast<size_t>(index)) continue;
            (hint->type() == VLHintType::Segment ? segments : corners).emplace_back(static_cast<long>(origin[1]), hint);
        }
    if (segments.empty() || corners.empty()) return PathWalk(*this, pen, segments.empty() ? corners : segments).draw();
    drawSegmentsThenCorners(*this, pen, segments, corners);
}

void VLPath::drawSimpleInPen(VLPenProtocol& pen)
{
    if (_nodes.empty()) return;
    long n = count();
    bool withObjects = pen.respondsToObjects();
    std::vector<Point> run;
    long first = 1;
    if (!_closed) {
        pen.moveTo(_nodes.front()->position());
    } else {
        long last = n - 1;
        while (last >= 0 && _nodes[static_cast<size_t>(last)]->type() == VLNodeType::OFFCURVE) --last;
        if (last < 0) {
            for (const auto& node : _nodes) run.push_back(node->position());
            run.push_back({VLUnsetValue, 0});
            pen.qCurveTo(run);
            pen.closePath();
            return;
        }
        const auto& start = _nodes[static_cast<size_t>(last)];
        VLNodeType type = start->type();
        bool curve = type == VLNodeType::CURVE || type == VLNodeType::HOBBY || type == VLNodeType::QCURVE;
        if (curve && pen.respondsToBeginPath()) {
            pen.beginPath();
            pen.setLastPoint(start->position());
        } else {
            pen.moveTo(start->position());
        }
        for (long k = last + 1; k < n; ++k) run.push_back(_nodes[static_cast<size_t>(k)]->position());
        first = 0;
        n = last + 1;
    }
    for (long k = first; k < n; ++k) {
        const auto& node = _nodes[static_cast<size_t>(k)];
        switch (node->type()) {
        case VLNodeType::LINE:
            if (withObjects)
                pen.lineTo_objects(node->position(), {node});
            else
                pen.lineTo(node->position());
            break;
        case VLNodeType::CURVE:
        case VLNodeType::HOBBY:
            if (run.size() >= 2 && withObjects)
                pen.curveTo_off1_off2_objects(node->position(), run[run.size() - 2], run.back(), {node});
            else if (run.size() >= 2)
                pen.curveTo_off1_off2(node->position(), run[run.size() - 2], run.back());
            run.clear();
            break;
        case VLNodeType::OFFCURVE: run.push_back(node->position()); break;
        case VLNodeType::QCURVE:
            run.push_back(node->position());
            pen.qCurveTo(run);
            run.clear();
            break;
        default: break;
        }
    }
    if (_closed)
        pen.closePath();
    else
        pen.endPath();
}

void VLPath::findHint_forPoint_index(const std::vector<std::shared_ptr<VLHint>>& hints, Point point, long index)
{
    for (const auto& hint : hints)
        for (auto reference : {VLHint::Origin, VLHint::Target, VLHint::Other1, VLHint::Other2}) {
            const VLIndexPath& path = hint->indexPath(reference);
            if (path.size() < 2 || path[0] != 0 || static_cast<long>(path[1]) != index) continue;
            hint->setKnob(reference, point);
            hint->setIndexPath(reference, {});
        }
}
