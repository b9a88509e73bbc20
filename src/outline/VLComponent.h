#pragma once

#include "model/VLElement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>

class BezierPath;
class VLGlyph;
class VLLayer;
struct VLPlistParseInfo;

// Another glyph's layer placed in a layer, by name, with a transform of its own.
class VLComponent : public VLTransformableElement {
public:
    enum Alignment : int8_t { AlignmentAutomatic = 0, AlignmentForced = 1, AlignmentDisabled = -1 };

    static std::shared_ptr<VLComponent> init() { return std::make_shared<VLComponent>(); }
    // A component record, in its dictionary or its quoted line form.
    static std::shared_ptr<VLComponent> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLComponent";

    VLShapeType shapeType() const override { return VLShapeType::Component; }
    std::shared_ptr<VLShape> copy() const override { return std::make_shared<VLComponent>(*this); }

    const std::string& componentName() const { return _componentName; }
    void setComponentName(const std::string& name) { _componentName = name; }
    const std::optional<std::string>& componentMasterId() const { return _componentMasterId; }
    void setComponentMasterId(const std::string& masterId) { _componentMasterId = masterId; }
    int8_t alignment() const { return _alignment; }
    void setAlignment(int8_t alignment) { _alignment = alignment; }
    double keepWeight() const { return _keepWeight; }
    void setKeepWeight(double keepWeight) { _keepWeight = keepWeight; }
    const std::optional<std::string>& anchor() const { return _anchor; }
    void setAnchor(const std::string& anchor) { _anchor = anchor; }
    const ValueDictionary& pieceSettings() const { return _pieceSettings; }
    void setPieceSettings(ValueDictionary settings) { _pieceSettings = std::move(settings); }

    // The glyph that componentName names in the component's font.
    std::shared_ptr<VLGlyph> component() const;
    // The glyph's layer for componentMasterId, or for the master of the layer the component
    // stands in.
    std::shared_ptr<VLLayer> baseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const;
    // The layer whose shapes the component draws.
    std::shared_ptr<VLLayer> componentLayer() const { return baseComponentLayerForGlyph(component()); }

    // The outline the component shows, a new path: the closed outline of its layer, placed by
    // the component's transform. A missing glyph or layer shows nothing.
    std::shared_ptr<BezierPath> bezierPath() const;
    // The box of bezierPath, taken through the transform as well where one is given.
    Rect fastBoundsTransform(const AffineTransform* transform) const override;

    // Reads the quoted line form "name m11,m12,m21,m22,tX,tY;options"; the parse info stands
    // behind the opening quote.
    bool parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format);

private:
    std::string _componentName;
    std::optional<std::string> _componentMasterId;
    std::optional<std::string> _anchor;
    int8_t _alignment = AlignmentAutomatic;
    double _keepWeight = 0.0;
    ValueDictionary _pieceSettings;
};
