#pragma once

#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

class Predicate;
class VLFont;
struct VLPlistParseInfo;

// A vertical metric, stem or number defined once on the font; each master holds its value
// under the metric's id. A filter limits it to the glyphs that match.
class VLMetric {
public:
    enum Type : uint8_t {
        TypeNone = 0, TypeAscender = 1, TypeCapHeight = 2, TypeSlantHeight = 3, TypeXHeight = 4,
        TypeMidHeight = 5, TypeBodyHeight = 6, TypeDescender = 7, TypeBaseline = 8, TypeItalicAngle = 9
    };

    static std::shared_ptr<VLMetric> init() { return std::make_shared<VLMetric>(); }
    // A stem named "hStem3" or "vStem3".
    static std::shared_ptr<VLMetric> initWithHorizontal_index(bool horizontal, int index);
    // Reads a metric record; the parse info stands behind its opening brace.
    static std::shared_ptr<VLMetric> initWithVelmorParser_format(VLPlistParseInfo* info, uint8_t format);
    static constexpr const char* className = "VLMetric";

    // ---- reader/VLMetricDictReader.cpp: the dictionary route.
    static std::shared_ptr<VLMetric> initWithDict_format(const Value& dict, uint8_t format);
    // A "name" that names a metric type sets the type instead, in both routes.
    void setNameOrType(const std::string& name);

    static std::string typeNameForType(uint8_t type);
    static uint8_t typeForTypeName(const std::string& name);
    static bool isDefaultType(uint8_t type);
    bool isVerticalMetric() const { return _type != TypeItalicAngle; }

    uint8_t type() const { return _type; }
    void setType(uint8_t type) { _type = type; }
    void setTypeName(const std::string& name) { _type = typeForTypeName(name); }
    const std::optional<std::string>& name() const { return _name; }
    void setName(std::optional<std::string> name) { _name = std::move(name); }
    const std::shared_ptr<Predicate>& filter() const { return _filter; }
    void setFilter(std::shared_ptr<Predicate> filter) { _filter = std::move(filter); }
    // Builds the predicate; bad text is logged and the old filter kept.
    void setFilterString(const std::string& format);
    // The predicate's text, or nothing without a filter.
    std::optional<std::string> filterString() const;
    bool horizontal() const { return _horizontal; }
    void setHorizontal(bool horizontal) { _horizontal = horizontal; }
    const std::string& id() const { return _id; }
    void setId(const std::string& id) { _id = id; }
    std::shared_ptr<VLFont> font() const { return _font.lock(); }
    void setFont(const std::shared_ptr<VLFont>& font) { _font = font; }

    // For display: the type's entry, the name if there is one, the filter's text. Type names have
    // no translations in this program, so a typed metric contributes an empty entry.
    std::vector<std::string> titles() const;
    // The titles joined by ", ".
    std::string title() const;
    std::string identifier() const;
    std::string noFilterId() const;
    bool isEqualToMetric(const VLMetric& other) const;

    std::shared_ptr<VLMetric> copy() const { return std::make_shared<VLMetric>(*this); }

private:
    uint8_t _type = TypeNone;
    std::optional<std::string> _name;
    std::shared_ptr<Predicate> _filter;
    bool _horizontal = false;
    std::weak_ptr<VLFont> _font;
    std::string _id;
};
