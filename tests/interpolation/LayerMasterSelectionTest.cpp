#include "interpolation/MALocationIndex.h"
#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "model/VLPartProperty.h"
#include "support/SmartGlyphInFont.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

// The factors as (key, share) pairs in their order, for comparisons that name every key.
std::vector<std::pair<std::string, double>> entries(const std::optional<VLFactors>& factors)
{
    std::vector<std::pair<std::string, double>> result;
    if (!factors) return result;
    factors->enumerateKeysAndObjectsUsingBlock(
        [&](const std::string& key, const VLFactor& factor, bool&) { result.emplace_back(key, factor.x); });
    return result;
}

void expectEntries(const std::optional<VLFactors>& factors, const std::vector<std::pair<std::string, double>>& expected,
                   const char* note = "")
{
    SCOPED_TRACE(note);
    auto actual = entries(factors);
    ASSERT_EQ(actual.size(), expected.size()) << "factors for " << expected.size() << " layers";
    for (size_t i = 0; i < expected.size(); ++i) {
        EXPECT_EQ(actual[i].first, expected[i].first);
        EXPECT_NEAR(actual[i].second, expected[i].second, 1e-9) << actual[i].first;
    }
}

ValueDictionary at(double width, double height)
{
    return {{"width", Value(width)}, {"height", Value(height)}};
}

void setCustomValue(VLFont& font, const std::string& name, bool value)
{
    font.addCustomParameter(VLCustomParameter::initWithName_value(name, Value(value)));
}

// Part axes of the names, 0 to 100 each.
std::vector<std::shared_ptr<VLPartProperty>> partAxes(size_t count)
{
    std::vector<std::shared_ptr<VLPartProperty>> axes;
    for (size_t i = 0; i < count; ++i) axes.push_back(VLPartProperty::initWithName_bottom_top("p" + std::to_string(i), 0, 100));
    return axes;
}

} // namespace

TEST(LayerMasterSelection, TheSolverBlendsTheCornerLayersAndGoesBeyondThem)
{
    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    expectEntries(base->factorsCoeff(at(100, 200)), {{"both", 1}});
    expectEntries(base->factorsCoeff(at(0, 0)), {{"m01", 1}});
    expectEntries(base->factorsCoeff(at(50, 100)), {{"m01", 0.25}, {"wide", 0.25}, {"tall", 0.25}, {"both", 0.25}});
    expectEntries(base->factorsCoeff(at(25, 150)),
                  {{"m01", 0.75 * 0.25}, {"wide", 0.25 * 0.25}, {"tall", 0.75 * 0.75}, {"both", 0.25 * 0.75}});
    expectEntries(base->factorsCoeff({{"width", Value(100)}}), {{"wide", 1}},
                  "an axis left out stays at the end of the layer asked");
    expectEntries(f.part->layerForId("tall")->factorsCoeff({{"width", Value(100)}}), {{"both", 1}});

    // The middle is the weighted sum of the layers, node by node, the odd node of "both" too.
    auto middle = base->pieceInterpolate(at(50, 100));
    ASSERT_NE(middle, nullptr);
    EXPECT_EQ(middle->parent(), nullptr);
    std::vector<Point> expected(4, Point{0, 0});
    for (const char* id : {"m01", "wide", "tall", "both"}) {
        auto nodes = firstPathNodes(f.part->layerForId(id));
        ASSERT_EQ(nodes.size(), 4u);
        for (size_t i = 0; i < 4; ++i) expected[i] = {expected[i].x + 0.25 * nodes[i].x, expected[i].y + 0.25 * nodes[i].y};
    }
    EXPECT_EQ(firstPathNodes(middle), expected);
    EXPECT_EQ(firstPathNodes(middle)[2], (Point{7.5, 125})) << "(0 + 0 + 0 + 30, 20 + 20 + 220 + 240) / 4";

    // Past the end of an axis the solver extrapolates: 150 makes the rectangle 160 wide.
    auto beyond = base->pieceInterpolate(at(150, 0));
    ASSERT_NE(beyond, nullptr);
    EXPECT_EQ(firstPathNodes(beyond)[0], (Point{160, 0}));
    EXPECT_EQ(firstPathNodes(beyond)[1], (Point{160, 20}));
    auto below = base->pieceInterpolate(at(0, -100));
    ASSERT_NE(below, nullptr);
    EXPECT_EQ(firstPathNodes(below)[1], (Point{10, -80}));
}

