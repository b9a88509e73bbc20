#include "model/VLAxis.h"
#include "model/VLCustomParameter.h"
#include "model/VLElement.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLInstance.h"
#include "model/VLLayer.h"
#include "model/VLMetric.h"
#include "model/VLMetricValue.h"
#include "outline/VLPath.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

std::shared_ptr<VLFont> readFont(const std::string& text)
{
    TemporaryFile file(text);
    VLError error;
    return VLFont::initWithURL_error(file.path, &error);
}

// A format-1 document: one master record per entry.
std::shared_ptr<VLFont> readOlderFont(const std::vector<std::string>& masters, const std::string& rest = "")
{
    std::string text = "{\nfontMaster = (\n";
    for (size_t i = 0; i < masters.size(); ++i) text += (i ? ",\n{\n" : "{\n") + masters[i] + "}";
    return readFont(text + "\n);\n" + rest + "}\n");
}

std::vector<std::string> tagsOf(const VLFont& font)
{
    std::vector<std::string> tags;
    for (const auto& axis : font.axes()) tags.push_back(axis->axisTag());
    return tags;
}

// A layer of a glyph of the font, for the layer part of the pass.
std::shared_ptr<VLLayer> layerIn(const std::shared_ptr<VLFont>& font, const std::string& name,
                                 const std::string& masterId = "m01")
{
    auto glyph = VLGlyph::init();
    font->addGlyphFast(glyph);
    auto layer = VLLayer::init();
    layer->setName(name);
    glyph->setLayer_forId(layer, "L-" + name);
    layer->setAssociatedMasterId(masterId);
    return layer;
}

// A shape whose fill pattern file is stored as the document says.
class PatternShape : public VLElement {
public:
    explicit PatternShape(const std::string& file) { _attributes["fillPatternFile"] = Value(file); }
    VLShapeType shapeType() const override { return VLShapeType::Group; }
    std::shared_ptr<VLShape> copy() const override { return std::make_shared<PatternShape>(*this); }
};

} // namespace

TEST(PostRead, OlderMastersImplyTheAxesAndTheirLocations)
{
    auto weightOnly = readOlderFont({"id = light;\nweightValue = 300;\n", "id = bold;\nweightValue = 700;\n"},
                                    "instances = (\n{\nname = Medium;\ninterpolationWeight = 500;\n}\n);\n");
    ASSERT_NE(weightOnly, nullptr);
    EXPECT_EQ(tagsOf(*weightOnly), (std::vector<std::string>{"wght"})) << "a width of 100 everywhere is unused";
    EXPECT_EQ(weightOnly->axes()[0]->axisId(), "a01");
    EXPECT_EQ(weightOnly->fontMasters()[0]->axisValueValueForId("a01"), 300);
    EXPECT_EQ(weightOnly->fontMasters()[1]->axisValueValueForId("a01"), 700);
    EXPECT_FALSE(weightOnly->fontMasters()[0]->readBuffer());
    EXPECT_EQ(weightOnly->instances()[0]->axisValueValueForId("a01"), 500);

    auto widths = readOlderFont({"id = a;\nwidthValue = 75;\n", "id = b;\nwidthValue = 100;\n"});
    EXPECT_EQ(tagsOf(*widths), (std::vector<std::string>{"wght", "wdth"}));
    EXPECT_EQ(widths->fontMasters()[0]->axisValueValueForId("a02"), 75);
    EXPECT_EQ(widths->fontMasters()[0]->axisValueValueForId("a01"), 100);

    auto custom = readOlderFont({"id = a;\ncustomValue1 = 20;\n"});
    EXPECT_EQ(tagsOf(*custom), (std::vector<std::string>{"wght", "wdth", "CUS1", "CUS2"}));
    EXPECT_EQ(custom->fontMasters()[0]->axisValueValueForId("a04"), 20);

    auto single = readOlderFont({"id = a;\nwidthValue = 0;\n"});
    EXPECT_EQ(tagsOf(*single), (std::vector<std::string>{"wght"})) << "a lone width of 0 is neutral too";

    auto current = readFont("{\n.formatVersion = 3;\nfontMaster = (\n{\nid = m01;\n}\n);\n}\n");
    EXPECT_TRUE(current->axes().empty()) << "the current format says its axes itself";
}

