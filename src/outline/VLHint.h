#pragma once

#include "model/VLElement.h"
#include "platform/VLUnsetValue.h"

#include <array>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

class VLLayer;
class VLNode;

struct VLPlistParseInfo;

// A place in a layer: a metric position (one number), a node (path and node index), or places
// on segments (three and four numbers).
using VLIndexPath = std::vector<size_t>;

// The kinds of hint, by the numbers of the format: PostScript hints from TopGhost to Flex,
// TrueType instructions from TTSnap to TTDelta, and the outline components from Corner to Segment.
enum class VLHintType : int8_t {
    Tag = -2,
    TopGhost = -1,
    Stem = 0,
    BottomGhost = 1,
    Flex = 2,
    TTSnap = 3,
    TTStem = 4,
    TTShift = 5,
    TTInterpolate = 6,
    TTDiagonal = 8,
    TTDelta = 9,
    Corner = 16,
    Cap = 17,
    Brush = 18,
    Segment = 19,
    Auto = 127,
};

// A record on a layer that refers to nodes by index path: PostScript and TrueType hinting, and the
// corner, cap, brush and segment components that bend the outline at draw time.
class VLHint : public VLElement {
public:
    enum Reference { Origin = 0, Target = 1, Other1 = 2, Other2 = 3 };
    static constexpr int64_t StemNone = INT64_MAX;
    // The stem of a reference that was found again by a position search.
    static constexpr int64_t StemFoundByPosition = 1000;
    static constexpr size_t RightSideBearingIndex = 131071;
    static constexpr size_t LeftSideBearingIndex = 131070;

    VLHint();
    static std::shared_ptr<VLHint> init() { return std::make_shared<VLHint>(); }
    // A hint record of a layer.
    static std::shared_ptr<VLHint> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    // The same record as a dictionary; nothing for another value.
    static std::shared_ptr<VLHint> initWithDict_format(const Value& dict, uint8_t format);
    static constexpr const char* className = "VLHint";
    std::shared_ptr<VLShape> copy() const override { return copyHint(); }
    // The copy's node references still point into the source until restore runs.
    std::shared_ptr<VLHint> copyHint() const { return std::make_shared<VLHint>(*this); }

    // Types. Unknown names read as a stem; older names are understood.
    static VLHintType typeForName(const std::string& name);
    static const char* typeNameC(VLHintType type);
    std::string typeName() const { return typeNameC(_type); }
    VLHintType type() const { return _type; }
    void setType(VLHintType type) { _type = type; }
    bool isPostScript() const { return _type >= VLHintType::TopGhost && _type <= VLHintType::Flex; }
    // True for all four outline components.
    bool isCorner() const { return _type >= VLHintType::Corner && _type <= VLHintType::Segment; }
    bool isPathComponent() const { return isCorner(); }
    // A component that the outline draws: one found again by position after a flattening (stem
    // 1000) is part of the outline already.
    bool isDrawnCorner() const { return isCorner() && (_stem == 0 || _stem == StemNone); }
    bool isTrueType() const { return _type >= VLHintType::TTSnap && _type <= VLHintType::TTDelta; }

    // References: live node, stored index path, and the knob saved for restore (x = VLUnsetValue
    // when empty).
    const std::shared_ptr<VLElement>& node(Reference r) const { return _refs[r].node; }
    void setNode(Reference r, std::shared_ptr<VLElement> node) { _refs[r].node = std::move(node); }
    const VLIndexPath& indexPath(Reference r) const { return _refs[r].index; }
    void setIndexPath(Reference r, VLIndexPath path) { _refs[r].index = std::move(path); }
    Point knob(Reference r) const { return _refs[r].knob; }
    void setKnob(Reference r, Point knob) { _refs[r].knob = knob; }
    const std::shared_ptr<VLElement>& originNode() const { return node(Origin); }
    void setOriginNode(std::shared_ptr<VLElement> n) { setNode(Origin, std::move(n)); }
    const std::shared_ptr<VLElement>& targetNode() const { return node(Target); }
    void setTargetNode(std::shared_ptr<VLElement> n) { setNode(Target, std::move(n)); }
    const VLIndexPath& originIndex() const { return indexPath(Origin); }
    void setOriginIndex(VLIndexPath p) { setIndexPath(Origin, std::move(p)); }
    const VLIndexPath& targetIndex() const { return indexPath(Target); }
    void setTargetIndex(VLIndexPath p) { setIndexPath(Target, std::move(p)); }
    const VLIndexPath& otherIndex1() const { return indexPath(Other1); }
    void setOtherIndex1(VLIndexPath p) { setIndexPath(Other1, std::move(p)); }
    const VLIndexPath& otherIndex2() const { return indexPath(Other2); }
    void setOtherIndex2(VLIndexPath p) { setIndexPath(Other2, std::move(p)); }
    Point originKnob() const { return knob(Origin); }
    void setOriginKnob(Point p) { setKnob(Origin, p); }
    Point targetKnob() const { return knob(Target); }
    void setTargetKnob(Point p) { setKnob(Target, p); }

