#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "support/TestDocuments.h"

#include <gtest/gtest.h>

namespace {

std::vector<std::string> idsOf(const std::vector<std::shared_ptr<VLLayer>>& layers)
{
    std::vector<std::string> ids;
    for (const auto& layer : layers) ids.push_back(layer->layerId());
    return ids;
}

// A layer of a glyph in a font with weight and width axes, so that rules have tags to show.
struct LayerInFont {
    std::shared_ptr<VLFont> font = VLFont::init();
    std::shared_ptr<VLGlyph> glyph = VLGlyph::init();
    std::shared_ptr<VLLayer> layer = VLLayer::init();

    LayerInFont()
    {
        font->setAxes({VLAxis::initWithName_tag("Weight", "wght"), VLAxis::initWithName_tag("Width", "wdth")});
        font->addGlyphFast(glyph);
        glyph->setParent(font);
        glyph->setLayer_forId(layer, "special");
        layer->setAssociatedMasterId("m01");
    }

    const std::string& axisId(size_t i) const { return font->axes()[i]->axisId(); }
    void setRules(ValueDictionary rules) { layer->setAttribute_forKey(Value(std::move(rules)), "axisRules"); }
};

Value limits(std::initializer_list<std::pair<const char*, double>> bounds)
{
    ValueDictionary dictionary;
    for (const auto& [key, value] : bounds) dictionary[key] = Value(value);
    return Value(std::move(dictionary));
}

} // namespace

TEST(LayerKinds, KindsKeysAndLookupsFromBothFormats)
{
    forEachLayerKindDocument([](const std::shared_ptr<VLFont>& font) {
        auto glyph = font->glyphForName("A");
        auto layer = [&](const char* id) { return glyph->layerForId(id); };

        EXPECT_TRUE(layer("light")->isMasterLayer());
        EXPECT_FALSE(layer("light")->isSpecialLayer());
        EXPECT_TRUE(layer("light")->isAnySpecialLayer());
        EXPECT_TRUE(layer("brace")->isBraceLayer());
        EXPECT_FALSE(layer("brace")->isMasterLayer());
        EXPECT_EQ(layer("brace")->layerGroupKey(), "") << "a brace layer groups with the masters";
        EXPECT_TRUE(layer("bracket-bold")->isBracketLayer());
        EXPECT_EQ(layer("bracket-bold")->layerGroupKey(), "[600\u2039wg]");
        EXPECT_TRUE(layer("palette-light")->isColorPaletteLayer());
        EXPECT_TRUE(layer("palette-light")->isAnyColorLayer());
        EXPECT_EQ(layer("palette-light")->layerGroupKey(), "Color 1");
        EXPECT_FALSE(layer("backup")->isAnySpecialLayer());
        EXPECT_EQ(layer("backup")->layerKey(), std::nullopt) << "a backup has a name but no key";

        const std::string bracketName = layer("bracket-bold")->name();
        EXPECT_EQ(layer("bracket-light")->layerKey(), bracketName);
        EXPECT_EQ(glyph->layerForKey_masterId(bracketName, "bold"), layer("bracket-bold"));
        EXPECT_EQ(glyph->layerForKey_masterId(bracketName, "other"), nullptr);
        EXPECT_EQ(glyph->layerForKey_masterId(layer("backup")->name(), "light"), nullptr);
        EXPECT_EQ(glyph->layerForName(bracketName), layer("bracket-light")) << "the first in the order of layers";
        EXPECT_EQ(glyph->layerForName_masterId(bracketName, "bold"), layer("bracket-bold"));
        EXPECT_EQ(idsOf(glyph->layersForName_masterIDs(bracketName, {"bold", "nowhere", "light"})),
                  (std::vector<std::string>{"bracket-bold", "bracket-light"}));

        EXPECT_TRUE(glyph->hasSpecialLayers());
        EXPECT_TRUE(glyph->hasBraceLayer());
        EXPECT_TRUE(glyph->hasBracketLayer());
        EXPECT_TRUE(glyph->isAnyColorGlyph());
        EXPECT_TRUE(glyph->isColorPaletteGlyph());
        EXPECT_FALSE(glyph->isFullColorGlyph());
        EXPECT_FALSE(glyph->isSVGColorGlyph());
        EXPECT_FALSE(glyph->isAppleColorGlyph());
    });
}

