#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "support/TestDocuments.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

TEST(Compatibility, FingerprintsOfMasterLayers)
{
    auto font = VLFont::init();
    auto second = VLFontMaster::initFast();
    second->setId(std::string("m02"));
    font->addFontMaster(second);
    auto glyph = VLGlyph::initFast();
    glyph->setNameFast("A");
    font->setGlyphs({glyph});
    glyph->layerForId("m01")->addShapeFast(rectanglePath(0, 0, 10, 10));
    glyph->layerForId("m02")->addShapeFast(rectanglePath(0, 0, 20, 20));
    EXPECT_EQ(glyph->layerForId("m01")->compareString(), "llll_");
    EXPECT_TRUE(glyph->mastersCompatibleForLayerIds({"m01", "m02"}));

    auto open = rectanglePath(0, 0, 20, 20);
    open->setClosed(false);
    glyph->layerForId("m02")->setShapesFast({open});
    EXPECT_FALSE(glyph->mastersCompatibleForLayerIds({"m01", "m02"}));
    EXPECT_TRUE(glyph->mastersCompatible()) << "without axes nothing varies";
    font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
    EXPECT_FALSE(glyph->mastersCompatible());
    glyph->layerForId("m02")->setShapesFast({rectanglePath(0, 0, 20, 20)});
    EXPECT_FALSE(glyph->mastersCompatible()) << "kept until the layers change";

    auto dot = VLPath::init();
    dot->addNodeFastWithPosition_type_connection({5, 5}, VLNodeType::LINE, VLNode::SHARP);
    dot->setClosed(false);
    auto corner = VLHint::init();
    corner->setType(VLHintType::Corner);
    corner->setName("_corner.round");
    corner->setOriginIndex({0, 12});
    auto layer = glyph->layerForId("m01");
    layer->setShapesFast({dot, VLPath::init()});
    layer->setHintsFast({corner});
    EXPECT_EQ(layer->compareString(), "l|_&&_corner.round@@0,12") << "a path of one node counts, an empty one not";
}

namespace {

using Ids = std::vector<std::string>;

// An extra node in the layer, so that it no longer matches the others.
void breakLayer(VLGlyph& glyph, const std::string& layerId)
{
    auto path = std::static_pointer_cast<VLPath>(glyph.layerForId(layerId)->shapes()[0]);
    path->addNodeFastWithPosition_type_connection({5, 5}, VLNodeType::LINE, VLNode::SHARP);
}

} // namespace

TEST(Compatibility, LayerGroupsFromBothFormats)
{
    forEachLayerKindDocument([](const std::shared_ptr<VLFont>& font) {
        auto glyph = font->glyphForName("A");
        EXPECT_EQ(glyph->layerGroups(), (VLGlyph::LayerGroups{{"light", "bold", "brace"},
                                                              {"palette-light", "palette-bold"},
                                                              {"bracket-light", "bracket-bold"}}))
            << "the backup takes part in none";
        EXPECT_TRUE(glyph->mastersCompatible());
    });
}

TEST(Compatibility, EveryGroupMustMatchButBackupsAreFree)
{
    for (const char* layerId : {"backup", "brace", "bracket-bold", "palette-light", "bold"}) {
        SCOPED_TRACE(layerId);
        auto font = readTestDocument(layerKindDocuments[0]);
        ASSERT_NE(font, nullptr);
        auto glyph = font->glyphForName("A");
        breakLayer(*glyph, layerId);
        EXPECT_EQ(glyph->mastersCompatible(), std::string(layerId) == "backup");
    }
}