    // Values.
    bool horizontal() const { return _horizontal; }
    void setHorizontal(bool horizontal) { _horizontal = horizontal; }
    double origin() const { return _origin; }
    void setOrigin(double origin) { _origin = origin; }
    double width() const { return _width; }
    void setWidth(double width) { _width = width; }
    int64_t stem() const { return _stem; }
    void setStem(int64_t stem) { _stem = stem; }
    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    uint32_t options() const { return _options; }
    void setOptions(uint32_t options) { _options = options; }
    Point scale() const { return _scale; }
    void setScale(Point scale) { _scale = scale; }
    uint8_t alignment() const { return _alignment; }
    void setAlignment(uint8_t alignment) { _alignment = alignment; }
    const ValueDictionary& settings() const { return _settings; }
    void setSettings(ValueDictionary settings) { _settings = std::move(settings); }
    Value objectInSettingsForKey(const std::string& key) const;
    void setObjectInSettings_forKey(const Value& value, const std::string& key);

    // Ordering and identity. compare answers -1, 0 or 1.
    int compare(const VLHint& other) const;
    bool isEqualToHint(const VLHint& other) const;

    // Index paths: a string of numbers in format 1, an array of numbers otherwise.
    static VLIndexPath indexPathFromPlist(const Value& value);
    std::shared_ptr<VLElement> nodeForIndexPath(const VLIndexPath& path) const;
    // unlimited: a node index past the end of a closed path wraps around.
    std::shared_ptr<VLElement> nodeForIndexPath_unlimited(const VLIndexPath& path, bool unlimited) const;
    static std::shared_ptr<VLElement> nodeForIndexPath_unlimited_layer(const VLIndexPath& path, bool unlimited,
                                                                       const std::shared_ptr<VLLayer>& layer);
    static VLIndexPath indexPathForNode_inLayer(const VLElement& node, const VLLayer& layer);
    // The nearest node within the tolerance; actualPosition (may be null) receives its position.
    static VLIndexPath indexPathForPosition_inLayer_tolerance_actualPosition(Point position, const VLLayer& layer,
                                                                             double tolerance, Point* actualPosition);

    // Keeping references over changes of the outline.
    void save();
    void restore();
    // For outline components: true when the hint still refers to what it needs.
    bool updateIndexes();

    // Stems and their TrueType kinds run from the other end.
    void reverse();
    // Places a TrueType instruction moves, and places it needs to have been moved first.
    std::vector<VLIndexPath> touchingIndexes() const;
    std::vector<VLIndexPath> dependenIndexes() const;
    static void sortHints(std::vector<std::shared_ptr<VLHint>>& hints);

    // Between layers. Outline components without originIndex are left out of the groups.
    static std::map<VLHintType, std::vector<std::shared_ptr<VLHint>>>
    _sortedHints(const std::vector<std::shared_ptr<VLHint>>& hints);
    // Copies of the source's hints of each kind that the target lacks.
    static void transferHintsFromLayer_to(const VLLayer& source, VLLayer& target);

private:
    struct Ref {
        std::shared_ptr<VLElement> node;
        VLIndexPath index;
        Point knob{VLUnsetValue, 0.0};
    };

    bool updateReference(Reference r, const std::shared_ptr<VLLayer>& layer);
    void restoreReference(Reference r, const std::shared_ptr<VLLayer>& layer);
    // The node nearest to the knob on the path of the index path; an empty path searches the layer.
    std::shared_ptr<VLNode> _findNewIndexNodeWithTolerance_knob_indexPath(double tolerance, Point knob,
                                                                          const VLIndexPath& path,
                                                                          const std::shared_ptr<VLLayer>& layer) const;
    bool usesReference(Reference r) const;

    std::array<Ref, 4> _refs;
    VLHintType _type = VLHintType::Stem;
    int64_t _stem = StemNone;
    std::string _name;
    uint32_t _options = 0;
    ValueDictionary _settings;
    double _origin = VLUnsetValue;
    double _width = VLUnsetValue;
    Point _scale{1.0, 1.0};
    bool _horizontal = true;
    uint8_t _alignment = 0;
};
