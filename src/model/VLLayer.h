#pragma once

#include "model/VLColorIndex.h"
#include "model/VLContainer.h"
#include "model/VLFactors.h"
#include "model/VLOrderedDictionary.h"
#include "model/VLReadBuffer.h"
#include "platform/Color.h"
#include "platform/Geometry.h"
#include "platform/VLUnsetValue.h"
#include "platform/Value.h"

#include <cstdint>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <set>
#include <string>
#include <vector>

class BezierPath;
class VLAnchor;
class VLAxis;
class VLBackgroundImage;
class VLFontMaster;
class VLHint;
class VLMetricValue;
class VLNode;
class VLPenProtocol;
class VLPartProperty;
class MALocationIndex;
struct VLError;
struct VLPlistParseInfo;

// A layer's metrics as the glyph is set; the eighth number stays zero.
struct VLGlyphMetrics {
    double width = 0, ascender = 0, descender = 0, italicAngle = 0, vertWidth = 0, slantHeight = 0, topHeight = 0,
           unused = 0;
};

// One drawing of a glyph, for one master or one special purpose. Its operations belong to the
// subsystems that give them meaning; each group below names the file that implements it.
class VLLayer : public VLContainer, public std::enable_shared_from_this<VLLayer> {
public:
    using Shapes = std::vector<std::shared_ptr<VLShape>>;
    using ShapeBlock = std::function<void(const std::shared_ptr<VLShape>& shape, const std::vector<size_t>& indexPath,
                                          bool& stop)>;
    using Hints = std::vector<std::shared_ptr<VLHint>>;
    using Anchors = VLOrderedDictionary<std::shared_ptr<VLAnchor>>;

    // ---- model/VLLayer.cpp: the record, its shapes and its states.

    static std::shared_ptr<VLLayer> init();
    static constexpr const char* className = "VLLayer";
    ~VLLayer() override;
    // A copy in ignoring state; the colour comes along only when it is not a palette index and
    // the copy is not thin.
    std::shared_ptr<VLLayer> copyThin(bool thin) const;

    // Navigation.
    std::shared_ptr<VLLayer> layer() const override { return std::const_pointer_cast<VLLayer>(shared_from_this()); }
    std::shared_ptr<VLGlyph> glyph() const override { return _glyph.lock(); }
    std::shared_ptr<VLFont> font() const override;
    // Changes of shapes don't reach the caches: writers call setNeedUpdateShapes themselves.
    void elementDidChange(VLShape*) override {}
    std::shared_ptr<VLGlyph> parent() const { return glyph(); }
    void setParent(const std::shared_ptr<VLGlyph>& glyph) { _glyph = glyph; }

    // Identity.
    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    const std::string& layerId() const { return _layerId; }
    void setLayerId(const std::string& layerId) { _layerId = layerId; }
    const std::string& associatedMasterId() const { return _associatedMasterId; }
    void setAssociatedMasterId(const std::string& masterId) { _associatedMasterId = masterId; }
    bool isMasterLayer() const { return !_layerId.empty() && _layerId == _associatedMasterId; }
    // The font's master of associatedMasterId; the Fast form has no fallback to the first master.
    std::shared_ptr<VLFontMaster> associatedFontMaster() const;
    std::shared_ptr<VLFontMaster> associatedFontMasterFast() const;

    // What makes a layer special (axis rules, coordinates, colour); set as they stand, without
    // the normalisation that shapes do. A null value removes the key.
    // A change of attributes drops the group key; setAttributes drops the layer key as well.
    const ValueDictionary& attributes() const { return _attributes; }
    void setAttributes(ValueDictionary attributes);
    Value attributeForKey(const std::string& key) const;
    void setAttribute_forKey(const Value& value, const std::string& key);
    void removeAttributeForKey(const std::string& key);

