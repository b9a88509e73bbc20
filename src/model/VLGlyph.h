#pragma once

#include "model/VLColorIndex.h"
#include "model/VLFactors.h"
#include "model/VLOrderedDictionary.h"
#include "platform/Color.h"
#include "platform/Predicate.h"
#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

class BezierPath;
class VLFont;
class VLFontMaster;
class VLInstance;
class VLLayer;
class VLPartProperty;
struct VLError;
struct VLPlistParseInfo;

// Each group of bracket layers takes in every master without a layer in it, so the groups of a
// glyph of many distinct axis rules grow with rules times masters. Real glyphs hold a few
// thousand ids at most; a glyph whose groups would hold more has its masters drawn apart.
inline constexpr size_t VLLayerGroupsMaximumMembers = 1 << 18;

// One glyph: its identity and its layers, which are read from the document on first need.
class VLGlyph : public std::enable_shared_from_this<VLGlyph>, public PredicateSubject {
public:
    using Layers = VLOrderedDictionary<std::shared_ptr<VLLayer>>;

    // A glyph for editing: named "newGlyph", with a new UUID as id.
    static std::shared_ptr<VLGlyph> init();
    // A glyph for the readers: no name, its own address as id.
    static std::shared_ptr<VLGlyph> initFast();
    ~VLGlyph() override;
    // The first pass over a glyph record: its own keys, with the layers only noted for later.
    // The parse info stands behind the opening brace and must outlive the glyph's layer read.
    static std::shared_ptr<VLGlyph> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    // A glyph file of a package; the glyph keeps the file's parse state for its layers.
    static std::shared_ptr<VLGlyph> initWithFile_format_error(const std::string& path, uint8_t format, VLError* error);
    // The same for the file of the name inside an open folder; errors name it by path.
    static std::shared_ptr<VLGlyph> initWithFileInFolder_name_path_format_error(int folder, const std::string& name,
                                                                                const std::string& path,
                                                                                uint8_t format, VLError* error);
    static constexpr const char* className = "VLGlyph";
    // Hands the reading of the layers from the parse state `from`, a copy that read the glyph, to
    // `to`, a state over the same text.
    void replaceParseInfo(const VLPlistParseInfo* from, VLPlistParseInfo* to)
    {
        if (_pInfo == from) _pInfo = to;
    }
    // A copy without parent that keeps the id, with copies of all layers.
    std::shared_ptr<VLGlyph> copy();

    // Navigation.
    std::shared_ptr<VLFont> parent() const { return _parent.lock(); }
    std::shared_ptr<VLFont> font() const { return parent(); }
    void setParent(const std::shared_ptr<VLFont>& font) { _parent = font; }

    // Identity.
    const std::string& name() const { return _name; }
    // Renames unless the name is empty or unchanged; the font's name index follows unless the
    // font disables nice names.
    void setName(const std::string& name);
    void setName_changeName_update_validate(const std::string& name, bool changeName, bool update, bool validate);
    void setNameFast(const std::string& name) { _name = name; }
    void setNameFastCache(const std::string& name);
    const std::string& id() const { return _id; }
    void setId(const std::string& id) { _id = id; }
    uint64_t glyphId() const { return _glyphId; }
    void setGlyphId(uint64_t glyphId) { _glyphId = glyphId; }

    // Code points as upper-case hexadecimal text.
    const std::vector<std::string>& unicodes() const { return _unicodes; }
    // The first code point, or "" without one.
    std::string unicode() const { return _unicodes.empty() ? std::string() : _unicodes.front(); }
    // The changing operations keep the font's code point index in step.
    void setUnicode(const std::string& code);
    void setUnicodes(const std::vector<std::string>& codes);
    void addUnicode(const std::string& code);
    void removeUnicode(const std::string& code);
    // Codes of fewer than three digits are dropped; the font is not told.
    void setUnicodesFast(const std::vector<std::string>& unicodes);
    uint32_t unicodeChar() const;
    std::string charString() const;
    std::string charStrings() const;

