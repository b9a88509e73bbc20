#pragma once

#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "outline/VLComponent.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "support/TestShapes.h"

#include <memory>
#include <string>
#include <vector>

// A font of one master "m01" with the smart glyph "part": part axes "width" (0 to 100) and
// "height" (0 to 200), and a layer at each corner of them. The rectangle of the layers is 10 + w
// wide and 20 + h high, except that the top left node of the layer at both top ends stands off
// the rectangle, at (30, 240). A glyph "A" holds the components.
struct SmartGlyphInFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLGlyph> part;
    std::shared_ptr<VLLayer> layer;

    SmartGlyphInFont()
    {
        part = VLGlyph::initFast();
        part->setNameFast("part");
        part->setPartsSettings(
            {VLPartProperty::initWithName_bottom_top("width", 0, 100), VLPartProperty::initWithName_bottom_top("height", 0, 200)});
        auto a = VLGlyph::initFast();
        a->setNameFast("A");
        font->setGlyphs({a, part});
        layer = a->layerForId("m01");
        auto master = part->layerForId("m01");
        master->setPartSelection({{"width", Value(1)}, {"height", Value(1)}});
        master->addShapeFast(rectanglePath(0, 0, 10, 20));
        addLayer("wide", 2, 1)->addShapeFast(rectanglePath(0, 0, 110, 20));
        addLayer("tall", 1, 2)->addShapeFast(rectanglePath(0, 0, 10, 220));
        auto both = rectanglePath(0, 0, 110, 220);
        both->nodes()[2]->setPositionFast({30, 240});
        addLayer("both", 2, 2)->addShapeFast(both);
    }

    // A layer of "part" in master m01 at the given ends (1 the bottom, 2 the top) of width and height.
    std::shared_ptr<VLLayer> addLayer(const std::string& layerId, int width, int height,
                                      const std::shared_ptr<VLGlyph>& glyph = nullptr)
    {
        auto smartLayer = VLLayer::init();
        smartLayer->setAssociatedMasterId("m01");
        smartLayer->setPartSelection({{"width", Value(width)}, {"height", Value(height)}});
        (glyph ? glyph : part)->setLayer_forId(smartLayer, layerId);
        return smartLayer;
    }

    // A component of "part" in A's layer, at the part values given.
    std::shared_ptr<VLComponent> place(ValueDictionary settings, Point position = {})
    {
        auto component = VLComponent::init();
        component->setComponentName("part");
        component->setPositionFast(position);
        component->setPieceSettings(std::move(settings));
        layer->addShapeFast(component);
        layer->setNeedUpdateShapes();
        return component;
    }
};

// The node positions of the first path of a layer; nothing for a missing layer or path.
inline std::vector<Point> firstPathNodes(const std::shared_ptr<VLLayer>& layer)
{
    std::vector<Point> points;
    auto path = layer ? std::dynamic_pointer_cast<VLPath>(layer->objectInShapesAtIndex(0)) : nullptr;
    if (path)
        for (const auto& node : path->nodes()) points.push_back(node->positionPrecise());
    return points;
}