    // Shapes.
    const Shapes& shapes() const { return _shapes; }
    void addShape(const std::shared_ptr<VLShape>& shape) { addShapeFast(shape); }
    void addShapeFast(const std::shared_ptr<VLShape>& shape);
    void addShapes(const Shapes& shapes);
    void setShapes(Shapes shapes) { setShapesFast(std::move(shapes)); }
    void setShapesFast(Shapes shapes);
    std::shared_ptr<VLShape> objectInShapesAtIndex(size_t index) const;
    size_t countOfShapes() const { return _shapes.size(); }
    long indexOfObjectInShapes(const VLShape* shape) const;
    // Top-level paths and components, counted once and cached.
    long countOfPaths();
    long countOfComponents();
    void enumerateShapesUsingBlock(const ShapeBlock& block) const;
    void enumeratePathsUsingBlock(const ShapeBlock& block) const;
    void enumerateComponentsUsingBlock(const ShapeBlock& block) const;

    // Anchors by name, the background image, and the place of a smart glyph's layer: which end
    // of each part axis it stands at.
    const Anchors& anchors() const { return _anchors; }
    // Stores the anchors and makes this layer their parent (outline/VLLayerAnchors.cpp).
    void setAnchorsFast(Anchors anchors);
    const std::shared_ptr<VLBackgroundImage>& backgroundImage() const { return _backgroundImage; }
    void setBackgroundImage(std::shared_ptr<VLBackgroundImage> image);
    const ValueDictionary& partSelection() const { return _partSelection; }
    void setPartSelection(ValueDictionary selection) { _partSelection = std::move(selection); }

    // Stored metrics.
    double width() const { return _width; }
    void setWidth(double width);
    // Stores the advance as read, without grid or side-bearing upkeep.
    void setWidthFast(double width) { _width = width; }
    double vertWidth() const { return _vertWidth; }
    void setVertWidth(double v) { _vertWidth = v; }
    double vertOrigin() const { return _vertOrigin; }
    void setVertOrigin(double v) { _vertOrigin = v; }
    double LSB() const { return _LSB; }
    double RSB() const { return _RSB; }
    void setRSB(double rsb) { _RSB = rsb; }