TEST(LayerMasterSelection, OneLayerAtAPlaceAndTheLayersThatTakePart)
{
    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    // A second layer at the place of "wide" is left out, so that the place is not weighed twice.
    f.addLayer("wide again", 2, 1)->addShapeFast(rectanglePath(0, 0, 500, 20));
    expectEntries(base->factorsCoeff(at(50, 100)), {{"m01", 0.25}, {"wide", 0.25}, {"tall", 0.25}, {"both", 0.25}});
    f.part->removeLayerForId("wide");
    expectEntries(base->factorsCoeff(at(100, 0)), {{"wide again", 1}}, "the first at its place, whatever its id");

    // Layers of another master take no part, nor layers without a part selection.
    auto other = VLFontMaster::initFast();
    other->setId(std::string("m02"));
    f.font->addFontMaster(other);
    f.part->removeLayerForId("wide again");
    f.addLayer("elsewhere", 2, 1)->setAssociatedMasterId("m02");
    f.part->layerForId("m02")->addShapeFast(rectanglePath(0, 0, 1, 1));
    auto plain = VLLayer::init();
    plain->setAssociatedMasterId("m01");
    f.part->setLayer_forId(plain, "plain");
    expectEntries(base->factorsCoeff(at(100, 0)), {{"m01", 1}, {"tall", -1}, {"both", 1}});
    // A weight axis mixes the layers of all masters.
    auto weight = VLPartProperty::initWithName_bottom_top("Weight", 0, 100);
    weight->setAxisId("width");
    f.part->setPartsSettings({weight, f.part->partsSettings()[1]});
    expectEntries(base->factorsCoeff(at(100, 0)), {{"elsewhere", 1}});

    // A smart glyph of one layer gives that layer; a glyph of no smart layer, the layer asked.
    auto single = VLGlyph::initFast();
    single->setNameFast("single");
    single->setPartsSettings({VLPartProperty::initWithName_bottom_top("size", 0, 10)});
    f.font->addGlyphFast(single);
    single->setParent(f.font);
    single->layerForId("m01")->setPartSelection({{"size", Value(2)}});
    expectEntries(single->layerForId("m01")->factorsCoeff({{"size", Value(3)}}), {{"m01", 1}});
    expectEntries(single->layerForId("m01")->factorsMM({{"size", Value(3)}}), {{"m01", 1}});
    expectEntries(single->layerForId("m01")->factorsMA({{"size", Value(3)}}), {{"m01", 1}});
    single->layerForId("m01")->setPartSelection({});
    expectEntries(single->layerForId("m01")->factorsCoeff({{"size", Value(3)}}), {{"m01", 1}});
    expectEntries(single->layerForId("m02")->factorsMA({{"size", Value(3)}}), {{"m02", 1}});
}

TEST(LayerMasterSelection, BraceLayersStandAtTheirCoordinates)
{
    SmartGlyphInFont f;
    auto brace = f.addLayer("brace", 1, 1);
    brace->setPartSelection({});
    brace->setAttribute_forKey(Value(ValueDictionary{{"width", Value(50)}}), "coordinates");
    brace->addShapeFast(rectanglePath(0, 0, 300, 20));
    auto base = f.part->layerForId("m01");
    // At (50, 0): the height the brace layer does not name is the receiver's end of it.
    expectEntries(base->factorsCoeff(at(50, 0)), {{"brace", 1}});
    expectEntries(base->factorsCoeff(at(25, 0)), {{"m01", 0.5}, {"brace", 0.5}});
    // Not in the product of weights, which takes smart layers only.
    expectEntries(base->factorsMM(at(50, 0)), {{"m01", 0.5}, {"wide", 0.5}});
}

