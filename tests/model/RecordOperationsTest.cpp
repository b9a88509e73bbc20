#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLHint.h"
#include "platform/VLUnsetValue.h"
#include "support/TestShapes.h"

#include <gtest/gtest.h>

TEST(ShapeAttributes, ColoursAndNumbersAreNormalised)
{
    TestShape shape(VLShapeType::Path);
    shape.setAttribute_forKey(Value("255,0,0,255"), "fillColor");
    ASSERT_TRUE(shape.attributeForKey("fillColor").isColor());
    EXPECT_EQ(shape.attributeForKey("fillColor").color()->rgba()[0], 1.0);
    shape.setAttribute_forKey(Value("12"), "strokeWidth");
    EXPECT_TRUE(shape.attributeForKey("strokeWidth").isInteger());
    shape.setAttribute_forKey(Value("1.5"), "strokeHeight");
    EXPECT_EQ(shape.attributeForKey("strokeHeight"), Value(1.5));
    shape.setAttribute_forKey(Value("wide"), "strokeWidth");
    EXPECT_EQ(shape.attributeForKey("strokeWidth"), Value("wide")) << "text that is no number stays";
    shape.setAttribute_forKey(Value(), "strokeWidth");
    EXPECT_TRUE(shape.attributeForKey("strokeWidth").isNull());

    VLStrokeSettings settings{};
    shape.setAttribute_forKey(Value(40), "strokeWidth");
    shape.setAttribute_forKey(Value(3.0), "strokePos");
    shape.setAttribute_forKey(Value(2500), "lineCapStart");
    EXPECT_TRUE(shape.getStrokeSettings(settings));
    EXPECT_EQ(settings.width, 40);
    EXPECT_EQ(settings.height, 1.5) << "the height set before";
    EXPECT_EQ(settings.pos, 1.0) << "clamped";
    EXPECT_EQ(settings.capStart, 0) << "out of range";
    EXPECT_EQ(settings.join, 2);
    shape.scaleAttributes(2);
    EXPECT_EQ(shape.attributeForKey("strokeWidth").doubleValue(), 80);
}

TEST(MasterGrid, ParametersOverrideTheFontsGrid)
{
    auto font = VLFont::init();
    font->setGridMain(10);
    auto master = font->fontMasterAtIndex(0);
    EXPECT_EQ(master->gridMain(), 10u) << "the font's grid without parameters";
    master->setGridMain(4);
    master->setSubDivision(2);
    EXPECT_EQ(master->gridMain(), 4u);
    EXPECT_DOUBLE_EQ(master->gridLength(), 2.0);
    EXPECT_EQ(master->customValueForKey("gridMain"), Value(4));
    master->setGridMain(100000);
    EXPECT_TRUE(master->customValueForKey("gridMain").isNull());
}

TEST(FontOperations, AllGlyphsAndMasterIds)
{
    auto font = VLFont::init();
    auto a = VLGlyph::initFast();
    a->setNameFast("a");
    font->setGlyphs({a});
    auto importedA = VLGlyph::initFast();
    importedA->setNameFast("a");
    auto importedB = VLGlyph::initFast();
    importedB->setNameFast("b");
    font->setImportedGlyphs({importedA, importedB});
    auto all = font->allGlyphs();
    ASSERT_EQ(all.size(), 2u);
    EXPECT_EQ(all[0], a);
    EXPECT_EQ(all[1], importedB);

    auto layer = a->layerForId("m01");
    font->fontMasterAtIndex(0)->setId(std::string("m02"));
    font->replaceMasterID_toID("m01", "m02");
    EXPECT_EQ(a->layerForIdFast("m02"), layer);
    EXPECT_EQ(a->layerForIdFast("m01"), nullptr);
    EXPECT_EQ(layer->associatedMasterId(), "m02");
}