TEST(PostRead, LegacyMetricsBecomeMetrics)
{
    auto font = readOlderFont({"id = m01;\nascender = 720;\ndescender = -180;\ncapHeight = 690;\nxHeight = 480;\n"
                               "italicAngle = 11.5;\n",
                               "id = m02;\n"});
    ASSERT_NE(font, nullptr);
    auto first = font->fontMasters()[0];
    EXPECT_EQ(first->defaultAscender(), 720);
    EXPECT_EQ(first->defaultDescender(), -180);
    EXPECT_EQ(first->defaultCapHeight(), 690);
    EXPECT_EQ(first->defaultXHeight(), 480);
    EXPECT_FLOAT_EQ(first->defaultItalicAngle(), 11.5);
    EXPECT_EQ(font->fontMasters()[1]->defaultAscender(), 800) << "the reader's defaults";
    EXPECT_EQ(font->fontMasters()[1]->defaultDescender(), -200);
    EXPECT_EQ(font->fontMasters()[1]->defaultItalicAngle(), 0);

    std::vector<uint8_t> types;
    for (const auto& metric : font->metrics()) types.push_back(metric->type());
    EXPECT_EQ(types, (std::vector<uint8_t>{1, 2, 4, 8, 7, 9})) << "one metric per type, shared by the masters";
}

TEST(PostRead, OlderParametersOfTheFontAndMasters)
{
    auto font = VLFont::init();
    font->setFormatVersion(1);
    font->addCustomParameter(VLCustomParameter::initWithName_value(
        "Axes", Value(ValueArray{Value(ValueDictionary{{"Name", "Weight"}}),
                                 Value("not an axis"),
                                 Value(ValueDictionary{{"name", "Wdth"}, {"Hidden", 0}, {"Default", 12.3}}),
                                 Value(ValueDictionary{{"Name", "Grade"}, {"Tag", "GRAD"}})})));
    font->addCustomParameter(VLCustomParameter::initWithName_value("note", "A remark"));
    auto master = font->fontMasters()[0];
    master->setReadBuffer_forKey(420, "x-height");
    master->setReadBuffer_forKey(Value(ValueArray{80, 90}), "HStemValues");
    master->addCustomParameter(VLCustomParameter::initWithName_value("shoulderHeight", 550));
    ASSERT_TRUE(font->postRead(nullptr));

    ASSERT_EQ(font->axes().size(), 3u);
    EXPECT_EQ(tagsOf(*font), (std::vector<std::string>{"WEIG", "WDTH", "GRAD"}));
    EXPECT_EQ(font->axes()[2]->axisId(), "a03") << "only dictionaries are counted";
    EXPECT_FALSE(font->axes()[0]->hidden());
    EXPECT_TRUE(font->axes()[1]->hidden()) << "the key alone hides";
    EXPECT_DOUBLE_EQ(font->axes()[1]->defaultValue(), static_cast<float>(12.3));
    EXPECT_EQ(font->note(), "A remark");
    EXPECT_EQ(font->countOfCustomParameters(), 0u);

    auto shoulder = font->objectInMetricsWithType_withName_filter(VLMetric::TypeXHeight, "Shoulder Height", std::nullopt);
    ASSERT_NE(shoulder, nullptr);
    EXPECT_EQ(master->metricValueForId(shoulder->id())->position(), 550);
    EXPECT_EQ(master->defaultXHeight(), 420) << "the named metric doesn't replace the plain one";
    EXPECT_EQ(master->customParameterForKey("shoulderHeight"), nullptr);
    ASSERT_EQ(font->stems().size(), 2u);
    EXPECT_EQ(font->stems()[1]->name(), "hStem1");
    EXPECT_TRUE(font->stems()[1]->horizontal());
}