TEST(Compatibility, GroupsOfSpecialLayers)
{
    auto font = readTestDocument(layerKindDocuments[0]);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");
    glyph->layerForId("light");
    glyph->removeLayerForId("bracket-bold");
    glyph->removeLayerForId("palette-bold");
    auto second = VLLayer::init();
    glyph->setLayer_forId(second, "palette-light-2");
    second->setAssociatedMasterId("light");
    second->setAttributes({{"colorPalette", Value(1)}});
    EXPECT_EQ(glyph->layerGroups(), (VLGlyph::LayerGroups{{"light", "bold", "brace", "bracket-light"},
                                                          {"palette-light"},
                                                          {"palette-light-2"}}))
        << "a bracket layer of one master is completed by the other masters, repeated palette layers stay apart";

    glyph->removeLayerForId("palette-light");
    glyph->removeLayerForId("palette-light-2");
    EXPECT_EQ(glyph->layerGroups(), (VLGlyph::LayerGroups{{"light", "bold", "brace", "bracket-light"}}));

    auto smartFont = readTestDocument(layerKindDocuments[0]);
    auto smart = smartFont->glyphForName("A");
    smart->layerForId("backup")->setPartSelection({{"size", Value(1)}});
    smart->layerForId("bracket-bold")->setPartSelection({{"size", Value(2)}});
    smart->setNameFast("_part.stem");
    EXPECT_EQ(smart->layerGroups()[2], (Ids{"bracket-light", "bracket-bold", "backup"}))
        << "the smart layers join the group of one of them";
    EXPECT_EQ(smart->layerGroups_masters_error({}, nullptr).size(), 3u) << "no masters to complete the groups";

    auto font2 = VLFont::init();
    auto master = VLFontMaster::initFast();
    master->setId(std::string("m02"));
    font2->addFontMaster(master);
    auto plain = VLGlyph::initFast();
    font2->setGlyphs({plain});
    plain->setLayer_forId(VLLayer::init(), "m02");
    EXPECT_EQ(plain->layerGroups(), (VLGlyph::LayerGroups{{"m02", "m01"}})) << "a master without layer joins by id";
}

TEST(Compatibility, ColourLayersPairByTheirPlaceInEachMaster)
{
    auto layer = [](const char* id, const char* master, const char* name, ValueDictionary attributes) {
        auto l = VLLayer::init();
        l->setLayerId(id);
        l->setAssociatedMasterId(master);
        l->setName(name);
        l->setAttributes(std::move(attributes));
        return l;
    };
    ValueDictionary color{{"color", Value(1)}};
    std::vector<std::shared_ptr<VLLayer>> layers = {
        layer("a1", "a", "x", color), layer("m", "b", "", {}), layer("b1", "b", "x", color),
        layer("a2", "a", "y", color), layer("b2", "b", "y", color)};
    auto groups = VLGlyph::_colorLayerGroups(layers);
    ASSERT_EQ(groups.size(), 2u);
    EXPECT_EQ(groups[1][0]->layerId(), "a2");
    EXPECT_EQ(groups[1][1]->layerId(), "b2");
    layers.push_back(layer("b3", "b", "z", color));
    EXPECT_TRUE(VLGlyph::_colorLayerGroups(layers).empty()) << "the masters' keys differ";
}

TEST(Compatibility, LayerGroupsAreBoundedInTheirMembers)
{
    auto font = VLFont::init();
    font->addAxis(VLAxis::initWithName_tag("Weight", "wght"));
    for (int i = 2; i <= 520; ++i) {
        auto master = VLFontMaster::initFast();
        master->setId("m" + std::to_string(i));
        font->addFontMaster(master);
    }
    auto glyph = VLGlyph::initFast();
    font->setGlyphs({glyph});
    glyph->layerForId("m01");
    for (int k = 0; k < 510; ++k) {
        auto bracket = VLLayer::init();
        glyph->setLayer_forId(bracket, "bracket" + std::to_string(k));
        bracket->setAssociatedMasterId("m01");
        ValueDictionary rule{{"min", Value(k)}};
        bracket->setAttributes({{"axisRules", Value(ValueDictionary{{font->axes()[0]->axisId(), Value(rule)}})}});
    }
    VLError error;
    EXPECT_TRUE(glyph->layerGroups(&error).empty()) << "510 groups of 520 masters each";
    EXPECT_EQ(error.code, 125);
    EXPECT_FALSE(glyph->mastersCompatible()) << "the masters are drawn apart";

    for (int k = 0; k < 10; ++k) glyph->removeLayerForId("bracket" + std::to_string(k));
    EXPECT_TRUE(glyph->mastersCompatible()) << "asked again once the layers change";
    auto groups = glyph->layerGroups();
    ASSERT_EQ(groups.size(), 1u) << "every group shares the masters";
    EXPECT_EQ(groups[0].size(), 520u + 500u);
}
