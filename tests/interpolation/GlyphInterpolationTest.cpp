#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "outline/VLAnchor.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "platform/VLError.h"
#include "support/TestDocuments.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

namespace {

// Nothing for a missing layer or shape, so that a wrong result fails the test and nothing else.
std::vector<Point> nodePositions(const std::shared_ptr<VLLayer>& layer, size_t shape = 0)
{
    std::vector<Point> points;
    auto path = layer ? std::dynamic_pointer_cast<VLPath>(layer->objectInShapesAtIndex(shape)) : nullptr;
    if (path)
        for (const auto& node : path->nodes()) points.push_back(node->position());
    return points;
}

Point nodeAt(const std::shared_ptr<VLLayer>& layer, size_t index)
{
    auto points = nodePositions(layer);
    return index < points.size() ? points[index] : Point{VLUnsetValue, VLUnsetValue};
}

VLFactors factors(std::initializer_list<std::pair<const char*, VLFactor>> entries)
{
    VLFactors result;
    for (const auto& [key, factor] : entries) result.setObject_forKey(factor, key);
    return result;
}

// Two masters "m01" and "m02" of a font with one axis, and a glyph "A" with their layers.
struct TwoMasters {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLGlyph> glyph = VLGlyph::initFast();
    std::shared_ptr<VLLayer> first;
    std::shared_ptr<VLLayer> second;

    TwoMasters()
    {
        auto master = VLFontMaster::initFast();
        master->setId(std::string("m02"));
        font->addFontMaster(master);
        font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
        glyph->setNameFast("A");
        font->setGlyphs({glyph});
        first = glyph->layerForId("m01");
        second = glyph->layerForId("m02");
    }
};

std::shared_ptr<VLComponent> component(const char* name, Point position, Point scale)
{
    auto c = VLComponent::init();
    c->setComponentName(name);
    c->setPositionFast(position);
    c->setScale(scale);
    return c;
}

std::shared_ptr<VLHint> hint(VLHintType type, bool horizontal, double origin, double width)
{
    auto h = VLHint::init();
    h->setType(type);
    h->setHorizontal(horizontal);
    h->setOrigin(origin);
    h->setWidth(width);
    return h;
}

} // namespace

TEST(Interpolation, FactorsWeighTheMastersLayers)
{
    auto font = readTestDocument(layerKindDocuments[0]);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");

    auto quarter = glyph->interpolate_error(factors({{"light", 0.25}, {"bold", 0.75}}), nullptr);
    ASSERT_NE(quarter, nullptr);
    EXPECT_EQ(nodePositions(quarter), (std::vector<Point>{{0, 0}, {250, 0}, {125, 250}}));
    ASSERT_NE(quarter->anchors().objectForKey("top"), nullptr);
    EXPECT_EQ(quarter->anchors().objectForKey("top")->position(), (Point{125, 250}));
    EXPECT_EQ(quarter->width(), 600) << "the width of the first layer, not a sum";
    EXPECT_EQ(quarter->parent(), nullptr);
    EXPECT_EQ(nodeAt(glyph->layerForId("bold"), 1), (Point{300, 0})) << "the sources stay as they are";

    auto byPoint = glyph->interpolate_error(factors({{"light", VLFactor(0.5, 1)}, {"bold", VLFactor(0.5, 0)}}), nullptr);
    EXPECT_EQ(nodePositions(byPoint), (std::vector<Point>{{0, 0}, {200, 0}, {100, 100}})) << "y by the second factor";

    auto brace = glyph->interpolate_error(factors({{"brace", 2}, {"bold", -1}}), nullptr);
    EXPECT_EQ(nodeAt(brace, 2), (Point{50, 100})) << "layer ids, and negative factors, take part alike";
    EXPECT_EQ(brace->attributeForKey("coordinates"), Value()) << "the result is at no location of its own";

    auto single = glyph->interpolate_error(factors({{"bold", 0.5}}), nullptr);
    EXPECT_EQ(nodeAt(single, 1), (Point{300, 0})) << "one factor copies its layer";
    auto none = glyph->interpolate_error(VLFactors(), nullptr);
    EXPECT_EQ(nodeAt(none, 1), (Point{100, 0})) << "no factor copies the first master's layer";
    auto tiny = glyph->interpolate_error(factors({{"light", 1}, {"bold", 0.00009}}), nullptr);
    EXPECT_EQ(nodeAt(tiny, 1), (Point{100, 0})) << "a negligible factor takes no part";
    EXPECT_EQ(glyph->interpolate_error(factors({{"nowhere", 1}}), nullptr), nullptr);
    EXPECT_EQ(glyph->interpolate_error(factors({{"nowhere", 1}, {"else", 1}}), nullptr), nullptr);
}

