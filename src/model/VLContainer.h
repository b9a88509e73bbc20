#pragma once

#include <memory>

class VLFont;
class VLGlyph;
class VLLayer;
class VLShape;

// What a shape may ask of its parent: a layer, or a path for a node. Changes are reported
// upward, and the levels that have no listener ignore them.
class VLContainer {
public:
    virtual ~VLContainer() = default;
    virtual std::shared_ptr<VLLayer> layer() const = 0;
    virtual std::shared_ptr<VLGlyph> glyph() const = 0;
    virtual std::shared_ptr<VLFont> font() const = 0;
    virtual void elementDidChange(VLShape* element) = 0;
};
