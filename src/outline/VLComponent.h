#pragma once

#include "model/VLElement.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>

class BezierPath;
class VLGlyph;
class VLLayer;
class VLPartProperty;
struct VLPlistParseInfo;

// Another glyph's layer placed in a layer, by name, with a transform of its own.
// A component this many levels below the layer that is drawn shows as a reference to itself
// instead of its glyph: real fonts nest a few levels, and a chain of thousands would exhaust the
// stack.
inline constexpr size_t VLComponentMaximumDepth = 32;
// A layer's outline stops taking in components at this many elements, so that components that
// place many copies of glyphs that place many copies stay within bounded time and memory.
inline constexpr long VLLayerMaximumComposedElements = 20000;

class VLComponent : public VLTransformableElement {
public:
    enum Alignment : int8_t { AlignmentAutomatic = 0, AlignmentForced = 1, AlignmentDisabled = -1 };

    static std::shared_ptr<VLComponent> init() { return std::make_shared<VLComponent>(); }
    // A component record, in its dictionary or its quoted line form.
    static std::shared_ptr<VLComponent> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLComponent";

    // ---- reader/VLShapeDictReader.cpp: the dictionary route, with the keys of the streaming readers; a
    // string is the compact line form. Null for an element that is no such record.
    static std::shared_ptr<VLComponent> initWithDict_format(const Value& dict, uint8_t format);

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

    // ---- outline/VLComponentLayers.cpp: the glyph and the layer the component shows.
    // The glyph componentName names, looked up again when there is none yet or it belongs to
    // another font: a glyph once found is followed through a change of its name.
    std::shared_ptr<VLGlyph> component() const;
    // The glyph's layer for the layer key and master of the layer the component stands in,
    // falling back on the master layer.
    std::shared_ptr<VLLayer> baseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const;
    std::shared_ptr<VLLayer> baseComponentLayer() const { return baseComponentLayerForGlyph(component()); }
    // A colour layer of a lower index of the same palette entry, else the entry's plain layer.
    static std::shared_ptr<VLLayer> fallbackColorLayerKey_layerKey_masterID(VLGlyph& glyph, const std::string& key,
                                                                            const std::string& masterId);
    // The glyph interpolated at the location of the brace layer the component stands in, for a
    // glyph without a layer there.
    std::shared_ptr<VLLayer> _interpolatedLayer_masterID(VLGlyph& glyph, const std::string& masterId) const;
    // The hook for a layer scaled so that its stems keep their weight; no scaler ships with this
    // system, so the layer comes back as it is.
    std::shared_ptr<VLLayer> pluginTransformLayer(const std::shared_ptr<VLLayer>& layer) const { return layer; }

    // ---- interpolation/VLComponentSmartLayer.cpp: part values, and the layer a component of a
    // smart glyph shows at them.

    // Part values by axis id; the key "Group" marks a component that stands for an arrangement
    // inside its glyph and asks for no part values of its own. New settings drop the layer made
    // for the old ones.
    void setPieceSettings(ValueDictionary settings);
    // The value as single precision, or VLUnsetValue for none.
    double pieceValueForKey(const std::string& key) const;
    // VLUnsetValue or more removes the key.
    void setPieceValue_forKey(double value, const std::string& key);
    // The component's part value on the axis: its own setting, else the end of the axis where the
    // base layer of its master stands, else VLUnsetValue.
    double valueForAxis(const VLPartProperty& axis) const;
    // The glyph's layer of the master the component stands in, whatever the kind of layer.
    std::shared_ptr<VLLayer> associatedBaseComponentLayerForGlyph(const std::shared_ptr<VLGlyph>& glyph) const;
    // The layer whose shapes the component draws: the base layer, or for part values the glyph's
    // layers summed for them, kept until the glyph or a glyph its base layer places changes; null
    // when there is no base or the part values can't be met. The layer kept is made and read in
    // this getter, so a component is asked from one thread at a time, as the whole document is.
    std::shared_ptr<VLLayer> componentLayer() const;

    // ---- outline/VLComponentOutlines.cpp: the outline the component shows.
    // A new path: the closed outline of its layer with its own components, placed by the
    // component's transform. Missing, empty and circular references show placeholders.
    std::shared_ptr<BezierPath> bezierPath() const;
    // Without placeholders: nothing where they would stand.
    std::shared_ptr<BezierPath> bezierPathIgnorePlaceholder(bool ignore) const;
    // seen holds the names of the glyphs on the way down from the drawn layer; hasPaths is set
    // when real outline was found, and decides whether an empty base shows its placeholder.
    std::shared_ptr<BezierPath> bezierPathIgnorePlaceholder_seen_hasPaths(bool ignore, std::set<std::string>& seen,
                                                                         bool& hasPaths) const;
    // The open outline of its layer, placed; nothing where the closed outline has a placeholder.
    std::shared_ptr<BezierPath> openBezierPath() const;
    std::shared_ptr<BezierPath> openBezierPath_seen(std::set<std::string>& seen) const;
    // Whether the glyph, or one it places, has paths.
    bool hasAnyPaths() const;
    // depth counts the components above this one.
    bool hasAnyPaths_seen(std::set<std::string>& seen, size_t depth = 0) const;
    // The placed outlines, closed and open.
    Rect bounds() const override;
    // The box of the outline in the component's own space, before its transform.
    Rect _bounds() const;
    // The box of bezierPath, taken through the transform as well where one is given.
    Rect fastBoundsTransform(const AffineTransform* transform) const override;
    // Pens that hold a fillable path receive the outlines, any other pen the component itself.
    void drawInPen_openPen_secondaryPen_extraHandles(VLPenProtocol& pen, VLPenProtocol& openPen, VLPenProtocol*,
                                                     std::vector<Point>*) override;
    void drawSimpleInPen(VLPenProtocol& pen) override;

    // Copies of the stored figures that stand in for a glyph that is missing, one without
    // outline, and one that would contain itself.
    static std::shared_ptr<BezierPath> newMissingBaseGlyphPath();
    static std::shared_ptr<BezierPath> newEmptyBaseGlyphPath();
    static std::shared_ptr<BezierPath> newBadReferencePath();

    // Reads the quoted line form "name m11,m12,m21,m22,tX,tY;options"; the parse info stands
    // behind the opening quote.
    bool parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format);

private:
    // A glyph already on the way down, or one too deep, is not drawn again.
    bool isBeyondReach(const std::set<std::string>& seen) const;
    // What places the base layer's outline: the transform, unless a scaler sized the layer,
    // with the layer's origin anchor moved to the position.
    std::optional<AffineTransform> layerTransform(const VLLayer& base) const;
    std::shared_ptr<VLLayer> specialOrMasterLayer(VLGlyph& glyph, const std::optional<std::string>& key,
                                                  const std::string& masterId) const;
    void placeLayerOutline(BezierPath& path, const VLLayer& base) const;
    std::shared_ptr<BezierPath> closedAndOpenOutline() const;

    std::string _componentName;
    std::optional<std::string> _componentMasterId;
    std::optional<std::string> _anchor;
    int8_t _alignment = AlignmentAutomatic;
    double _keepWeight = 0.0;
    ValueDictionary _pieceSettings;
    mutable std::weak_ptr<VLGlyph> _component;
    // The last interpolated layer, and the glyph's last change when it was made.
    mutable std::shared_ptr<VLLayer> _cachedLayer;
    mutable double _lastChange = 0.0;
};