    bool visible() const;
    void setVisible(bool visible);
    uint8_t colorIndex() const { return _colorMarker.colorIndex(); }
    void setColorIndex(int64_t index) { _colorMarker.setColorIndex(index); }
    const std::optional<Color>& color() const { return _colorMarker.color(); }
    void setColor(const Color& color) { _colorMarker.setColor(color); }
    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);

    // Update states: normal, disabled (keys are collected), ignoring (new copies).
    void stopUpdates() { setDisableUpdates(true); }
    void startUpdates() { setDisableUpdates(false); }
    void setDisableUpdates(bool disable);
    void ignoreUpdates();
    void enableFutureUpdates();
    bool isIgnoringUpdates() const { return _ignoreUpdates; }
    bool updatesDisabled() const { return _disableUpdates; }

    // Cache flushes. setNeedUpdateShapes drops the outlines and the shape counts.
    void setNeedUpdateShapes();
    void setNeedUpdateMetrics();
    // Seconds since 2001-01-01 of the last flush of the outline caches.
    double lastUpdate() const { return _lastUpdate; }
    void setLastUpdate(double seconds) { _lastUpdate = seconds; }

    // ---- model/VLLayerKinds.cpp: what the layer is for, told by its ids and attributes.

    // Brace layers stand at "coordinates" between masters, bracket layers replace their master
    // where "axisRules" match; colour layers carry "color", "colorPalette", "sbixSize" or "svg".
    // Setting a kind to false removes its attribute; true adds one where it is missing.
    bool isBraceLayer() const { return _attributes.contains("coordinates"); }
    void setBraceLayer(bool brace);
    bool isBracketLayer() const { return _attributes.contains("axisRules"); }
    void setBracketLayer(bool bracket);
    bool isSmartComponentLayer() const { return !_partSelection.empty(); }
    bool isSpecialLayer() const { return !_attributes.empty() || !_partSelection.empty(); }
    bool isFullColorLayer() const { return _attributes.contains("color"); }
    void setFullColorLayer(bool color);
    bool isColorPaletteLayer() const { return _attributes.contains("colorPalette"); }
    void setColorPaletteLayer(bool palette);
    bool isAppleColorLayer() const { return _attributes.contains("sbixSize"); }
    void setAppleColorLayer(bool apple);
    bool isSVGColorLayer() const { return _attributes.contains("svg"); }
    void setSVGColorLayer(bool svg);
    bool isAnyColorLayer() const;
    bool isAnySpecialLayer() const { return isMasterLayer() || isSpecialLayer() || isAnyColorLayer(); }

    // The identity of a special layer among the layers of its master: its name, fixed the first
    // time it is asked with attributes set. Null for a layer without attributes.
    std::optional<std::string> layerKey() const;
    void resetLayerKey() { _layerKey.reset(); }
    // Layers of one key across the masters interpolate together: the axis rules, then the colour,
    // in words. Empty without attributes.
    std::string layerGroupKey() const;
    // "[100‹wg‹200]"; null unless "axisRules" is a dictionary.
    std::optional<std::string> descriptionForAttributeAxisRules() const;
    // "Color 3", "Color *", "Color", "iColor 128", "svg", or "".
    std::string descriptionForAttributeColor() const;
    // Writes the "coordinates" of each axis that has one into its place of the list, leaving the
    // other places; false without coordinates.
    bool axesValuesList_fontAxes(std::vector<double>& list, const std::vector<std::shared_ptr<VLAxis>>& axes) const;
    // Whether the coordinates lie within every rule of an axis they name; bounds are inclusive.
    static bool rule_matchesCoordinates(const Value& rule, const Value& coordinates);

    // ---- model/VLLayerMetrics.cpp: metrics as the associated master gives them.

    // The associated master's metrics as they apply to this layer's glyph. Without a master the
    // heights and the angle read 0, the metrics by type or name VLUnsetValue.
    double ascender() const;
    double descender() const;
    double italicAngle() const;
    double slantHeight() const;
    double topHeight() const;
    double metricForType(uint8_t type) const;
    // A type name ("x-height") goes by type; any other name to the font's metric of that name.
    double metricForName(const std::string& name) const;
    // The master's values of the vertical metrics that apply to the glyph: those whose filter
    // takes it first, then those without a filter, each group in font order.
    std::vector<std::shared_ptr<VLMetricValue>> metricsForMaster(VLFontMaster& master) const;
    // A value is secondary where another of its type, picked by the master for this glyph,
    // stands in its place.
    bool isSecondaryMetric(const VLMetricValue& value) const;
    // Width and vertical metrics as the glyph is set; direction bit 4 means vertical.
    VLGlyphMetrics glyphMetricsForDirection(uint8_t direction) const;
    VLGlyphMetrics glyphMetrics() const { return glyphMetricsForDirection(0); }

    // ---- reader/VLLayerReader.cpp and reader/VLLayerPostRead.cpp: reading.

    // A layer record as the document holds it; updates stay disabled until the post-read pass.
    static std::shared_ptr<VLLayer> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    // Raw values kept between reading and the post-read pass.
    const std::optional<ValueDictionary>& readBuffer() const { return _readBuffer.values(); }
    void setReadBuffer_forKey(const Value& value, const std::string& key) { _readBuffer.setValue_forKey(value, key); }
    // Runs when the layer has been read and its glyph belongs to the font: turns the attributes
    // into dictionaries by axis id, and for format 1 the old special layer names into attributes.
    // False for axis rules or coordinates that are not lists.
    bool postRead_format(VLError* error, uint8_t format);
    // The kind of special layer an old name describes, '[', ']', '{' or 0 for none, with its
    // numbers written into values, as far as they reach, and their count into count.
    static char _specialLayerInfoAxes_count(const std::string& name, std::vector<double>& values, size_t& count);

    // ---- reader/VLLayerDictReader.cpp: the dictionary route, with the keys of the streaming
    // reader. The older format keeps paths and components in lists of their own.
    static std::shared_ptr<VLLayer> initWithDict_format(const Value& dict, uint8_t format);

    // ---- outline/VLLayerHints.cpp: hints. The changing operations flush the outline caches,
    // since corner hints shape them.

    const Hints& hints() const { return _hints; }
    void setHintsFast(Hints hints);
    void addHint(const std::shared_ptr<VLHint>& hint);
    // Adds the hint unless an equal one is there.
    void addHintCheck(const std::shared_ptr<VLHint>& hint);
    void removeHint(const std::shared_ptr<VLHint>& hint);
    void insertObject_inHintsAtIndex(const std::shared_ptr<VLHint>& hint, size_t index);
    void replaceObjectInHintsAtIndex_withObject(size_t index, const std::shared_ptr<VLHint>& hint);
    void saveHints();
    void updateHints();
    void restoreHints();
    // Path index and node index; the node index wraps in a closed path.
    std::shared_ptr<VLNode> nodeAtIndexPath(const std::vector<size_t>& indexPath) const;

    // ---- outline/VLLayerAnchors.cpp: anchors by name; outline/VLAnchorTraversal.cpp: the
    // anchors of the glyphs that components place, gathered with the layer's own.

    size_t countOfAnchors() const { return _anchors.count(); }
    bool hasAnchors() const { return !_anchors.empty(); }
    std::shared_ptr<VLAnchor> anchorForName(const std::string& name) const;
    // With traverse, among the anchors gathered through components.
    std::shared_ptr<VLAnchor> anchorForName_traverseComponents(const std::string& name, bool traverse) const;
    // Null past the end.
    std::shared_ptr<VLAnchor> objectInAnchorsAtIndex(size_t index) const;
    // Stored under its name, replacing an anchor of that name; an anchor without a name is
    // named "anchor01", "anchor02", ... by the first name that is free. Null does nothing.
    void addAnchor(const std::shared_ptr<VLAnchor>& anchor);
    void setAnchors(Anchors anchors) { setAnchorsFast(std::move(anchors)); }
    // Keyed by name; of two of one name the later stays.
    void setAnchorArray(const std::vector<std::shared_ptr<VLAnchor>>& anchors) { setAnchorArrayFast(anchors); }
    void setAnchorArrayFast(const std::vector<std::shared_ptr<VLAnchor>>& anchors);
    // Moves the anchor of the old name to the new key, and renames it.
    void switchAnchorFastName_withName(const std::string& oldName, const std::string& newName);
    // The own anchors over those of the components' glyphs, moved by the components' transforms
    // and named for the place they come from: "top_2" for the second glyph of a ligature. A mark
    // component's anchors replace those of the base below it. A glyph that is its own component
    // ends the walk, and a layer of ten shapes or more takes nothing from its components.
    std::vector<std::shared_ptr<VLAnchor>> anchorsTraversingComponents() const;
    Anchors anchorDictTraversingComponents() const;

    // ---- outline/VLLayerOutlines.cpp: outlines, cached until setNeedUpdateShapes.

    // The layer's own closed outline, which the caller must not change; the fast form leaves
    // corners and caps undrawn. Open contours are kept apart, in openBezierPath.
    std::shared_ptr<BezierPath> bezierPath() { return _bezierPathFast(false); }
    std::shared_ptr<BezierPath> bezierPathFast() { return _bezierPathFast(true); }
    const std::shared_ptr<BezierPath>& openBezierPath() const { return _outlines.openBezierPath; }
    // A new path with the components added, each through its transform.
    std::shared_ptr<BezierPath> drawBezierPath();
    // seen holds the glyphs of the components on the way down to this layer; hasPaths receives
    // whether the outline holds real paths rather than placeholders.
    std::shared_ptr<BezierPath> drawBezierPath_hasPaths(std::set<std::string>& seen, bool& hasPaths);
    // A new path of the open contours with the components' open outlines; nothing for none.
    std::shared_ptr<BezierPath> drawOpenBezierPath();
    std::shared_ptr<BezierPath> drawOpenBezierPath_seen(std::set<std::string>& seen);
    // Whether drawBezierPath holds real outline.
    bool hasPaths() const { return _outlines.hasPaths; }
    // Paths drawn into a pen and put back as plain paths: corners and components come out
    // decomposed. Always true.
    bool flattenOutlines();
    // Replaces the paths by their cornered outlines; hints that survive find their nodes again.
    void decomposeCorners();
    // Replaces the components by the paths they draw.
    void decomposeComponents();
    // A thin copy without components or corners, from a cached twin that is rebuilt when a
    // component's glyph changed.
    std::shared_ptr<VLLayer> copyDecomposedLayer();
    // The outline drawn into pens; open contours go to the open pen.
    void drawInPen_openPen(VLPenProtocol& pen, VLPenProtocol& openPen);
    // The union of the closed and open outlines with components; the zero rectangle for none.
    Rect bounds();
    // From the shapes' own fast bounds, without the caches; x is VLUnsetValue for nothing.
    Rect fastBounds() const;
    // The latest change of this layer and of the layers its components show.
    double lastOperation() const;
    bool isUpToDate() const;
    // Drops the caches when a glyph that a component shows has changed since they were made.
    void updateCorners();

    // ---- outline/VLCornerLayers.cpp: held while paths draw from this layer as a corner, since
    // one corner layer serves many paths.
    [[nodiscard]] std::unique_lock<std::recursive_mutex> lockMonitor() const;

    // ---- interpolation/VLGlyphCompatibility.cpp

    // The structure that interpolation needs to match: node types, shape order, component and
    // anchor names, corner hints.
    std::string compareString() const;

    // ---- interpolation/VLLayerMasterSelection.cpp: the layers of a smart glyph that make up a
    // component at its part values, and the share of each. The receiver is the layer the component
    // shows without part values; smart settings map axis ids to part values.

    // The part axes of the glyph; a glyph without them has the corner axes if it is a corner, else
    // the font's axes, which have no ends of their own (both read 0).
    std::vector<std::shared_ptr<VLPartProperty>> axes() const;
    // 0 for the setting 1, the bottom of an axis; 1, the top, for any other.
    static int64_t _valueForPartSetting(int64_t setting);
    // The glyph's layers summed for the smart settings, as a new layer without parent; null where
    // the model in force gives no factors. The font's custom values choose the model: "Smart
    // Components Compatibility Mode" the delta model, else "Smart Components MM Mode" the product
    // of linear weights per axis, else the coefficient solver.
    std::shared_ptr<VLLayer> pieceInterpolate(const ValueDictionary& smartSettings) const;
    std::optional<VLFactors> factorsCoeff(const ValueDictionary& smartSettings) const;
    std::optional<VLFactors> factorsMM(const ValueDictionary& smartSettings) const;
    std::optional<VLFactors> factorsMA(const ValueDictionary& smartSettings) const;
    // What the solver and the product of weights share: the collection, a single or missing
    // layer, the target; solve turns the masters' locations and the target, with the ranges
    // they span, into one coefficient per master.
    using SmartSolver = std::function<std::vector<double>(
        const std::vector<std::vector<double>>& masters, const std::vector<double>& target,
        const std::vector<double>& axesMax, const std::vector<double>& axesMin)>;
    std::optional<VLFactors> factorsSolving(const ValueDictionary& smartSettings, bool doBraceLayer, size_t axisCount,
                                            const SmartSolver& solve) const;
    // The glyph's layers that take part, by layer id, and their locations: those of the receiver's
    // master, or of every master where an axis is a weight axis; smart layers at the ends their
    // part selection gives (one per location, the first in the order of layers), and brace layers
    // at their coordinates where asked. axesMax and axesMin widen to take in every location.
    void computeMastersCoeff_hasWeightAxis_doBraceLayer_masterIds_axesMax_axesMin_axisCount_masters_error(
        const std::vector<std::shared_ptr<VLPartProperty>>& axes, bool hasWeightAxis, bool doBraceLayer,
        std::vector<std::string>& masterIds, std::vector<double>& axesMax, std::vector<double>& axesMin,
        size_t axisCount, std::vector<std::vector<double>>& masters, VLError* error) const;
    // The smart settings as a location, the layer's own place for axes they leave out. Values
    // beyond 10000 are logged and read 0; with five axes or more a value is held within half as
    // much again as the masters span beyond their range.
    static void computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(
        const std::vector<std::shared_ptr<VLPartProperty>>& axes, const VLLayer& layer,
        const std::vector<double>& axesMax, const std::vector<double>& axesMin, size_t axisCount,
        const ValueDictionary& smartSettings, std::vector<double>& target);
    // Coefficients by master id, in the order of the masters: those below 0.0005 are dropped and
    // their sum spread over the others, those up to 0.0001 left out. Empty for a count that does
    // not match; null for a coefficient beyond 100.
    static std::optional<VLFactors> computeInterpolationMasters_solution_masterIds(
        const std::vector<std::vector<double>>& masters, std::vector<double> solution,
        const std::vector<std::string>& masterIds);
    // One weight per master: the product over the axes of a linear weight that takes a master at
    // the low end of an axis for the low end, and any other for the top.
    static std::vector<double> computeMM_target_axesMax_axesMin_axisCount(const std::vector<std::vector<double>>& masters,
                                                                          const std::vector<double>& target,
                                                                          const std::vector<double>& axesMax,
                                                                          const std::vector<double>& axesMin,
                                                                          size_t axisCount);
    // The same for the delta model: every smart layer that takes part, each with an object of its
    // own, and the target without limits.
    std::vector<std::shared_ptr<MALocationIndex>>
    computeMasters(const std::vector<std::shared_ptr<VLPartProperty>>& axes) const;
    static std::shared_ptr<MALocationIndex>
    computeTarget_layer_masters_smartSettings(const std::vector<std::shared_ptr<VLPartProperty>>& axes,
                                              const VLLayer& layer,
                                              const std::vector<std::shared_ptr<MALocationIndex>>& masters,
                                              const ValueDictionary& smartSettings);

