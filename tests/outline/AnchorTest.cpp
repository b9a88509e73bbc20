#include "model/VLCustomParameter.h"
#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLComponent.h"
#include "platform/VLError.h"
#include "platform/VLUnsetValue.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

// Glyphs of master "m01", given at once: a font indexes its names again after each addition.
struct AnchorFont {
    std::shared_ptr<VLFont> font = VLFont::init();

    explicit AnchorFont(std::initializer_list<const char*> names)
    {
        std::vector<std::shared_ptr<VLGlyph>> glyphs;
        for (const char* name : names) {
            glyphs.push_back(VLGlyph::initFast());
            glyphs.back()->setNameFast(name);
        }
        font->setGlyphs(glyphs);
    }

    std::shared_ptr<VLLayer> layer(const std::string& glyph) { return font->glyphForName(glyph)->layerForId("m01"); }

    void anchor(const std::string& glyph, const std::string& name, Point position)
    {
        auto anchor = VLAnchor::init();
        anchor->setName(name);
        anchor->setPositionFast(position);
        layer(glyph)->addAnchor(anchor);
    }

    std::shared_ptr<VLComponent> place(const std::string& glyph, const std::string& name, Point position = {})
    {
        auto component = VLComponent::init();
        component->setComponentName(name);
        component->setPositionFast(position);
        layer(glyph)->addShapeFast(component);
        return component;
    }

    VLLayer::Anchors gathered(const std::string& glyph) { return layer(glyph)->anchorDictTraversingComponents(); }
};

Point positionOf(const VLLayer::Anchors& anchors, const std::string& name)
{
    auto anchor = anchors.objectForKey(name);
    return anchor ? anchor->position() : Point{VLUnsetValue, VLUnsetValue};
}

// A base "A", a mark "acutecomb" that sits on its "top" by "_top", and "Aacute" of both.
void addBaseAndMark(AnchorFont& f)
{
    f.anchor("A", "top", {250, 700});
    f.anchor("A", "bottom", {250, 0});
    f.anchor("acutecomb", "_top", {100, 500});
    f.anchor("acutecomb", "top", {100, 800});
    f.place("Aacute", "A");
    f.place("Aacute", "acutecomb", {150, 200});
}

} // namespace

TEST(Anchors, AreAddedByNameAndFoundAgain)
{
    AnchorFont f({"A"});
    auto layer = f.layer("A");
    layer->addAnchor(nullptr);
    EXPECT_FALSE(layer->hasAnchors());
    f.anchor("A", "anchor01", {1, 1});
    f.anchor("A", "", {2, 2});
    f.anchor("A", "", {3, 3});
    EXPECT_EQ(layer->anchors().allKeys(), (std::vector<std::string>{"anchor01", "anchor02", "anchor03"}));
    EXPECT_EQ(layer->anchorForName("anchor02")->name(), "anchor02");
    EXPECT_EQ(layer->anchorForName("anchor02")->layer(), layer);
    f.anchor("A", "anchor01", {4, 4});
    EXPECT_EQ(layer->countOfAnchors(), 3u) << "an anchor of the same name replaces the old one";
    EXPECT_EQ(layer->objectInAnchorsAtIndex(0)->position(), (Point{4, 4}));
    EXPECT_EQ(layer->objectInAnchorsAtIndex(3), nullptr);

    layer->switchAnchorFastName_withName("anchor02", "top");
    EXPECT_EQ(layer->anchorForName("anchor02"), nullptr);
    EXPECT_EQ(layer->anchorForName("top")->name(), "top");
    EXPECT_EQ(layer->anchorForName("top")->position(), (Point{2, 2}));
    layer->switchAnchorFastName_withName("missing", "other");
    EXPECT_EQ(layer->countOfAnchors(), 3u);

    auto other = VLAnchor::init();
    other->setName("bottom");
    f.layer("A")->setAnchorArray({other});
    EXPECT_EQ(layer->anchors().allKeys(), (std::vector<std::string>{"bottom"}));
    EXPECT_EQ(other->layer(), layer);
    auto gathered = layer->anchorForName_traverseComponents("bottom", true);
    ASSERT_NE(gathered, nullptr);
    EXPECT_NE(gathered, layer->anchorForName("bottom")) << "a copy of the layer's own";
}

