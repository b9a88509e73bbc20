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
    const ValueDictionary& userData() const { return _userData; }
    void setUserData(ValueDictionary userData) { _userData = std::move(userData); }

    bool parseVelmorLine_format(VLPlistParseInfo* info, uint8_t format);

private:
    std::string _name;
    ValueDictionary _userData;
};