    // Glyph information.
    const std::string& script() const { return _script; }
    void setScript(const std::string& v) { _script = v; }
    const std::string& category() const { return _category; }
    void setCategory(const std::string& v) { _category = v; }
    const std::string& subCategory() const { return _subCategory; }
    void setSubCategory(const std::string& v) { _subCategory = v; }
    const std::string& production() const { return _production; }
    void setProduction(const std::string& v) { _production = v; }
    // Letter case: 0 none, 1 upper, 2 lower, 3 small capital, 4 minor, 5 other.
    uint8_t glyphCase() const { return _case; }
    void setGlyphCase(uint8_t v) { _case = v; }
    // Writing direction: 0 bidirectional, 1 left to right, 2 right to left, 3 and 4 vertical.
    uint8_t direction() const { return _direction; }
    void setDirection(uint8_t v) { _direction = v; }
    static uint8_t caseFromString(const std::string& text);
    static uint8_t directionFromString(const std::string& text);
    bool exportGlyph() const { return _export; }
    void setExport(bool v) { _export = v; }
    // Whether the document states the value explicitly.
    bool storeScript() const { return _storeScript; }
    void setStoreScript(bool v) { _storeScript = v; }
    bool storeCategory() const { return _storeCategory; }
    void setStoreCategory(bool v) { _storeCategory = v; }
    bool storeSubCategory() const { return _storeSubCategory; }
    void setStoreSubCategory(bool v) { _storeSubCategory = v; }
    bool storeCase() const { return _storeCase; }
    void setStoreCase(bool v) { _storeCase = v; }
    bool storeProduction() const { return _storeProduction; }
    void setStoreProduction(bool v) { _storeProduction = v; }
    bool storeDirection() const { return _storeDirection; }
    void setStoreDirection(bool v) { _storeDirection = v; }
    bool storeSortName() const { return _storeSortName; }
    void setStoreSortName(bool v) { _storeSortName = v; }
    bool hasCustomGlyphInfo() const;
    static bool isCornerName(const std::string& name);
    bool isCornerGlyph() const { return isCornerName(_name); }
    bool isSmartGlyph() const;

    // Part axes of a smart glyph.
    const std::vector<std::shared_ptr<VLPartProperty>>& partsSettings() const { return _partsSettings; }
    void setPartsSettings(std::vector<std::shared_ptr<VLPartProperty>> settings) { _partsSettings = std::move(settings); }

    // The glyph's properties by name, for the filters of metrics.
    Value valueForKeyPath(const std::string& keyPath) const override;

