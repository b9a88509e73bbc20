#pragma once

#include "model/VLElement.h"

#include <memory>
#include <string>

struct VLPlistParseInfo;

// A named point of a layer, where components attach to each other.
class VLAnchor : public VLElement {
public:
    static std::shared_ptr<VLAnchor> init() { return std::make_shared<VLAnchor>(); }
    // An anchor record, in its dictionary or its quoted line form "x y name".
    static std::shared_ptr<VLAnchor> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLAnchor";

    // ---- reader/VLAnchorDictReader.cpp: the dictionary route; a string is the compact line form.
    static std::shared_ptr<VLAnchor> initWithDict_format(const Value& dict, uint8_t format);

    std::shared_ptr<VLShape> copy() const override { return std::make_shared<VLAnchor>(*this); }

    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }
    // Neither setter renames the anchor's key in its layer: switchAnchorFastName_withName does.
    void setNameFast(std::string name) { _name = std::move(name); }
    const ValueDictionary& userData() const { return _userData; }
    void setUserData(ValueDictionary userData) { _userData = std::move(userData); }

    bool parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format);

    // The name an anchor takes in a component of this scale. Mirrored components are the ones
    // that could swap parts of names, and no pair of names is known to swap, so the name stays.
    static std::string anchorName_forScale(const std::string& name, Point) { return name; }

private:
    std::string _name;
    ValueDictionary _userData;
};
