#pragma once

#include "model/VLElement.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"

#include <memory>

// A minimal concrete shape for tests of the records that hold shapes.
class TestShape : public VLElement {
public:
    explicit TestShape(VLShapeType type) : _type(type) {}
    VLShapeType shapeType() const override { return _type; }
    std::shared_ptr<VLShape> copy() const override { return std::make_shared<TestShape>(*this); }

private:
    VLShapeType _type;
};

// A closed rectangle of line nodes that starts at its lower-left corner, as drawn counter-clockwise.
inline std::shared_ptr<VLPath> rectanglePath(double x0, double y0, double x1, double y1)
{
    auto path = VLPath::init();
    for (Point p : {Point{x1, y0}, Point{x1, y1}, Point{x0, y1}, Point{x0, y0}})
        path->addNodeFastWithPosition_type_connection(p, VLNodeType::LINE, VLNode::SHARP);
    path->setClosed(true);
    return path;
}
