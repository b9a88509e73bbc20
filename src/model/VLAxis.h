#pragma once

#include "platform/Value.h"

#include <memory>
#include <optional>
#include <string>
#include <vector>

class VLFont;
struct VLError;

// One axis of the font's design space. Masters and instances keep their location by axisId.
class VLAxis {
public:
    // A new axis with a UUID as axisId.
    static std::shared_ptr<VLAxis> init();
    static std::shared_ptr<VLAxis> initWithName_tag(const std::string& name, const std::string& tag);
    // Keys "name", "tag", "default", "hidden"; absent keys leave the defaults.
    static std::shared_ptr<VLAxis> initWithDict_format(const Value& dict, uint8_t format);
    static constexpr const char* className = "VLAxis";

    // "unnamed" when no name was given.
    std::string name() const { return _name.value_or("unnamed"); }
    // A registered name also sets the registered tag.
    void setName(const std::string& name);
    // A missing tag is filled from the name when the name is registered.
    std::string axisTag() const;
    void setAxisTag(const std::string& tag) { _axisTag = tag; }
    // The tag, else the registered one; a shorter one is made from the name, "UNKN" without one.
    std::string axisTagDefault() const;
    std::string shortAxisTag() const;
    std::string title() const { return name(); }
    // An empty tag, a registered one, or four of upper-case letters and digits; the tag is cut
    // to four characters first. Otherwise false with a "VelmorErrorDomain" error, code 125.
    bool validateAxisTag_error(std::string& tag, VLError* error) const;
    // The width and height axes in which corner components are placed, with ids "wdth" and "hght".
    static std::vector<std::shared_ptr<VLAxis>> cornerAxes();
    // Whether the tag is one of the registered axes.
    bool isDefault() const;
    const std::string& axisId() const { return _axisId; }
    void setAxisId(const std::string& axisId) { _axisId = axisId; }
    bool hidden() const { return _hidden; }
    void setHidden(bool hidden) { _hidden = hidden; }
    double defaultValue() const { return _defaultValue; }
    // Changes only by more than 0.001.
    void setDefaultValue(double value);
    std::shared_ptr<VLFont> parent() const { return _parent.lock(); }
    void setParent(const std::shared_ptr<VLFont>& font) { _parent = font; }

    // "a01", "a02" and on: the ids of axes that a document lists without ids of their own.
    static std::string axisIdForNumber(size_t number);

    static std::optional<std::string> tagForAxisName(const std::string& name);
    static std::optional<std::string> nameForAxisTag(const std::string& tag);

    std::shared_ptr<VLAxis> copy() const { return std::make_shared<VLAxis>(*this); }

private:
    bool _hidden = false;
    std::optional<std::string> _axisTag;
    std::string _axisId;
    std::optional<std::string> _name;
    std::weak_ptr<VLFont> _parent;
    double _defaultValue = 0.0;
};