TEST(PostRead, GlyphIdsBecomeTheirPlaces)
{
    std::string glyphs;
    for (int index : {10, 20, 30, 40})
        glyphs += "{\nglyphname = g" + std::to_string(index) + ";\nindex = " + std::to_string(index) + ";\n},\n";
    auto font = readFont("{\n.formatVersion = 3;\nglyphs = (\n" + glyphs + ");\n}\n");
    ASSERT_NE(font, nullptr);
    ASSERT_EQ(font->glyphs().size(), 4u);
    for (uint64_t i = 0; i < 4; ++i) EXPECT_EQ(font->glyphs()[i]->glyphId(), i);
    EXPECT_EQ(font->glyphForName("g30"), font->glyphs()[2]);
}

TEST(PostRead, OlderColourLayerNames)
{
    auto font = readOlderFont({"id = m01;\n"});
    auto expectAttribute = [&](const std::string& name, const char* key, const Value& value, const std::string& left) {
        auto layer = layerIn(font, name);
        EXPECT_TRUE(layer->postRead_format(nullptr, 1));
        EXPECT_EQ(layer->attributeForKey(key), value) << name;
        EXPECT_EQ(layer->name(), left) << name;
    };
    expectAttribute("Color", "color", 1, "");
    expectAttribute("Color 3", "colorPalette", 3, "");
    expectAttribute("iColor 96", "sbixSize", 96, "");
    expectAttribute("iColor", "sbixSize", Value(), "iColor");
    expectAttribute("svg", "svg", 1, "");
    expectAttribute("Colorful", "color", Value(), "Colorful");

    auto current = layerIn(font, "Color 3");
    current->postRead_format(nullptr, 3);
    EXPECT_EQ(current->name(), "Color 3") << "only older documents meant colour by the name";
}

TEST(PostRead, OlderBracketAndBraceLayerNames)
{
    auto font = readOlderFont({"id = m01;\nweightValue = 400;\nwidthValue = 80;\ncustomValue = 5;\n"});
    ASSERT_EQ(font->countOfAxes(), 3u);
    auto rulesOf = [&](const std::string& name) {
        auto layer = layerIn(font, name);
        layer->postRead_format(nullptr, 1);
        return layer->attributeForKey("axisRules");
    };
    EXPECT_EQ(rulesOf("Light [200]"), Value(ValueDictionary{{"a01", Value(ValueDictionary{{"min", 200}})}}));
    EXPECT_EQ(rulesOf("Light ]200]"), Value(ValueDictionary{{"a01", Value(ValueDictionary{{"max", 200}})}}));
    EXPECT_EQ(rulesOf("Light [<200]"), Value(ValueDictionary{{"a01", Value(ValueDictionary{{"max", 200}})}}));
    EXPECT_EQ(rulesOf("[]"), Value(ValueDictionary{}));
    EXPECT_TRUE(rulesOf("Light [200] x").isNull()) << "the bracket must end the name";

    auto brace = layerIn(font, "Light {100, 50}");
    brace->postRead_format(nullptr, 1);
    EXPECT_EQ(brace->attributeForKey("coordinates"), Value(ValueDictionary{{"a01", 100}, {"a02", 50}, {"a03", 5}}));
    EXPECT_TRUE(rulesOf("Light {100, 50").isNull());

    std::vector<double> values(2, -1);
    size_t count = 9;
    EXPECT_EQ(VLLayer::_specialLayerInfoAxes_count("A {1,2,3}", values, count), '{');
    EXPECT_EQ(count, 3u);
    EXPECT_EQ(values, (std::vector<double>{1, 2}));
    EXPECT_EQ(VLLayer::_specialLayerInfoAxes_count("ab", values, count), 0);
    EXPECT_EQ(VLLayer::_specialLayerInfoAxes_count(std::string(150, 'x') + "[1]", values, count), 0);

    auto bare = VLFont::init();
    auto layer = layerIn(bare, "Bold [600]");
    layer->postRead_format(nullptr, 1);
    ASSERT_EQ(bare->countOfAxes(), 1u) << "a bracket layer brings a weight axis into a font without axes";
    EXPECT_EQ(bare->axes()[0]->axisTag(), "wght");
    EXPECT_EQ(layer->attributeForKey("axisRules")[bare->axes()[0]->axisId()]["min"], Value(600));
}

