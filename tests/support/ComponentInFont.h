#pragma once

#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLComponent.h"
#include "support/TestShapes.h"

#include <memory>
#include <string>

// A glyph "B" of one square from (0, 0) to (10, 10) in master m01, and a layer of "A" in which
// components stand.
struct ComponentInFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLLayer> layer;

    ComponentInFont()
    {
        auto a = VLGlyph::initFast();
        a->setNameFast("A");
        auto b = VLGlyph::initFast();
        b->setNameFast("B");
        font->setGlyphs({a, b});
        b->layerForId("m01")->addShapeFast(rectanglePath(0, 0, 10, 10));
        layer = a->layerForId("m01");
    }

    std::shared_ptr<VLComponent> add(const std::string& name)
    {
        auto component = VLComponent::init();
        component->setComponentName(name);
        layer->addShapeFast(component);
        return component;
    }
};