private:
    // The outlines of outline/VLLayerOutlines.cpp. A flush drops the paths; the corner handles,
    // whether paths were drawn, and the decomposed copy, which checks its own age, stay.
    struct OutlineCaches {
        std::shared_ptr<BezierPath> bezierPath;
        std::shared_ptr<BezierPath> bezierPathFast;
        std::shared_ptr<BezierPath> openBezierPath;
        std::shared_ptr<BezierPath> secondaryPath;
        std::shared_ptr<BezierPath> drawBezierPath;
        std::shared_ptr<BezierPath> drawOpenBezierPath;
        std::vector<Point> extraHandles;
        bool hasPaths = false;
        std::shared_ptr<VLLayer> cachedDecomposedCopy;

        void flush()
        {
            for (auto* path : {&bezierPath, &bezierPathFast, &openBezierPath, &secondaryPath, &drawBezierPath,
                               &drawOpenBezierPath})
                path->reset();
        }
    };

    static void _enumerateShapes_doPaths_doComponents_indexPath_usingBlock(const Shapes& shapes, bool doPaths,
                                                                          bool doComponents,
                                                                          std::vector<size_t>& indexPath,
                                                                          const ShapeBlock& block, bool& stop);
    std::shared_ptr<BezierPath> _bezierPathFast(bool fast);
    void _updateDrawBezierPaths(std::set<std::string>& seen);
    double _lastComponentOperation() const;
    void postReadColorName();
    void postReadSpecialName();
    void postReadShapes(VLError* error, uint8_t format);

    // Identity and content.
    std::string _name;
    std::string _layerId;
    std::string _associatedMasterId;
    std::weak_ptr<VLGlyph> _glyph;
    ValueDictionary _attributes;
    // Computed once; dropped as the attributes change.
    mutable std::optional<std::string> _layerKey;
    mutable std::optional<std::string> _layerGroupKey;
    Shapes _shapes;
    Anchors _anchors;
    Hints _hints;
    std::shared_ptr<VLBackgroundImage> _backgroundImage;
    ValueDictionary _partSelection;
    ValueDictionary _userData;
    VLColorMarker _colorMarker;
    bool _visible = false;

    // Stored metrics, and the side bearings that VLUnsetValue marks as not computed.
    double _width = 600;
    double _vertWidth = -1.0;
    double _vertOrigin = VLUnsetValue;
    double _LSB = VLUnsetValue;
    double _RSB = VLUnsetValue;
    double _TSB = VLUnsetValue;
    double _BSB = VLUnsetValue;

    // Update states, and the guards against re-entering metric upkeep.
    bool _disableUpdates = false;
    bool _ignoreUpdates = false;
    bool _hasDisabledUpdates = false;
    std::set<std::string> _changedKeys;
    bool _isUpdatingMetrics = false;
    bool _isAligning = false;

    VLReadBuffer _readBuffer;

    OutlineCaches _outlines;
    long _numberOfPaths = -1;
    long _numberOfComponents = -1;
    double _lastUpdate = 0.0;
    // The layer's monitor: outlines, shape counts, copies and the compare string are made under it.
    mutable std::recursive_mutex _monitor;
};

// Seconds since 2001-01-01, the platform's reference date, with sub-second precision.
double VLAbsoluteTimeGetCurrent();
