#pragma once

#include "model/VLUnsetValue.h"
#include "platform/Value.h"

#include <cstdint>
#include <memory>
#include <string>

class VLFont;

// One master of a font: a location in the design space with its own metrics.
class VLFontMaster {
public:
    // A master for editing: a new UUID as id, named "Regular", with the usual vertical metrics.
    static std::shared_ptr<VLFontMaster> init();
    // A master for the readers: every field empty, metrics not yet computed.
    static std::shared_ptr<VLFontMaster> initFast();

    const std::string& id() const { return _id; }
    void setId(const std::string& id) { _id = id; }
    // Values that are not strings are stored in their text form.
    void setId(const Value& id) { _id = id.isString() ? id.string() : id.description(); }
    const std::string& name() const { return _name; }
    void setName(const std::string& name) { _name = name; }

    // The owner; unretained, so a master must not outlive its font.
    VLFont* font() const { return _font; }
    void setFont(VLFont* font) { _font = font; }

    const ValueDictionary& userData() const { return _userData; }
    void setUserData_forKey(const Value& value, const std::string& key);

    // Cached vertical metrics; VLUnsetValue until computed.
    double defaultAscender() const { return _ascender; }
    void setDefaultAscender(double v) { _ascender = v; }
    double defaultDescender() const { return _descender; }
    void setDefaultDescender(double v) { _descender = v; }
    double defaultCapHeight() const { return _capHeight; }
    void setDefaultCapHeight(double v) { _capHeight = v; }
    double defaultXHeight() const { return _xHeight; }
    void setDefaultXHeight(double v) { _xHeight = v; }
    double defaultItalicAngle() const { return _italicAngle; }
    void setDefaultItalicAngle(double v) { _italicAngle = v; }

    bool visible() const { return _visible; }
    void setVisible(bool visible) { _visible = visible; }

private:
    std::string _id;
    std::string _name;
    VLFont* _font = nullptr;
    ValueDictionary _userData;
    bool _visible = false;
    double _ascender = VLUnsetValue;
    double _descender = VLUnsetValue;
    double _capHeight = VLUnsetValue;
    double _xHeight = VLUnsetValue;
    double _italicAngle = VLUnsetValue;
};