TEST(LayerMasterSelection, CoefficientsAreTidiedInTheOrderOfTheMasters)
{
    std::vector<std::vector<double>> masters{{0}, {1}, {2}, {3}};
    std::vector<std::string> ids{"a", "b", "c", "d"};
    // 0.0004 and -0.0002 go, and their sum goes to the kept ones in equal parts.
    expectEntries(VLLayer::computeInterpolationMasters_solution_masterIds(masters, {0.0004, 0.4996, -0.0002, 0.5006}, ids),
                  {{"b", 0.4997}, {"d", 0.5007}});
    expectEntries(VLLayer::computeInterpolationMasters_solution_masterIds(masters, {0.5, 0.0004, 0.2, 0.2996}, ids),
                  {{"a", 0.5 + 0.0004 / 3}, {"c", 0.2 + 0.0004 / 3}, {"d", 0.2996 + 0.0004 / 3}});
    expectEntries(VLLayer::computeInterpolationMasters_solution_masterIds(masters, {0.0006, 0.4994, 0.2, 0.3}, ids),
                  {{"a", 0.0006}, {"b", 0.4994}, {"c", 0.2}, {"d", 0.3}});
    // One coefficient beyond 100 gives nothing at all.
    EXPECT_FALSE(VLLayer::computeInterpolationMasters_solution_masterIds(masters, {-150, 150, 0.5, 0.5}, ids));
    EXPECT_TRUE(VLLayer::computeInterpolationMasters_solution_masterIds(masters, {-100, 100, 0.5, 0.5}, ids));
    // Counts that don't match, and coefficients that are no numbers, give no factors.
    auto mismatch = VLLayer::computeInterpolationMasters_solution_masterIds(masters, {1}, ids);
    ASSERT_TRUE(mismatch);
    EXPECT_TRUE(mismatch->empty());
    auto broken = VLLayer::computeInterpolationMasters_solution_masterIds(masters, {NAN, NAN, NAN, NAN}, ids);
    ASSERT_TRUE(broken);
    EXPECT_TRUE(broken->empty());
}

TEST(LayerMasterSelection, UnusualTargetsAreLoggedAndFarTargetsHeldWithFiveAxes)
{
    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    std::vector<double> target;
    testing::internal::CaptureStderr();
    VLLayer::computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(
        base->axes(), *base, {100, 200}, {0, 0}, 2, at(20000, 30), target);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Very unusual piece setting: width=20000.000 (part)\n");
    EXPECT_EQ(target, (std::vector<double>{0, 30}));

    // Six axes that span 0 to 100: 1000 is held at 100 + 1.5 * 100, -1000 at -150.
    ValueDictionary far{{"p0", Value(1000)}, {"p5", Value(-1000)}, {"p2", Value(70)}};
    std::vector<double> spans(6, 100), starts(6, 0);
    target.clear();
    VLLayer::computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(partAxes(6), *base, spans, starts, 6,
                                                                                  far, target);
    EXPECT_EQ(target, (std::vector<double>{250, 100, 70, 100, 100, -150})) << "the layer's own ends for the others";
    target.clear();
    VLLayer::computeTargetCoeff_layer_axesMax_axesMin_axisCount_smartSettings_target(partAxes(4), *base, spans, starts, 4,
                                                                                  far, target);
    EXPECT_EQ(target, (std::vector<double>{1000, 100, 70, 100})) << "with four, as far as it is";

    // Far out on a short axis the solver's coefficients pass 100: no layer.
    auto narrow = VLGlyph::initFast();
    narrow->setNameFast("narrow");
    narrow->setPartsSettings({VLPartProperty::initWithName_bottom_top("size", 0, 1)});
    f.font->addGlyphFast(narrow);
    narrow->setParent(f.font);
    narrow->layerForId("m01")->setPartSelection({{"size", Value(1)}});
    f.addLayer("big", 1, 1, narrow)->setPartSelection({{"size", Value(2)}});
    auto shortAxis = narrow->layerForId("m01");
    EXPECT_NE(shortAxis->pieceInterpolate({{"size", Value(99)}}), nullptr);
    EXPECT_EQ(shortAxis->pieceInterpolate({{"size", Value(102)}}), nullptr);
}