TEST(GlyphCopy, CopiesLayersAndKeepsTheId)
{
    auto font = VLFont::init();
    auto glyph = VLGlyph::initFast();
    glyph->setNameFast("A");
    glyph->setId("stable");
    font->setGlyphs({glyph});
    glyph->layerForId("m01")->addShapeFast(rectanglePath(0, 0, 10, 10));
    auto copy = glyph->copy();
    EXPECT_EQ(copy->id(), "stable");
    EXPECT_EQ(copy->parent(), nullptr);
    ASSERT_EQ(copy->countOfLayers(), 1u);
    EXPECT_NE(copy->layerForIdFast("m01"), glyph->layerForIdFast("m01"));
    EXPECT_EQ(copy->layerForIdFast("m01")->parent(), copy);
    EXPECT_EQ(copy->layerForIdFast("m01")->countOfShapes(), 1u);
}

TEST(FontCopy, DeepCopiesMastersMetricsAndGlyphs)
{
    auto font = VLFont::init();
    font->fontMasterAtIndex(0)->setDefaultAscender(720);
    font->addCustomParameter(VLCustomParameter::initWithName_value(std::string("note"), Value("x")));
    auto glyph = VLGlyph::initFast();
    glyph->setNameFast("A");
    glyph->setId("stable");
    font->setGlyphs({glyph});

    auto copy = font->copy();
    EXPECT_FALSE(copy->isUpdateInterfaceEnabled());
    ASSERT_EQ(copy->fontMasters().size(), 1u);
    auto master = copy->fontMasterAtIndex(0);
    EXPECT_NE(master, font->fontMasterAtIndex(0));
    EXPECT_EQ(master->font(), copy.get());
    EXPECT_EQ(master->defaultAscender(), 720);
    master->setDefaultAscender(600);
    font->fontMasterAtIndex(0)->setNeedsUpdateCachedVerticalMetrics();
    EXPECT_EQ(font->fontMasterAtIndex(0)->defaultAscender(), 720) << "the copy's values are its own";
    EXPECT_EQ(copy->customValueForKey("note"), Value("x"));
    EXPECT_EQ(copy->glyphForName("A")->id(), "stable");
    EXPECT_EQ(copy->glyphForName("A")->parent(), copy);
}

TEST(ChildRecords, JoinersGetTheRecordAndLeaversLetGoUnlessTakenSince)
{
    auto font = VLFont::init();
    auto other = VLFont::init();
    auto left = VLGlyph::initFast(), moved = VLGlyph::initFast(), kept = VLGlyph::initFast();
    font->setGlyphs({left, moved});
    other->addGlyphFast(moved);
    font->setGlyphs({kept});
    EXPECT_EQ(left->parent(), nullptr);
    EXPECT_EQ(moved->parent(), other) << "a glyph that another font took stays there";
    EXPECT_EQ(kept->parent(), font);
    font->addGlyphFast(nullptr);
    EXPECT_EQ(font->count(), 1u);

    auto axis = VLAxis::initWithName_tag("Weight", "wght");
    font->addAxis(axis);
    EXPECT_EQ(axis->parent(), font);
    font->setAxes({});
    EXPECT_EQ(axis->parent(), nullptr);

    auto layer = VLLayer::init();
    auto first = VLHint::init(), second = VLHint::init(), third = VLHint::init();
    layer->setHintsFast({first, second});
    layer->replaceObjectInHintsAtIndex_withObject(0, third);
    EXPECT_EQ(first->parent(), nullptr);
    EXPECT_EQ(third->parent(), layer);
    layer->insertObject_inHintsAtIndex(first, 3);
    EXPECT_EQ(first->parent(), nullptr) << "an index past the end adds nothing";
    layer->insertObject_inHintsAtIndex(first, 0);
    EXPECT_EQ(layer->hints(), (VLLayer::Hints{first, third, second}));
    layer->removeHint(second);
    EXPECT_EQ(second->parent(), nullptr);
    layer->setHintsFast({third});
    EXPECT_EQ(first->parent(), nullptr);
    EXPECT_EQ(third->parent(), layer);
}
