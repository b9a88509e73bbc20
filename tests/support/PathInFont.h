#pragma once

#include "geometry/VLBezierPathPen.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/BezierPath.h"

#include <memory>
#include <vector>

// A path in a layer of a glyph of a font, so that it draws with the font's grid.
struct PathInFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLLayer> layer;
    std::shared_ptr<VLPath> path = VLPath::init();

    explicit PathInFont(double grid = 1)
    {
        auto glyph = VLGlyph::initFast();
        glyph->setNameFast("A");
        font->setGlyphs({glyph});
        font->setGridMain(static_cast<uint32_t>(grid * 100));
        font->setGridSubDivision(100);
        layer = glyph->layerForId("m01");
        layer->addShapeFast(path);
    }

    void add(Point p, VLNodeType type) { path->addNodeFastWithPosition_type_connection(p, type, VLNode::SHARP); }

    BezierPath draw()
    {
        BezierPath out;
        VLBezierPathPen pen(out);
        path->drawInPen(pen);
        return out;
    }
};

inline std::vector<Point> pointsOf(const BezierPath& path)
{
    std::vector<Point> points;
    Point p[3];
    for (long i = 0; i < path.elementCount(); ++i) {
        BezierPathElement kind = path.elementAtIndex_associatedPoints(i, p);
        int n = kind == BezierPathElement::CurveTo ? 3 : kind == BezierPathElement::ClosePath ? 0 : 1;
        points.insert(points.end(), p, p + n);
    }
    return points;
}

inline void addCurvedSquare(PathInFont& f)
{
    f.add({100.4, 0.6}, VLNodeType::LINE);
    f.add({150.3, 10.2}, VLNodeType::OFFCURVE);
    f.add({190.7, 50.6}, VLNodeType::OFFCURVE);
    f.add({200.2, 100.8}, VLNodeType::CURVE);
    f.add({0.3, 100.1}, VLNodeType::LINE);
    f.add({0.4, 0.4}, VLNodeType::LINE);
    f.path->setClosed(true);
}