TEST(Anchors, MarksStackOnTheirBase)
{
    AnchorFont f({"A", "acutecomb", "Aacute", "Ashifted", "acutecedilla"});
    addBaseAndMark(f);
    auto anchors = f.gathered("Aacute");
    EXPECT_EQ(positionOf(anchors, "top"), (Point{250, 1000})) << "the mark's top, where the mark was placed";
    EXPECT_EQ(positionOf(anchors, "bottom"), (Point{250, 0}));
    EXPECT_FALSE(anchors.objectForKey("_top")) << "a base has been counted, so attaching anchors stay out";
    EXPECT_EQ(f.layer("acutecomb")->anchorForName("top")->position(), (Point{100, 800})) << "the sources stay";
    EXPECT_EQ(f.layer("Aacute")->anchorsTraversingComponents().size(), 2u);

    f.place("Ashifted", "A", {100, 10})->setScale({2, 1});
    EXPECT_EQ(positionOf(f.gathered("Ashifted"), "top"), (Point{600, 710}));
    f.anchor("Aacute", "top", {1, 2});
    EXPECT_EQ(positionOf(f.gathered("Aacute"), "top"), (Point{1, 2})) << "an own anchor wins";
    EXPECT_EQ(f.layer("Aacute")->anchorForName_traverseComponents("bottom", true)->position(), (Point{250, 0}));
    EXPECT_EQ(f.layer("Aacute")->anchorForName_traverseComponents("bottom", false), nullptr);

    // A mark made of marks keeps the attaching anchor of the first and the top of the last.
    f.place("acutecedilla", "acutecomb");
    f.place("acutecedilla", "acutecomb", {0, 300});
    anchors = f.gathered("acutecedilla");
    EXPECT_EQ(positionOf(anchors, "_top"), (Point{100, 500}));
    EXPECT_EQ(positionOf(anchors, "top"), (Point{100, 1100}));
    f.anchor("acutecedilla", "_bottom", {0, 0});
    anchors = f.gathered("acutecedilla");
    EXPECT_FALSE(anchors.objectForKey("top")) << "a mark that attaches below has no top";
    EXPECT_FALSE(anchors.objectForKey("_top"));
    EXPECT_TRUE(anchors.objectForKey("_bottom"));
}

TEST(Anchors, LigaturesNumberTheirGlyphs)
{
    AnchorFont f({"f", "i", "f_i", "f_f_i", "acutecomb", "alef", "beh", "behalef", "fi", "fi_j", "fcomp", "fcomp_i",
                  "blank", "blank_i"});
    f.anchor("f", "top", {100, 700});
    f.anchor("i", "top", {50, 500});
    f.anchor("f_i", "caret_1", {300, 0});
    for (const char* ligature : {"f_i", "f_f_i"}) f.font->glyphForName(ligature)->setSubCategory("Ligature");
    f.place("f_i", "f");
    f.place("f_i", "i", {300, 0});
    auto anchors = f.gathered("f_i");
    EXPECT_EQ(anchors.allKeys(), (std::vector<std::string>{"top_1", "top_2", "caret_1"}));
    EXPECT_EQ(positionOf(anchors, "top_2"), (Point{350, 500}));

    // A ligature inside a ligature: its numbers go on from the glyphs before it.
    f.place("f_f_i", "f");
    f.place("f_f_i", "f_i", {200, 0});
    anchors = f.gathered("f_f_i");
    EXPECT_EQ(positionOf(anchors, "top_1"), (Point{100, 700}));
    EXPECT_EQ(positionOf(anchors, "top_2"), (Point{300, 700}));
    EXPECT_EQ(positionOf(anchors, "top_3"), (Point{550, 500}));

    // Glyphs that are no ligatures count by their anchors' numbers, carets one further, or as
    // one glyph, or by the glyphs they place; a glyph of no plain anchors counts for none.
    f.anchor("fi", "top_1", {0, 0});
    f.anchor("fi", "caret_2", {0, 0});
    f.place("fcomp", "f");
    f.place("fcomp", "i");
    f.anchor("blank", "*origin", {0, 0});
    for (const char* ligature : {"fi_j", "fcomp_i", "blank_i"}) {
        f.font->glyphForName(ligature)->setSubCategory("Ligature");
        f.place(ligature, std::string(ligature).substr(0, std::string(ligature).find('_')));
        f.place(ligature, "i");
    }
    EXPECT_TRUE(f.gathered("fi_j").objectForKey("top_4"));
    EXPECT_TRUE(f.gathered("fcomp_i").objectForKey("top_3"));
    EXPECT_TRUE(f.gathered("blank_i").objectForKey("top_1"));

    // A mark set on the second glyph takes that glyph's anchor.
    f.anchor("acutecomb", "_top", {0, 0});
    f.anchor("acutecomb", "top", {0, 200});
    f.place("f_i", "acutecomb", {350, 500})->setAnchor("top_2");
    anchors = f.gathered("f_i");
    EXPECT_EQ(positionOf(anchors, "top_2"), (Point{350, 700}));
    EXPECT_EQ(positionOf(anchors, "top_1"), (Point{100, 700}));
    EXPECT_FALSE(anchors.objectForKey("top"));

    // A base after a cursive glyph ends its run.
    f.anchor("alef", "exit", {0, 0});
    f.anchor("alef", "entry", {400, 0});
    f.anchor("beh", "top", {100, 300});
    f.place("behalef", "alef");
    EXPECT_TRUE(f.gathered("behalef").objectForKey("exit"));
    f.place("behalef", "beh", {400, 0});
    anchors = f.gathered("behalef");
    EXPECT_FALSE(anchors.objectForKey("exit"));
    EXPECT_TRUE(anchors.objectForKey("entry"));
}

