#pragma once

#include "model/VLContainer.h"
#include "model/VLShape.h"
#include "outline/VLNode.h"
#include "outline/VLNodeSegment.h"
#include "platform/AffineTransform.h"

#include <climits>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class VLFont;
class VLGlyph;
class VLHint;
class VLLayer;
class VLPenProtocol;
struct VLPlistParseInfo;

// An outline: an ordered list of nodes, open or closed. In a closed path the last node is the
// start point and the first node follows it, so indexes wrap around.
class VLPath : public VLShape, public VLContainer {
public:
    using Nodes = std::vector<std::shared_ptr<VLNode>>;
    static constexpr long NotFound = LONG_MAX;

    VLPath() { _nodes.reserve(40); }
    static std::shared_ptr<VLPath> init() { return std::make_shared<VLPath>(); }
    // A path record: a dictionary, or the quoted line form of its nodes.
    static std::shared_ptr<VLPath> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLPath";
    bool parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format);

    // ---- reader/VLShapeDictReader.cpp: the dictionary route, with the keys of the streaming readers; a
    // string is the compact line form. Null for an element that is no such record.
    static std::shared_ptr<VLPath> initWithDict_format(const Value& dict, uint8_t format);

    // Drawing: the full walk rounds to the font's grid and removes small outside overlaps between
    // sharp corners; the simple walk draws the stored nodes.
    void drawInPen_openPen_secondaryPen_extraHandles(VLPenProtocol& pen, VLPenProtocol& openPen,
                                                     VLPenProtocol* secondPen, std::vector<Point>* extraHandles) override;
    void drawSimpleInPen(VLPenProtocol& pen) override;
    // Hints that point at node index of the first path turn that reference into a knob at point,
    // so that they survive the replacing of the nodes.
    static void findHint_forPoint_index(const std::vector<std::shared_ptr<VLHint>>& hints, Point point, long index);

    VLShapeType shapeType() const override { return VLShapeType::Path; }
    std::shared_ptr<VLShape> copy() const override { return copyPath(); }
    // Nodes are copied without their user data.
    std::shared_ptr<VLPath> copyPath() const;

    // Container of the nodes.
    std::shared_ptr<VLLayer> layer() const override { return VLShape::layer(); }
    std::shared_ptr<VLGlyph> glyph() const override { return VLShape::glyph(); }
    std::shared_ptr<VLFont> font() const override { return VLShape::font(); }
    void elementDidChange(VLShape*) override { tellParent(); }
    // The font's grid step; 0 without a font.
    double gridLength() const;

    // Node list.
    const Nodes& nodes() const { return _nodes; }
    long count() const { return static_cast<long>(_nodes.size()); }
    long countOfNodes() const { return count(); }
    // Null on an empty path or out of range; a closed path wraps once in either direction.
    std::shared_ptr<VLNode> nodeAtIndex(long index) const;
    // As nodeAtIndex, with the zero point for a missing node.
    Point positionAtIndex(long index) const;
    long indexOfNode(const VLNode* node) const;
    void setNodes(Nodes nodes) { setNodesFast(std::move(nodes)); }
    void setNodesFast(Nodes nodes);
    void addNode(const std::shared_ptr<VLNode>& node);
    void addNodeFast(const std::shared_ptr<VLNode>& node);
    std::shared_ptr<VLNode> addNodeWithPosition_type_connection(Point position, VLNodeType type, uint8_t connection);
    std::shared_ptr<VLNode> addNodeFastWithPosition_type_connection(Point position, VLNodeType type,
                                                                    uint8_t connection);
    void addCurveWithOff1_off2_end_connection(Point off1, Point off2, Point end, uint8_t connection);
    void addCurveFastWithOff1_off2_end_connection(Point off1, Point off2, Point end, uint8_t connection);
    void addNodes(const Nodes& nodes);
    void removeNodes(const Nodes& nodes);
    void insertObject_inNodesAtIndex(std::shared_ptr<VLNode> node, long index);
    void replaceObjectInNodesAtIndex_withObject(long index, const std::shared_ptr<VLNode>& node);
    void removeObjectFromNodesAtIndex(long index);
    // Removes every node equal to the argument, a coincident twin included.
    void removeNode(VLNode& node) { removeNodeFast(node); }
    void removeNodeFast(VLNode& node);

    // Queries.
    bool closed() const { return _closed; }
    // Writes the flag only; setClosePath keeps the nodes consistent with it.
    void setClosed(bool closed) { _closed = closed; }
    // First and last node of an open path; a closed path has neither.
    std::shared_ptr<VLNode> startNode() const;
    std::shared_ptr<VLNode> endNode() const;
    long firstOncurveNodeIndex() const;
    // Null past the end of an open path, and after one turn round a closed path without on-curve nodes.
    std::shared_ptr<VLNode> nextOncurveNodeFromIndex(long index) const;
    std::shared_ptr<VLNode> previousOncurveNodeFromIndex(long index) const;
    std::shared_ptr<VLNode> findStartNode() const;
    long indexOfTTStartNode() const;
    bool hasTrueTypeCurve() const;
    bool hasTrueTypeOutline() const;
    bool hasHobbyCurve() const;
    // One type tag per node, "|" for an open path, then "_".
    std::string compareString() const;
    bool isEqualToPath(const VLPath& other) const;
    // Special nodes are not converted: this path is already made of plain segments.
    std::shared_ptr<VLPath> convertSpecialToBezier() { return std::static_pointer_cast<VLPath>(shared_from_this()); }

    // Tight bounds of the outline; an empty path has x = VLUnsetValue.
    Rect bounds() const override;
    // Bounds of all nodes, off-curve included, within +-30000.
    Rect fastBoundsTransform(const AffineTransform* transform) const override;

    // Degrees of the direction at a node, VLUnsetValue when it can't be had. A negative direction
    // looks backward.
    double tangentAngleAtNode_direction(const VLNode& node, int direction) const;
    double tangentAngleAtNodeAtIndex_direction(long index, int direction) const;
    // A unit vector; x = VLUnsetValue when it can't be had.
    Point unitVectorAtNodeAtIndex(long index) const;
    Point unitVectorAtNodeAtIndex_direction(long index, int direction) const;

    // Editing.
    void transformFast_round(const AffineTransform& transform, double grid) override;
    void getPositionsFromShape(const VLShape& other) override;
    void setClosePath(bool closed) { setClosePath_fixStartNode(closed, false); }
    void setClosePath_fixStartNode(bool closed, bool fixStartNode);
    void makeNodeFirst(const VLNode* node);
    std::shared_ptr<VLNode> findMinNode() const;
    void reverse();
    void reverseFast();
    void checkConnectionForNode(VLNode& node);
    void checkConnections();
    // Moves node to the far side of the centre from the opposite point, keeping its distance.
    static void setSmooth_withCenterNode_oppositeNode(VLNode& node, const VLNode& center, const VLNode& opposite);
    static void setSmooth_withCenterPoint_oppositePoint(VLNode& node, Point center, Point opposite);
    static void setMirrored_withCenterPoint_oppositePoint(VLNode& node, Point center, Point opposite);

    // Path time: i + t is parameter t on the segment that ends at node i.
    Point pointAtPathTime(double pathTime) const;
    std::shared_ptr<VLNode> nearestNodeWithPathTime(double pathTime) const;
    // The quadratic run around the node of the index, in path order, its end points included.
    std::vector<Point> qcurvePointListAtNodeIndex_qCurveSegment_count(long index) const;
    std::shared_ptr<VLNode> insertNodeWithPathTime(double pathTime);
    // The point of the outline nearest to the given one, with its path time if pathTime is not
    // null; the zero point for a path without nodes.
    Point nearestPointOnPath_pathTime(Point point, double* pathTime);

    // ---- outline/VLCornerLayers.cpp: the layer of a corner, cap, brush or segment glyph that a
    // hint on this path draws, and its copy made ready to be placed.
    struct NormalizedCornerLayer {
        std::shared_ptr<VLLayer> layer;
        bool reversed = false;
        AffineTransform transform;
    };
    // The corner glyph's layer of this path's master, or drawn at this brace layer's place.
    std::shared_ptr<VLLayer> getCornerLayer_font(VLGlyph& cornerGlyph, VLFont& font) const;
    // A copy scaled (through the corner space where its glyph has layers for it), with the origin
    // on the zero point and the base line along x; mirrored, its first path runs the other way
    // and "left" and "right" swap. Nothing for points that aren't finite, or corners nested
    // too deep.
    static std::optional<NormalizedCornerLayer> normalizedCornerLayer_scale(const VLLayer& layer, Point scale);

    // ---- outline/VLCornerComponents.cpp, outline/VLCapComponents.cpp, outline/VLBentComponents.cpp:
    // the components that hints put on nodes, drawn in place of the node. in and out are the
    // segments at the node, shortened where the component meets them; extraPaths receives shapes
    // to draw after the contour. Each answers whether it drew; if not, the node draws as usual.
    struct CornerDrawing {
        VLPenProtocol& pen;
        VLNodeSegment& in;
        VLNodeSegment& out;
        bool isFirst;
        std::vector<std::shared_ptr<VLPath>>& extraPaths;
    };
    // The first shape of the layer if it is a path of at least two nodes, closed or open as asked.
    static std::shared_ptr<VLPath> firstPathOfLayer_closed(const VLLayer& layer, bool closed);
    bool drawCornerWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                  const VLHint& hint) const;
    // The cap spans the node and the next one, where out starts.
    bool drawCapWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer, VLHint& hint) const;
    bool drawBrushWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                 const VLHint& hint) const;
    bool drawSegmentComponentWithPen_cornerLayer_cornerHint(CornerDrawing& drawing, const VLLayer& cornerLayer,
                                                            const VLHint& hint) const;

private:
    VLPath(const VLPath&) = default;
    // The full walk of a path made of plain segments.
    void _drawInPen_secondaryPen(VLPenProtocol& pen, VLPenProtocol* secondPen);
    std::shared_ptr<VLContainer> asContainer();
    long wrappedIndex(long index) const;
    bool isOffcurveOnly() const;
    std::shared_ptr<VLNode> insertNodeInQuadraticRun(long index, double t);
    // The step the tangent and unit vector walk to: the first node at least this far away.
    std::shared_ptr<VLNode> tangentNeighbour(long index, int direction, double minimumSquareDistance) const;

    Nodes _nodes;
    bool _closed = false;
};
