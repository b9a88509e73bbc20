#pragma once

#include "model/VLContainer.h"
#include "platform/Geometry.h"
#include "platform/Value.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

class AffineTransform;
class VLPenProtocol;
struct VLError;
struct VLPlistParseInfo;

// What a layer's list of shapes holds, by the numbers of the format. Group is a shape that holds
// shapes; no kind of this system is one. Elements that stand elsewhere (nodes, anchors, hints)
// have no type: None.
enum class VLShapeType : uint16_t {
    None = 0,
    Path = 2,
    Component = 4,
    Group = 8,
};

// How a stroked shape is drawn; sizes of VLUnsetValue are not given.
struct VLStrokeSettings {
    double width;
    double height;
    double pos = 0.5;
    int capStart = 0;
    int capEnd = 0;
    int join = 2;
    bool fill = false;
    bool mask = false;
};

// No glyph is drawn with this many paths and components in one layer; a layer that has more
// fails to read, with the glyph's other layers.
inline constexpr size_t VLLayerMaximumShapes = 16384;

// Anything placed in a layer: its paths and components, the nodes of a path, its anchors, hints
// and background image. Each kind answers the operations that are pure here, so that a kind that
// forgets one does not build.
class VLShape : public std::enable_shared_from_this<VLShape> {
public:
    virtual ~VLShape() = default;

    // A member of a layer's "shapes": a path or a component, decided by the keys it holds.
    static std::shared_ptr<VLShape> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLShape";
    // Lists of shapes end here, long before a layer's could cost much memory; the elements of a
    // layer that are shapes too (anchors, hints) share the bound, nodes have their own.
    static constexpr size_t maximumInList = VLLayerMaximumShapes;

    virtual VLShapeType shapeType() const = 0;
    virtual std::shared_ptr<VLShape> copy() const = 0;
    virtual Rect bounds() const { return Rect(); }

    // Drawing into pens; shapes without an outline draw nothing. The open pen receives open
    // contours, the secondary pen the outline before corners, extraHandles the corner handles.
    void drawInPen(VLPenProtocol& pen) { drawInPen_openPen_secondaryPen_extraHandles(pen, pen, nullptr, nullptr); }
    virtual void drawInPen_openPen_secondaryPen_extraHandles(VLPenProtocol&, VLPenProtocol&, VLPenProtocol*,
                                                             std::vector<Point>*)
    {
    }
    // The stored outline, with no rounding and no corners.
    virtual void drawSimpleInPen(VLPenProtocol&) {}
    // Bounds from the shape's own points, without building an outline.
    Rect fastBounds() const { return fastBoundsTransform(nullptr); }
    // The transform may be null.
    virtual Rect fastBoundsTransform(const AffineTransform* transform) const = 0;
    // Moves the shape by the transform, from its precise positions, and rounds it to the grid.
    virtual void transformFast_round(const AffineTransform& transform, double grid) = 0;
    // Takes the places of another shape of the same kind; another kind changes nothing.
    virtual void getPositionsFromShape(const VLShape& other) = 0;
    // Resolves what a document stores relative to its own place: a relative "fillPatternFile".
    virtual bool postRead_format(VLError* error, uint8_t format);

    // Navigation: the layer is the parent or the parent's layer.
    std::shared_ptr<VLContainer> parent() const { return _parent.lock(); }
    void setParent(const std::shared_ptr<VLContainer>& parent) { _parent = parent; }
    std::shared_ptr<VLLayer> layer() const;
    std::shared_ptr<VLGlyph> glyph() const;
    std::shared_ptr<VLFont> font() const;

    bool locked() const { return _locked; }
    void setLocked(bool locked);

    const ValueDictionary& attributes() const { return _attributes; }
    // Stores a copy with the numeric attributes that documents may write as text made numbers.
    void setAttributes_format(const ValueDictionary& attributes, uint8_t format);
    Value attributeForKey(const std::string& key) const;
    void removeAttributeForKey(const std::string& key);
    // Colours go through the parameter colour rule, stroke sizes written as text become numbers;
    // a null value removes the key, an equal one changes nothing.
    void setAttribute_forKey(const Value& value, const std::string& key);
    // Stroke settings of the shape's attributes over the defaults; always true.
    bool getStrokeSettings(VLStrokeSettings& settings) const;
    static void getSettings(const ValueDictionary& attributes, VLStrokeSettings& settings);
    // Multiplies the stroke's width and height.
    void scaleAttributes(double factor);

    Value tempDataForKey(const std::string& key) const;
    void setTempData_forKey(const Value& value, const std::string& key);

    // Positions. The plain setter writes position only; the guarded forms replace a coordinate
    // beyond 32000 by 21 and keep the unrounded value in positionPrecise.
    virtual Point position() const { return _position; }
    void setPosition(Point p) { _position = p; }
    virtual Point positionPrecise() const { return _positionPrecise; }
    void setPositionPrecise(Point p) { _positionPrecise = p; }
    void setPositionFast(Point p);
    void setPositionFast_round(Point p, double grid);
    void roundToGrid(double grid);
    void roundToGridFast(double grid);

protected:
    VLShape() = default;
    VLShape(const VLShape& other);
    void tellParent();

    std::weak_ptr<VLContainer> _parent;
    ValueDictionary _attributes;
    bool _locked = false;
    Point _position;
    Point _positionPrecise;
    ValueDictionary _tempData;
};