TEST(LayerKinds, SortedLayersFollowTheMasters)
{
    auto font = readTestDocument(layerKindDocuments[0]);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");
    glyph->layerForId("light");
    auto stray = VLLayer::init();
    glyph->setLayer_forId(stray, "stray");
    stray->setAssociatedMasterId("gone");
    EXPECT_EQ(idsOf(glyph->sortedLayers()),
              (std::vector<std::string>{"light", "brace", "bracket-light", "backup", "palette-light", "bold",
                                        "bracket-bold", "palette-bold", "stray"}));
}

TEST(LayerKinds, NearestLayerByLocation)
{
    auto font = readTestDocument(layerKindDocuments[0]);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");
    auto nearest = [&](std::vector<double> position, bool onlyBrace, double tolerance) {
        auto layer = glyph->layerNearestToPosition_associatedMasterId_onlyBraceLayer_tolerance(position, "light", onlyBrace,
                                                                                               tolerance);
        return layer ? layer->layerId() : std::string("none");
    };
    // The light master stands at (300, 75), its brace layer at (500, 90).
    EXPECT_EQ(nearest({390, 80}, false, 1000), "light");
    EXPECT_EQ(nearest({410, 85}, false, 1000), "brace");
    EXPECT_EQ(nearest({300, 75}, true, 1000), "brace") << "only brace layers";
    EXPECT_EQ(nearest({503, 94}, false, 5), "brace") << "a distance of 5 is within 5";
    EXPECT_EQ(nearest({504, 94}, false, 5), "none");
    EXPECT_EQ(nearest({500, 90, 0}, false, 1000), "none") << "a position in another space";
    EXPECT_EQ(glyph->layerNearestToPosition_associatedMasterId_onlyBraceLayer_tolerance({700, 100}, "bold", false, 1)->layerId(),
              "bold");
}

TEST(LayerKinds, GroupKeysDescribeRulesAndColours)
{
    LayerInFont f;
    EXPECT_EQ(f.layer->layerGroupKey(), "");
    EXPECT_EQ(f.layer->descriptionForAttributeAxisRules(), std::nullopt);
    f.setRules({{f.axisId(0), limits({{"min", 100}, {"max", 200}})}});
    EXPECT_EQ(f.layer->layerGroupKey(), "[100\u2039wg\u2039200]");
    f.setRules({{f.axisId(1), limits({{"max", 99.995}})}, {f.axisId(0), limits({{"min", 0.5}, {"max", 12.25}})}});
    EXPECT_EQ(f.layer->layerGroupKey(), "[0.5\u2039wg\u203912.25,\u2009wd\u2039100]")
        << "in the order of the axes, at most two decimals, the key made again after a change";
    f.setRules({{"unknown axis", limits({{"min", 1}})}, {f.axisId(0), limits({})}});
    EXPECT_EQ(f.layer->layerGroupKey(), "[]");
    f.layer->setAttribute_forKey(Value(3), "colorPalette");
    EXPECT_EQ(f.layer->layerGroupKey(), "[]Color 3");

    f.layer->setAttributes({{"colorPalette", Value("*")}});
    EXPECT_EQ(f.layer->descriptionForAttributeColor(), "Color *");
    f.layer->setAttributes({{"color", Value(1)}, {"sbixSize", Value(64)}});
    EXPECT_EQ(f.layer->descriptionForAttributeColor(), "Color");
    f.layer->removeAttributeForKey("color");
    EXPECT_EQ(f.layer->layerGroupKey(), "iColor 64");
    f.layer->setAttributes({{"svg", Value(1)}});
    EXPECT_EQ(f.layer->descriptionForAttributeColor(), "svg");
    f.layer->setAttributes({{"coordinates", Value(ValueDictionary())}});
    EXPECT_EQ(f.layer->descriptionForAttributeColor(), "");
}