    // Colour marker.
    uint8_t colorIndex() const { return _colorMarker.colorIndex(); }
    void setColorIndex(int64_t index) { _colorMarker.setColorIndex(index); }
    const std::optional<Color>& color() const { return _colorMarker.color(); }
    void setColor(const Color& color) { _colorMarker.setColor(color); }

    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);

    // Layers.
    const Layers& layers() const { return _layers; }
    size_t countOfLayers() const { return _layers.count(); }
    std::shared_ptr<VLLayer> layerForIdFast(const std::string& layerId) const { return _layers.objectForKey(layerId); }
    // Reads the layers first if needed; asking for a master's layer creates an empty one.
    std::shared_ptr<VLLayer> layerForId(const std::string& layerId);
    void setLayer_forId(const std::shared_ptr<VLLayer>& layer, const std::string& layerId);
    // Adding or removing a layer asks for the compatibility of the masters again.
    void removeLayerForId(const std::string& layerId)
    {
        _layers.removeObjectForKey(layerId);
        _masterCompatibilityCheckStatus = -1;
    }
    // The layer of the first master, without reading.
    std::shared_ptr<VLLayer> layer0() const;
    void stopUpdates();
    void startUpdates();
    // Reads the layers noted in the document; false when the text can't be read.
    bool readLayersFormat(uint8_t format);

    // ---- model/VLGlyphLayerLookup.cpp: layers by name, key and kind; each reads the layers first.

    // The first in the order of layers. An empty master id stands for a layer without master.
    std::shared_ptr<VLLayer> layerForName(const std::string& name);
    std::shared_ptr<VLLayer> layerForName_masterId(const std::string& name, const std::string& masterId);
    std::shared_ptr<VLLayer> layerForKey_masterId(const std::string& key, const std::string& masterId);
    // The match of each master that has one, in the order of the ids.
    std::vector<std::shared_ptr<VLLayer>> layersForName_masterIDs(const std::string& name,
                                                                  const std::vector<std::string>& masterIds);
    // In the order of the font's masters, a master's own layer ahead of its others; layers of an
    // unknown master last.
    std::vector<std::shared_ptr<VLLayer>> sortedLayers();
    // Of the master's own layer and its brace layers (only the brace layers where asked), the one
    // whose location, in the order of the font's axes, lies nearest to the position and no
    // farther than the tolerance.
    std::shared_ptr<VLLayer>
    layerNearestToPosition_associatedMasterId_onlyBraceLayer_tolerance(const std::vector<double>& position,
                                                                       const std::string& masterId, bool onlyBraceLayer,
                                                                       double tolerance);
    bool hasSpecialLayers();
    bool hasBracketLayer();
    bool hasBraceLayer();
    bool isAnyColorGlyph();
    bool isFullColorGlyph();
    bool isColorPaletteGlyph();
    bool isSVGColorGlyph();
    bool isAppleColorGlyph();

    double lastOperationInterval() const { return _lastOperationInterval; }
    void setLastOperationInterval(double seconds) { _lastOperationInterval = seconds; }

    // ---- interpolation/VLGlyphCompatibility.cpp: whether layers share one structure.

    // Whether the layers of each layer group match, so that they can be blended. Cached; a font
    // without axes has nothing to vary and answers true without caching.
    bool mastersCompatible();
    // A missing layer matches only an empty one.
    bool mastersCompatibleForLayerIds(const std::vector<std::string>& layerIds);
    static bool mastersCompatibleForLayers(const std::vector<std::shared_ptr<VLLayer>>& layers);

    // ---- interpolation/VLGlyphLayerGroups.cpp: which layers must match each other.

    // Ordered sets of layer ids.
    using LayerGroups = std::vector<std::vector<std::string>>;
    // The groups over all masters of the font, imported ones included.
    LayerGroups layerGroups(VLError* error = nullptr);
    // Master, brace and bracket layers grouped with the masters by their group keys, repeated
    // palette layers by their place among their master's; groups that share a layer are merged,
    // and a master in no group stands alone. Groups that would hold more than
    // VLLayerGroupsMaximumMembers ids give none, and "Too many entries" (code 125).
    LayerGroups layerGroups_masters_error(const std::vector<std::shared_ptr<VLFontMaster>>& masters, VLError* error);
    // The groups of master, brace, bracket and palette layers by group key; the ids filed go into seen.
    LayerGroups forcedLayerGroupIdsSeenLayers_error(std::set<std::string>& seenLayers,
                                                    const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                                    VLError* error);
    // The k-th colour layer of every master, for each k, when all masters have colour layers of
    // the same keys; nothing otherwise.
    static std::vector<std::vector<std::shared_ptr<VLLayer>>>
    _colorLayerGroups(const std::vector<std::shared_ptr<VLLayer>>& layers);

    // ---- interpolation/VLGlyphInterpolation.cpp and interpolation/VLLayerSum.cpp: new layers
    // from the glyph's layers and a factor dictionary keyed by layer or master id.

    // The sum of the layers of the factors' ids, each scaled by its factor, as a new layer without
    // parent. One factor copies its layer, whatever its value; no factor copies the first master's.
    // Layers of unlike structure give a shapeless layer of the summed widths; shapes of unlike
    // kinds at one place give null and "The glyph is not compatible." (code 125).
    std::shared_ptr<VLLayer> interpolate_error(const VLFactors& factors, VLError* error);
    // The same among the given masters, by layer name where one is given, the colour layers and
    // a corner glyph's brace layers interpolated alike into additionalLayers where it is given.
    std::shared_ptr<VLLayer>
    _interpolate_masters_layerName_additionalLayers_error(const VLFactors& factors,
                                                               const std::vector<std::shared_ptr<VLFontMaster>>& masters,
                                                               const std::optional<std::string>& layerName,
                                                               std::vector<std::shared_ptr<VLLayer>>* additionalLayers,
                                                               VLError* error);
    // The weighted sum proper, over the layers in their order, on a zeroed copy of the first.
    std::shared_ptr<VLLayer> _interpolateLayers_interpolation_error(const std::vector<std::shared_ptr<VLLayer>>& layers,
                                                                    const VLFactors& factors, VLError* error);

    // ---- reader/VLGlyphDictReader.cpp: the dictionary route. The record is kept, and its layers
    // are built from it when first asked for, as a streamed glyph reads them from the text.
    static std::shared_ptr<VLGlyph> initWithDict_format(const Value& dict, uint8_t format);
    // Builds the layers of the kept record; false when they can't all be built.
    bool readLayersFromDictFormat(uint8_t format);

    // ---- model/VLGlyphKerningGroups.cpp: the kerning groups of each side. A group's key in the
    // kerning is its name behind "@MMK_L_" where the glyph comes first in a pair and behind
    // "@MMK_R_" where it comes second.
    const std::string& leftKerningGroup() const { return _leftKerningGroup; }
    void setLeftKerningGroup(const std::string& group) { _leftKerningGroup = group; }
    const std::string& rightKerningGroup() const { return _rightKerningGroup; }
    void setRightKerningGroup(const std::string& group) { _rightKerningGroup = group; }
    const std::string& topKerningGroup() const { return _topKerningGroup; }
    void setTopKerningGroup(const std::string& group) { _topKerningGroup = group; }
    const std::string& bottomKerningGroup() const { return _bottomKerningGroup; }
    void setBottomKerningGroup(const std::string& group) { _bottomKerningGroup = group; }
    // The group that faces the following glyph in the direction, and the one that faces the
    // preceding glyph; "" for none and for a direction without groups.
    std::string nextKerningGroupforDirection(int direction) const;
    std::string previousKerningGroupforDirection(int direction) const;
    // The same groups as kerning keys; "" for none.
    std::string nextKerningGroupIDforDirection(int direction) const;
    std::string previousKerningGroupIDforDirection(int direction) const;

    // ---- interpolation/VLInstanceLayers.cpp: the glyph drawn at an instance.

    // A new layer without parent from the instance's shares of the masters: its own where
    // they are manual, else those of its location. Null where no master takes part.
    std::shared_ptr<VLLayer> layerForInstance_error(VLInstance& instance, VLError* error);

    // The thumbnail's view of the glyph.
    double maxWidth();
    uint16_t width();
    std::shared_ptr<BezierPath> bezierPath();