TEST(Interpolation, SpecialLayersInterpolateAlongside)
{
    auto font = readTestDocument(layerKindDocuments[0]);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");
    std::vector<std::shared_ptr<VLLayer>> extra;
    auto mean = glyph->_interpolate_masters_layerName_additionalLayers_error(
        factors({{"light", 0.5}, {"bold", 0.5}}), font->fontMasters(), std::string("Alt"), &extra, nullptr);
    ASSERT_NE(mean, nullptr);
    EXPECT_EQ(nodeAt(mean, 2), (Point{200, 200})) << "the bracket layers by their name";
    ASSERT_EQ(extra.size(), 1u);
    EXPECT_EQ(nodeAt(extra[0], 2), (Point{100, 200})) << "the palette layers of both masters";

    extra.clear();
    glyph->_interpolate_masters_layerName_additionalLayers_error(factors({{"bold", 1}}), font->fontMasters(),
                                                                 std::nullopt, &extra, nullptr);
    ASSERT_EQ(extra.size(), 1u);
    EXPECT_TRUE(extra[0] && extra[0]->isColorPaletteLayer());

    glyph->setNameFast("_corner.round");
    extra.clear();
    glyph->layerForId("palette-light")->removeAttributeForKey("colorPalette");
    glyph->layerForId("palette-bold")->removeAttributeForKey("colorPalette");
    glyph->_interpolate_masters_layerName_additionalLayers_error(factors({{"light", 1}}), font->fontMasters(),
                                                                 std::nullopt, &extra, nullptr);
    ASSERT_EQ(extra.size(), 1u) << "a corner copies the brace layers of its master";
    EXPECT_TRUE(extra[0] && extra[0]->isBraceLayer());

    extra.clear();
    glyph->_interpolate_masters_layerName_additionalLayers_error(factors({{"light", 0.5}, {"bold", 0.5}}),
                                                                 font->fontMasters(), std::nullopt, &extra, nullptr);
    ASSERT_EQ(extra.size(), 1u) << "a corner's brace layers, each by the factor of its master";
    EXPECT_TRUE(extra[0]->isBraceLayer()) << "at their location again";
    EXPECT_EQ(nodeAt(extra[0], 1), (Point{100, 0}));
}