TEST(Anchors, WalkEndsAndStaysBounded)
{
    AnchorFont f({"A", "S", "P", "Q", "crowd", "ten", ""});
    f.anchor("A", "top", {250, 700});
    f.place("S", "S");
    EXPECT_TRUE(f.gathered("S").empty()) << "a glyph that contains itself";
    auto loose = VLLayer::init();
    loose->addAnchor(VLAnchor::init());
    EXPECT_TRUE(loose->anchorDictTraversingComponents().empty()) << "a layer of no glyph";
    f.anchor("", "top", {0, 0});
    EXPECT_TRUE(f.font->glyphs().back()->layerForId("m01")->anchorDictTraversingComponents().empty())
        << "a glyph of no name";
    f.anchor("P", "top", {1, 1});
    f.anchor("Q", "bottom", {2, 2});
    f.place("P", "Q");
    f.place("Q", "P");
    EXPECT_EQ(f.gathered("P").allKeys(), (std::vector<std::string>{"bottom", "top"}));

    for (int i = 0; i < 9; ++i) f.place("crowd", "A");
    EXPECT_TRUE(f.gathered("crowd").objectForKey("top"));
    for (int i = 0; i < 10; ++i) f.place("ten", "A");
    f.anchor("ten", "bottom", {0, 0});
    EXPECT_EQ(f.gathered("ten").allKeys(), (std::vector<std::string>{"bottom"})) << "ten shapes inherit nothing";

    // Each level places the next nine times: without a bound the walk would visit 9^8 layers.
    AnchorFont deep({"g0", "g1", "g2", "g3", "g4", "g5", "g6", "g7", "g8"});
    for (int level = 0; level < 8; ++level)
        for (int i = 0; i < 9; ++i) deep.place("g" + std::to_string(level), "g" + std::to_string(level + 1));
    deep.anchor("g8", "top", {0, 0});
    EXPECT_TRUE(deep.gathered("g0").objectForKey("top"));
}

TEST(Anchors, OriginMovesTheOwnAnchors)
{
    AnchorFont f({"A", "O"});
    f.anchor("A", "top", {250, 700});
    f.anchor("O", "*origin", {10, 0});
    f.anchor("O", "top", {30, 50});
    auto anchors = f.gathered("O");
    EXPECT_EQ(anchors.allKeys(), (std::vector<std::string>{"top"}));
    EXPECT_EQ(positionOf(anchors, "top"), (Point{20, 50}));
    EXPECT_EQ(f.layer("O")->anchorForName("top")->position(), (Point{30, 50}));
    f.place("O", "A");
    anchors = f.gathered("O");
    EXPECT_EQ(positionOf(anchors, "top"), (Point{20, 50}));
    EXPECT_FALSE(anchors.objectForKey("*origin"));

    f.font->addCustomParameter(VLCustomParameter::initWithName_value("Propagate Anchors", Value(false)));
    anchors = f.gathered("O");
    EXPECT_EQ(positionOf(anchors, "top"), (Point{20, 50})) << "without propagation the own anchors alone";
    f.layer("O")->setAnchors({});
    EXPECT_TRUE(f.gathered("O").empty());
}

// Anchors and components as both document formats store them.
TEST(Anchors, GatheredFromDocumentsOfBothFormats)
{
    const char* current = R"({
.formatVersion = 3;
fontMaster = ({id = m01;});
glyphs = (
{glyphname = A; layers = ({layerId = m01; anchors = ({name = top; pos = (250,700);}); width = 500;});},
{glyphname = acutecomb; layers = ({layerId = m01;
anchors = ({name = _top; pos = (100,500);}, {name = top; pos = (100,800);}); width = 0;});},
{glyphname = Aacute; layers = ({layerId = m01; shapes = ({ref = A;}, {ref = acutecomb; pos = (150,200);}); width = 500;});}
);
})";
    const char* older = R"({
fontMaster = ({id = m01;});
glyphs = (
{glyphname = A; layers = ({layerId = m01; anchors = ({name = top; position = "{250, 700}";}); width = 500;});},
{glyphname = acutecomb; layers = ({layerId = m01;
anchors = ({name = _top; position = "{100, 500}";}, {name = top; position = "{100, 800}";}); width = 0;});},
{glyphname = Aacute; layers = ({layerId = m01;
components = ({name = A;}, {name = acutecomb; transform = "{1, 0, 0, 1, 150, 200}";}); width = 500;});}
);
})";
    for (const char* text : {current, older}) {
        TemporaryFile file(text);
        VLError error;
        auto font = VLFont::initWithURL_error(file.path, &error);
        ASSERT_NE(font, nullptr);
        auto layer = font->glyphForName("Aacute")->layerForId("m01");
        ASSERT_NE(layer, nullptr);
        EXPECT_EQ(positionOf(layer->anchorDictTraversingComponents(), "top"), (Point{250, 1000}));
        EXPECT_EQ(font->glyphForName("A")->layerForId("m01")->anchorForName("top")->layer()->glyph()->name(), "A");
    }
}