TEST(PostRead, LayerAttributesByAxisId)
{
    auto font = readOlderFont({"id = m01;\nweightValue = 400;\nwidthValue = 80;\ncustomValue = 5;\n"});
    auto layer = layerIn(font, "special");
    layer->setAttribute_forKey(Value(ValueArray{Value(ValueDictionary{{"min", 100.1}}), Value(ValueDictionary{}),
                                                Value(ValueDictionary{{"min", 1}, {"max", "7"}}), Value(1)}),
                               "axisRules");
    layer->setAttribute_forKey(Value(ValueArray{Value(90), Value("60.1")}), "coordinates");
    layer->setAttribute_forKey("2", "colorPalette");
    layer->setAttribute_forKey("1", "color");
    EXPECT_TRUE(layer->postRead_format(nullptr, 3));
    EXPECT_EQ(layer->attributeForKey("axisRules"),
              Value(ValueDictionary{{"a01", Value(ValueDictionary{{"min", static_cast<float>(100.1)}})},
                                    {"a03", Value(ValueDictionary{{"min", 1}, {"max", 7}})}}));
    EXPECT_EQ(layer->attributeForKey("coordinates"),
              Value(ValueDictionary{{"a01", 90}, {"a02", static_cast<float>(60.1)}, {"a03", 5}}));
    EXPECT_EQ(layer->attributeForKey("colorPalette"), Value(2));
    EXPECT_TRUE(layer->attributeForKey("colorPalette").isInteger());
    EXPECT_TRUE(layer->attributeForKey("color").isBool());

    auto star = layerIn(font, "star");
    star->setAttribute_forKey("*", "colorPalette");
    star->postRead_format(nullptr, 3);
    EXPECT_EQ(star->attributeForKey("colorPalette"), Value("*"));

    auto broken = layerIn(font, "broken");
    broken->setAttribute_forKey(Value(ValueDictionary{{"a01", 1}}), "coordinates");
    EXPECT_FALSE(broken->postRead_format(nullptr, 3));
    VLError error;
    EXPECT_TRUE(font->postRead(&error)) << "a refused layer sets no error";
    EXPECT_TRUE(error.domain.empty());
}

TEST(PostRead, ShapesOfCurrentLayers)
{
    auto font = readOlderFont({"id = m01;\n"});
    font->setTempData_forKey(Value("/docs/fonts/../Sans.velmor"), "filePath");
    auto emptyPath = VLPath::init;
    auto current = layerIn(font, "current");
    auto kept = VLPath::init();
    kept->addNodeFastWithPosition_type_connection({0, 0}, VLNodeType::LINE, VLNode::SHARP);
    auto relative = std::make_shared<PatternShape>("patterns/./dots.png");
    auto absolute = std::make_shared<PatternShape>("/p/dots.png");
    current->setShapesFast({emptyPath(), kept, relative, emptyPath(), absolute});
    EXPECT_EQ(current->countOfPaths(), 3);
    EXPECT_TRUE(current->postRead_format(nullptr, 3));
    ASSERT_EQ(current->countOfShapes(), 3u);
    EXPECT_EQ(current->shapes()[0], kept);
    EXPECT_EQ(current->countOfPaths(), 1) << "the counts follow the removal";
    EXPECT_EQ(relative->attributeForKey("fillPatternFile"), Value("/docs/patterns/dots.png"));
    EXPECT_EQ(absolute->attributeForKey("fillPatternFile"), Value("/p/dots.png"));

    auto older = layerIn(font, "older");
    older->setShapesFast({emptyPath()});
    older->postRead_format(nullptr, 1);
    EXPECT_EQ(older->countOfShapes(), 1u) << "older documents keep empty paths";
}
