#include "outline/VLCornerOutline.h"

#include "geometry/VLPenProtocol.h"
#include "model/VLLayer.h"

#include <algorithm>

namespace {

class CornerEmitter {
public:
    CornerEmitter(const VLPath& path, const VLCornerPlacement& placement, double grid)
        : _path(path), _placement(placement), _n(path.count()), _grid(grid), _handleGrid(std::min(grid, 1.0))
    {
    }

    Point onCurve(long i) const { return VLRoundToGrid(placed(i), _grid); }
    Point handle(long i) const { return VLRoundToGrid(placed(i), _handleGrid); }
    bool isOff(long i) const { return _path.nodes()[static_cast<size_t>(i)]->type() == VLNodeType::OFFCURVE; }

private:
    // An end node and the handle beside it follow the fit of their end; the rest keeps its shape.
    Point placed(long i) const
    {
        const AffineTransform* transform = &_placement.inside;
        if (i == 0 || (i == 1 && isOff(1)))
            transform = &_placement.start;
        else if (i == _n - 1 || (i == _n - 2 && isOff(i)))
            transform = &_placement.end;
        return transform->transformPoint(_path.nodes()[static_cast<size_t>(i)]->position());
    }

    const VLPath& _path;
    const VLCornerPlacement& _placement;
    long _n;
    double _grid;
    double _handleGrid;
};

} // namespace

void drawCornerOutline(VLPath::CornerDrawing& drawing, const VLPath& cornerPath, const VLCornerPlacement& placement,
                       double grid)
{
    VLPenProtocol& pen = drawing.pen;
    CornerEmitter corner(cornerPath, placement, grid);
    long n = cornerPath.count();
    if (drawing.isFirst) return pen.moveTo(corner.onCurve(n - 1));
    const VLNodeSegment& in = drawing.in;
    bool curveIn = in.count == 4;
    if (curveIn)
        pen.curveTo_off1_off2(VLRoundToGrid(in.points[0], grid), VLRoundToGrid(in.points[2], std::min(grid, 1.0)),
                              VLRoundToGrid(in.points[1], std::min(grid, 1.0)));
    else
        pen.lineTo(corner.onCurve(0));
    VLQuadraticPoints run;
    for (long i = 1; i < n; ++i) {
        switch (cornerPath.nodes()[static_cast<size_t>(i)]->type()) {
        case VLNodeType::LINE: pen.lineTo(corner.onCurve(i)); break;
        case VLNodeType::CURVE:
            if (i >= 3 && corner.isOff(i - 1) && corner.isOff(i - 2))
                pen.curveTo_off1_off2(corner.onCurve(i), corner.handle(i - 2), corner.handle(i - 1));
            else
                pen.lineTo(corner.onCurve(i));
            break;
        case VLNodeType::QCURVE:
            run.clear();
            for (long k = i - 1; k >= 1 && corner.isOff(k); --k) run.insert(run.begin(), corner.handle(k));
            run.push_back(corner.onCurve(i));
            pen.qCurveTo(run);
            break;
        default: break;
        }
    }
}

void collectExtraShapes(const VLLayer& cornerLayer, const AffineTransform& transform, double grid,
                        std::vector<std::shared_ptr<VLPath>>& extraPaths)
{
    const auto& shapes = cornerLayer.shapes();
    for (size_t i = 1; i < shapes.size(); ++i) {
        auto path = std::dynamic_pointer_cast<VLPath>(shapes[i]);
        if (!path) continue;
        auto copy = path->copyPath();
        copy->transformFast_round(transform, grid);
        extraPaths.push_back(copy);
    }
}