TEST(LayerKinds, LayerKeyIsTheNameOnceAttributesAreSet)
{
    LayerInFont f;
    f.layer->setName("Alt");
    EXPECT_EQ(f.layer->layerKey(), std::nullopt);
    f.layer->setBracketLayer(true);
    EXPECT_EQ(f.layer->layerKey(), "Alt");
    f.layer->setName("Renamed");
    EXPECT_EQ(f.layer->layerKey(), "Alt") << "kept until reset";
    f.layer->resetLayerKey();
    EXPECT_EQ(f.layer->layerKey(), "Renamed");
    f.layer->setName("Again");
    f.layer->setAttributes({{"svg", Value(1)}});
    EXPECT_EQ(f.layer->layerKey(), "Again") << "new attributes drop the key";
}

TEST(LayerKinds, SettersAddAndRemoveTheirAttributes)
{
    LayerInFont f;
    EXPECT_FALSE(f.layer->isSpecialLayer());
    f.layer->setBraceLayer(true);
    f.layer->setAttribute_forKey(Value(ValueDictionary{{f.axisId(0), Value(5)}}), "coordinates");
    f.layer->setBraceLayer(true);
    EXPECT_EQ(f.layer->attributeForKey("coordinates").count(), 1u) << "an existing location stays";
    f.layer->setBraceLayer(false);
    EXPECT_FALSE(f.layer->isBraceLayer());

    std::vector<std::pair<void (VLLayer::*)(bool), bool (VLLayer::*)() const>> kinds = {
        {&VLLayer::setBracketLayer, &VLLayer::isBracketLayer},
        {&VLLayer::setFullColorLayer, &VLLayer::isFullColorLayer},
        {&VLLayer::setColorPaletteLayer, &VLLayer::isColorPaletteLayer},
        {&VLLayer::setAppleColorLayer, &VLLayer::isAppleColorLayer},
        {&VLLayer::setSVGColorLayer, &VLLayer::isSVGColorLayer},
    };
    for (const auto& [set, is] : kinds) {
        ((*f.layer).*set)(true);
        EXPECT_TRUE(((*f.layer).*is)());
        EXPECT_TRUE(f.layer->isSpecialLayer());
        ((*f.layer).*set)(false);
        EXPECT_FALSE(((*f.layer).*is)());
        EXPECT_FALSE(f.layer->isAnyColorLayer());
    }
    f.layer->setPartSelection({{"size", Value(1)}});
    EXPECT_TRUE(f.layer->isSmartComponentLayer());
    EXPECT_TRUE(f.layer->isSpecialLayer());
}

TEST(LayerKinds, RulesMatchCoordinatesWithinInclusiveBounds)
{
    auto coordinates = [](double a) { return Value(ValueDictionary{{"a", Value(a)}}); };
    Value atLeastTen(ValueDictionary{{"a", limits({{"min", 10}})}});
    EXPECT_TRUE(VLLayer::rule_matchesCoordinates(atLeastTen, coordinates(10)));
    EXPECT_FALSE(VLLayer::rule_matchesCoordinates(atLeastTen, coordinates(9.99)));
    EXPECT_TRUE(VLLayer::rule_matchesCoordinates(atLeastTen, Value(ValueDictionary{{"b", Value(0)}})));
    Value upToTwenty(ValueDictionary{{"a", limits({{"max", 20}})}});
    EXPECT_TRUE(VLLayer::rule_matchesCoordinates(upToTwenty, coordinates(20)));
    EXPECT_FALSE(VLLayer::rule_matchesCoordinates(upToTwenty, coordinates(20.01)));
    EXPECT_TRUE(VLLayer::rule_matchesCoordinates(Value(ValueDictionary()), coordinates(5)));
    Value both(ValueDictionary{{"a", limits({{"min", 10}})}, {"b", limits({{"max", 0}})}});
    EXPECT_FALSE(VLLayer::rule_matchesCoordinates(both, Value(ValueDictionary{{"a", Value(15)}, {"b", Value(1)}})))
        << "every axis must match";
}