TEST(Interpolation, ComponentsAnchorsAndHints)
{
    TwoMasters f;
    auto part = VLGlyph::initFast();
    part->setNameFast("B");
    part->setPartsSettings({VLPartProperty::initWithName_bottom_top("size", 0, 100)});
    f.font->addGlyphFast(part);
    part->setParent(f.font);
    f.font->resetCache();

    auto a = component("B", {10, 20}, {1, 1});
    a->setAngle(10);
    a->setSlantVertical(4);
    a->setSlantHorizontal(2);
    a->setPieceSettings({{"size", Value(20)}, {"stale", Value(7)}});
    auto b = component("B", {30, 60}, {3, 2});
    b->setAngle(30);
    b->setSlantVertical(8);
    b->setSlantHorizontal(6);
    b->setAlignment(VLComponent::AlignmentDisabled);
    b->setKeepWeight(40);
    b->setPieceSettings({{"size", Value(60)}, {"other", Value(5)}});
    f.first->addShapeFast(a);
    f.second->addShapeFast(b);
    f.first->setHintsFast({hint(VLHintType::Stem, true, 100, 20), hint(VLHintType::Stem, false, 10, 30)});
    f.second->setHintsFast({hint(VLHintType::Stem, true, 200, 40), hint(VLHintType::Stem, false, 50, 70)});
    // A hint held at one end only is summed from its numbers all the same.
    for (const auto& layer : {f.first, f.second}) layer->hints()[0]->setOriginIndex({0, 0});

    auto sum = f.glyph->interpolate_error(factors({{"m01", VLFactor(0.5, 0.25)}, {"m02", VLFactor(0.5, 0.75)}}), nullptr);
    ASSERT_NE(sum, nullptr);
    ASSERT_EQ(sum->shapes().size(), 1u);
    const auto& c = static_cast<const VLComponent&>(*sum->shapes()[0]);
    EXPECT_EQ(c.position(), (Point{20, 50}));
    EXPECT_EQ(c.positionPrecise(), (Point{20, 50}));
    EXPECT_EQ(c.scale(), (Point{2, 1.75}));
    EXPECT_EQ(c.angle(), 20);
    EXPECT_EQ(c.slantHorizontal(), 4);
    EXPECT_EQ(c.slantVertical(), 7) << "by the y factor";
    EXPECT_EQ(static_cast<int>(c.alignment()), static_cast<int>(VLComponent::AlignmentDisabled));
    EXPECT_EQ(c.keepWeight(), 20);
    EXPECT_EQ(c.pieceSettings().at("size").doubleValue(), 40);
    EXPECT_EQ(c.pieceSettings().at("stale").doubleValue(), 0) << "zeroed, and no part axis of the glyph";
    EXPECT_EQ(c.pieceSettings().count("other"), 0u) << "only the glyph's part axes are summed";
    auto hints = VLHint::_sortedHints(sum->hints())[VLHintType::Stem];
    ASSERT_EQ(hints.size(), 2u);
    auto horizontal = hints[0]->horizontal() ? hints[0] : hints[1];
    auto vertical = hints[0]->horizontal() ? hints[1] : hints[0];
    EXPECT_EQ(horizontal->origin(), 175) << "horizontal hints by the y factor";
    EXPECT_EQ(horizontal->width(), 35);
    EXPECT_EQ(vertical->origin(), 30);
    EXPECT_EQ(vertical->width(), 50);

    f.glyph->setUserData_forKey(Value(true), "useLinearComponentInterpolation");
    auto linear = f.glyph->interpolate_error(factors({{"m01", 0.5}, {"m02", 0.5}}), nullptr);
    ASSERT_TRUE(linear && linear->shapes().size() == 1);
    const auto& l = static_cast<const VLComponent&>(*linear->shapes()[0]);
    EXPECT_EQ(l.position(), (Point{0, 0})) << "the transform is not summed";
    EXPECT_EQ(l.positionPrecise(), (Point{0, 0}));
    EXPECT_EQ(l.scale(), (Point{0, 0}));
    EXPECT_EQ(l.keepWeight(), 20);
}

TEST(Interpolation, AnchorsAndCornerScales)
{
    TwoMasters f;
    for (const auto& [layer, x] : {std::pair{f.first, 100.0}, std::pair{f.second, 300.0}}) {
        layer->addShapeFast(rectanglePath(0, 0, x, x));
        auto anchor = VLAnchor::init();
        anchor->setName("top");
        anchor->setPositionFast({x, x});
        VLLayer::Anchors anchors;
        anchors.setObject_forKey(anchor, "top");
        layer->setAnchorsFast(anchors);
    }
    auto corner = hint(VLHintType::Corner, true, 0, 0);
    corner->setOriginIndex({0, 1});
    corner->setScale({2, 4});
    f.first->setHintsFast({corner});
    f.second->setHintsFast({corner->copyHint()});
    auto sum = f.glyph->interpolate_error(factors({{"m01", VLFactor(0.5, 0.25)}, {"m02", VLFactor(0.5, 0.75)}}), nullptr);
    ASSERT_TRUE(sum && sum->anchors().objectForKey("top") && sum->hints().size() == 1);
    EXPECT_EQ(sum->anchors().objectForKey("top")->position(), (Point{200, 250}));
    EXPECT_EQ(sum->hints()[0]->scale(), (Point{2, 4})) << "corner scales by both factors";

    f.second->setAnchorsFast({});
    auto unlike = f.glyph->interpolate_error(factors({{"m01", 0.5}, {"m02", 0.5}}), nullptr);
    ASSERT_NE(unlike, nullptr);
    EXPECT_TRUE(unlike->shapes().empty()) << "anchors are part of the structure";
}