TEST(LayerMasterSelection, ProductOfWeightsTakesEveryMasterOffTheLowEndForTheTop)
{
    // One axis: the low end weighs (range - (t - p)) / range, every other master (range - (p - t)) / range.
    auto weights = VLLayer::computeMM_target_axesMax_axesMin_axisCount({{0}, {50}, {100}}, {25}, {100}, {0}, 1);
    EXPECT_EQ(weights, (std::vector<double>{0.75, 0.75, 0.25})) << "the master in the middle counts as a top";
    weights = VLLayer::computeMM_target_axesMax_axesMin_axisCount({{100}, {150}, {300}}, {125}, {300}, {100}, 1);
    EXPECT_EQ(weights, (std::vector<double>{0.875, 0.875, 0.125})) << "measured from the low end of the range";
    // Two axes multiply; beyond the range weights turn negative.
    weights = VLLayer::computeMM_target_axesMax_axesMin_axisCount({{0, 0}, {100, 0}, {0, 200}, {100, 200}}, {150, 50},
                                                                  {100, 200}, {0, 0}, 2);
    EXPECT_EQ(weights, (std::vector<double>{-0.5 * 0.75, 1.5 * 0.75, -0.5 * 0.25, 1.5 * 0.25}));

    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    expectEntries(base->factorsMM(at(50, 100)), {{"m01", 0.25}, {"wide", 0.25}, {"tall", 0.25}, {"both", 0.25}});
    f.part->setPartsSettings({});
    EXPECT_FALSE(base->factorsMM(at(50, 100))) << "no axes at all";
}

TEST(LayerMasterSelection, TheDeltaModelWeighsTheSmartLayers)
{
    SmartGlyphInFont f;
    auto base = f.part->layerForId("m01");
    expectEntries(base->factorsMA(at(50, 100)), {{"m01", 0.25}, {"wide", 0.25}, {"tall", 0.25}, {"both", 0.25}});
    expectEntries(base->factorsMA(at(100, 0)), {{"wide", 1}});
    expectEntries(base->factorsMA(at(150, 0)), {{"m01", -0.5}, {"wide", 1.5}});
    auto masters = base->computeMasters(base->axes());
    ASSERT_EQ(masters.size(), 4u);
    EXPECT_EQ(masters[3]->id(), "both");
    EXPECT_EQ(masters[3]->posAtIndex(0), 100);
    EXPECT_EQ(masters[3]->posAtIndex(1), 200);
}

TEST(LayerMasterSelection, TheFontChoosesTheModel)
{
    // Without "both", (100, 200) lies outside the three layers: the solver and the delta model
    // extrapolate, the product of weights gives every layer 0 and so nothing.
    SmartGlyphInFont f;
    f.part->removeLayerForId("both");
    auto base = f.part->layerForId("m01");
    auto solved = base->pieceInterpolate(at(100, 200));
    ASSERT_NE(solved, nullptr);
    EXPECT_EQ(firstPathNodes(solved)[1], (Point{110, 220}));
    setCustomValue(*f.font, "Smart Components MM Mode", true);
    EXPECT_EQ(base->pieceInterpolate(at(100, 200)), nullptr);
    setCustomValue(*f.font, "Smart Components Compatibility Mode", true);
    auto delta = base->pieceInterpolate(at(100, 200));
    ASSERT_NE(delta, nullptr) << "the compatibility mode wins";
    EXPECT_EQ(firstPathNodes(delta)[1], (Point{110, 220}));
}

TEST(LayerMasterSelection, AxesOfGlyphsWithoutPartAxes)
{
    SmartGlyphInFont f;
    EXPECT_EQ(f.part->layerForId("m01")->axes(), f.part->partsSettings());
    auto weight = VLAxis::initWithName_tag("Weight", "wght");
    weight->setAxisId("a01");
    f.font->addAxis(weight);
    auto axes = f.layer->axes();
    ASSERT_EQ(axes.size(), 1u);
    EXPECT_EQ(axes[0]->axisId(), "a01");
    EXPECT_EQ(axes[0]->name(), "Weight");
    EXPECT_EQ(axes[0]->valueForPartSetting(Value(1)), 0);
    EXPECT_EQ(axes[0]->valueForPartSetting(Value()), 0);

    f.font->glyphForName("A")->setNameFast("_corner.round");
    axes = f.layer->axes();
    ASSERT_EQ(axes.size(), 2u);
    EXPECT_EQ(axes[0]->axisId(), "wdth");
    EXPECT_EQ(axes[1]->axisId(), "hght");
    EXPECT_EQ(VLLayer::_valueForPartSetting(1), 0);
    EXPECT_EQ(VLLayer::_valueForPartSetting(2), 1);
    EXPECT_EQ(VLLayer::_valueForPartSetting(0), 1);
}
