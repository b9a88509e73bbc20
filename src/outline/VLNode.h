#pragma once

#include "model/VLElement.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

class VLPath;
struct VLPlistParseInfo;

// A compiled font numbers the points of a glyph with 16 bits, so no real contour holds more
// nodes than this; a longer node list fails its path, which bounds what a hostile document costs.
inline constexpr size_t VLPathMaximumNodes = 65535;

// The kind of a node, by the numbers of the format. An on-curve node's type describes the segment
// that ends at it. None stands where there is no node, and for a word that names no type.
enum class VLNodeType : uint8_t {
    None = 0,
    LINE = 1,
    MOVE = 17,
    CURVE = 35,
    QCURVE = 36,
    HOBBY = 37,
    OFFCURVE = 65,
    SPECIAL = 101,
};

// One point of a path.
class VLNode : public VLElement {
public:
    static constexpr uint8_t SHARP = 0;
    static constexpr uint8_t SMOOTH = 100;
    static constexpr uint8_t SMOOTH_OTHER = 102;

    // A line node, sharp, left-oriented.
    VLNode() = default;
    static std::shared_ptr<VLNode> init() { return std::make_shared<VLNode>(); }
    // A node in its line form ("x y CURVE SMOOTH") or its list form ((x,y,cs)).
    static std::shared_ptr<VLNode> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLNode";
    static constexpr size_t maximumInList = VLPathMaximumNodes;
    bool readLineWithVelmorParser(VLPlistParseInfo* info);
    bool readListWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    // One letter of the list form (type, connection, orientation, lock); false for a letter
    // that the form does not have.
    bool applyListLetter(uint8_t letter);

    // ---- reader/VLNodeDictReader.cpp: a node of the dictionary route, in its list form as an
    // array ((x, y, "cs", {user data})) or in its line form as a string.
    static std::shared_ptr<VLNode> initWithArray_format(const Value& element, uint8_t format);
    // NaN coordinates become 21 and then coordinates beyond 32000 become 22, so that the two
    // kinds of broken input stay apart.
    static std::shared_ptr<VLNode> initWithPosition_type_connection(Point position, VLNodeType type,
                                                                    uint8_t connection);

    std::shared_ptr<VLShape> copy() const override { return copyNode(); }
    // Takes type, connection, positions and orientation; user data and parent stay behind.
    std::shared_ptr<VLNode> copyNode() const;

    std::shared_ptr<VLPath> parentPath() const;

    VLNodeType type() const { return _type; }
    void setType(VLNodeType type);
    void setTypeFast(VLNodeType type) { _type = type; }
    uint8_t connection() const { return _connection; }
    void setConnection(uint8_t connection);
    void setConnectionFast(uint8_t connection) { _connection = connection; }
    bool isSmooth() const { return (_connection & ~2) == SMOOTH; }
    bool isOffcurve() const { return _type == VLNodeType::OFFCURVE; }

    static const char* typeStringForType(VLNodeType type);
    static char typeTagForType(VLNodeType type);
    std::string typeString() const { return typeStringForType(_type); }
    char typeTag() const { return typeTagForType(_type); }
    // An unknown word gives VLNodeType::None.
    void setTypeString(const std::string& word);

    // The x is taken back from the orientation first; a change below half a thousandth is
    // not stored.
    void setPosition_forLayerWidth(Point position, double width);

    bool canAttachCorner() const
    {
        return _type == VLNodeType::LINE || _type == VLNodeType::CURVE || _type == VLNodeType::QCURVE;
    }

    // Forwarded to the parent path.
    long nodeIndex() const;
    void makeNodeFirst();
    std::shared_ptr<VLNode> nextOncurveNode() const;
    std::shared_ptr<VLNode> previousOncurveNode() const;
    void checkConnection();

    void toggleConnection() { toggleConnection(false); }
    // smoothHandles: line up the handles when the node becomes smooth.
    void toggleConnection(bool smoothHandles);
    // Lines up the neighbouring handles through this node.
    void makeSmooth();

    const ValueDictionary& userData() const { return _userData; }
    void setUserData(ValueDictionary userData) { _userData = std::move(userData); }
    Value userDataForKey(const std::string& key) const;
    void setUserData_forKey(const Value& value, const std::string& key);
    size_t countOfUserData() const { return _userData.size(); }

    bool isEqualToNode(const VLNode& other) const;

private:
    VLNodeType _type = VLNodeType::LINE;
    uint8_t _connection = SHARP;
    ValueDictionary _userData;
};