private:
    bool readLayersIfEmpty();
    bool anyLayerIs(bool (VLLayer::*kind)() const);
    uint8_t formatOfParent() const;

    Layers _layers;
    std::string _name;
    std::vector<std::string> _unicodes;
    std::string _script;
    std::string _category;
    std::string _subCategory;
    std::string _production;
    bool _export = true;
    bool _storeScript = false;
    bool _storeCategory = false;
    bool _storeSubCategory = false;
    bool _storeCase = false;
    bool _storeProduction = false;
    bool _storeDirection = false;
    bool _storeSortName = false;
    VLColorMarker _colorMarker;
    ValueDictionary _userData;
    mutable uint32_t _unicodeChar = 0;
    std::weak_ptr<VLFont> _parent;
    uint64_t _glyphId = 0;
    std::string _id;
    double _lastOperationInterval = 0.0;
    // -1 while unknown, otherwise 0 or 1.
    int32_t _masterCompatibilityCheckStatus = -1;
    uint8_t _case = 0;
    uint8_t _direction = 0;
    std::vector<std::shared_ptr<VLPartProperty>> _partsSettings;
    // Where the unread "layers" value lies in the document text; null once read or when absent.
    const uint8_t* _fileStart = nullptr;
    const uint8_t* _fileEnd = nullptr;
    // The state to read the layers with: the font's, or _pInfoStore for a glyph of its own file.
    VLPlistParseInfo* _pInfo = nullptr;
    std::shared_ptr<VLPlistParseInfo> _pInfoStore;

    // ---- reader/VLGlyphDictReader.cpp: the record of the dictionary route until its layers are built.
    Value _glyphDict;

    // ---- model/VLGlyphKerningGroups.cpp
    std::string _leftKerningGroup;
    std::string _rightKerningGroup;
    std::string _topKerningGroup;
    std::string _bottomKerningGroup;
};
