#pragma once

#include "geometry/VLBasePen.h"

class VLLayer;
class VLPath;

// Turns pen calls into the nodes of new paths, which are added to a layer as they are finished.
class VLPathPen : public VLBasePen {
public:
    // Collects into a new empty layer.
    VLPathPen();
    explicit VLPathPen(std::shared_ptr<VLLayer> layer) : _layer(std::move(layer)) {}

    const std::shared_ptr<VLLayer>& layer() const { return _layer; }
    const std::shared_ptr<VLPath>& currentPath() const { return _currPath; }

    void beginPath() override;
    bool respondsToBeginPath() const override { return true; }
    void moveTo(Point point) override { moveTo_connection_selected(point, 0, false); }
    void moveTo_connection_selected(Point point, uint8_t connection, bool selected) override;
    void lineTo(Point point) override { lineTo_connection_selected(point, 0, false); }
    void lineTo_connection_selected(Point point, uint8_t connection, bool selected) override;
    void curveTo_off1_off2(Point end, Point off1, Point off2) override
    {
        curveTo_off1_off2_connection_selected(end, off1, off2, 0, false);
    }
    void curveTo_off1_off2_connection_selected(Point end, Point off1, Point off2, uint8_t connection,
                                               bool selected) override;
    // The hints among the objects are added to the layer and anchored at the curve's end node.
    void curveTo_off1_off2_objects(Point end, Point off1, Point off2, const VLPenObjects& objects) override;
    void _qCurveTo(std::span<const Point> points) override;
    void closePath() override;
    void endPath() override;
    // Adds a copy of the component to the layer as it stands: the pen's transform is not
    // applied, the component keeps its own.
    void addComponent_transformation(const std::shared_ptr<VLShape>& component,
                                     const AffineTransform* transformation) override;
    bool hasContent() const override;
    void setLastPoint(Point point) override;
    void setHints(const std::vector<std::shared_ptr<VLHint>>& hints) override;

private:
    Point transformed(Point p) const { return _transform ? _transform->transformPoint(p) : p; }
    bool hasNodes() const;
    // Adds the current path to the layer and forgets it.
    void finishPath();

    std::shared_ptr<VLPath> _currPath;
    std::shared_ptr<VLLayer> _layer;
};