TEST(Interpolation, IncompatibleLayers)
{
    TwoMasters f;
    f.first->addShapeFast(rectanglePath(0, 0, 100, 100));
    f.first->setWidthFast(600);
    auto triangle = rectanglePath(0, 0, 300, 300);
    triangle->removeObjectFromNodesAtIndex(0);
    f.second->addShapeFast(triangle);
    f.second->setWidthFast(800);
    VLError error;
    auto shapeless = f.glyph->interpolate_error(factors({{"m01", 0.25}, {"m02", 0.75}, {"gone", 0.5}}), &error);
    ASSERT_NE(shapeless, nullptr);
    EXPECT_TRUE(shapeless->shapes().empty());
    EXPECT_EQ(shapeless->width(), 750) << "the widths are summed instead";
    EXPECT_NE(shapeless->layerId(), "m01");
    EXPECT_TRUE(error.domain.empty()) << "not an error";
    auto huge = f.glyph->interpolate_error(factors({{"m01", 1}, {"m02", 100000}}), nullptr);
    ASSERT_NE(huge, nullptr);
    EXPECT_EQ(huge->width(), 600) << "factors beyond reason leave the width alone";

    f.first->setShapesFast({VLPath::init(), rectanglePath(0, 0, 100, 100)});
    f.second->setShapesFast({std::make_shared<TestShape>(VLShapeType::Group), rectanglePath(0, 0, 300, 300)});
    EXPECT_EQ(f.first->compareString(), f.second->compareString());
    EXPECT_EQ(f.glyph->interpolate_error(factors({{"m01", 0.5}, {"m02", 0.5}}), &error), nullptr);
    EXPECT_EQ(error.domain, "VelmorErrorDomain");
    EXPECT_EQ(error.code, 125);
    EXPECT_EQ(error.localizedDescription(), "The glyph is not compatible.");
    EXPECT_EQ(f.glyph->interpolate_error(factors({{"m01", 0.5}, {"m02", 0.5}}), nullptr), nullptr);
}

TEST(Interpolation, HintsPairInTheirSortedOrderAsFarAsBothGo)
{
    TwoMasters f;
    f.first->setHintsFast({hint(VLHintType::Stem, true, 100, 10)});
    f.second->setHintsFast({hint(VLHintType::Stem, true, 30, 0), hint(VLHintType::Stem, true, 10, 20),
                            hint(VLHintType::Stem, true, 20, 0)});
    auto sum = f.glyph->interpolate_error(factors({{"m01", 0.5}, {"m02", 0.5}}), nullptr);
    ASSERT_TRUE(sum && sum->hints().size() == 1);
    EXPECT_EQ(sum->hints()[0]->origin(), 55) << "with the lowest of the source";
    EXPECT_EQ(sum->hints()[0]->width(), 15);

    auto reversed = f.glyph->interpolate_error(factors({{"m02", 0.5}, {"m01", 0.5}}), nullptr);
    ASSERT_NE(reversed, nullptr);
    auto stems = VLHint::_sortedHints(reversed->hints())[VLHintType::Stem];
    ASSERT_EQ(stems.size(), 3u);
    EXPECT_EQ(stems[0]->origin(), 10);
    EXPECT_EQ(stems[1]->origin(), 15);
    EXPECT_EQ(stems[2]->origin(), 55) << "only the template's first hint has a partner in the other layer";
}
