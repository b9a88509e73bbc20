#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLAnchor.h"
#include "outline/VLBackgroundImage.h"
#include "outline/VLComponent.h"
#include "outline/VLHint.h"
#include "outline/VLNode.h"
#include "outline/VLPath.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

namespace {

template <typename K> std::shared_ptr<K> readRecord(std::string_view text, uint8_t format = 3)
{
    ScannedText scanned(text);
    return K::initWithVelmorParser_format(scanned.get(), format);
}

struct NodeExpectation {
    Point position;
    VLNodeType type;
    uint8_t connection;
};

void expectNode(std::string_view text, NodeExpectation expected, uint8_t format = 3)
{
    auto node = readRecord<VLNode>(text, format);
    ASSERT_NE(node, nullptr) << text;
    EXPECT_EQ(node->position(), expected.position) << text;
    EXPECT_EQ(node->positionPrecise(), expected.position) << text;
    EXPECT_EQ(node->type(), expected.type) << text;
    EXPECT_EQ(node->connection(), expected.connection) << text;
}

} // namespace

TEST(NodeReader, LineAndListForms)
{
    expectNode("\"1 2 LINE\"", {{1, 2}, VLNodeType::LINE, VLNode::SHARP}, 1);
    expectNode("\"1 2 OFFCURVE\"", {{1, 2}, VLNodeType::OFFCURVE, VLNode::SHARP}, 1);
    expectNode("\"-1.5 2 CURVE SMOOTH\"", {{-1.5, 2}, VLNodeType::CURVE, VLNode::SMOOTH}, 1);
    expectNode("(1,2,l)", {{1, 2}, VLNodeType::LINE, VLNode::SHARP});
    for (const char* smooth : {"(1,2,c,s)", "(1,2,cs)", "(1,2,c s)"})
        expectNode(smooth, {{1, 2}, VLNodeType::CURVE, VLNode::SMOOTH});
    expectNode("(3,4,o)", {{3, 4}, VLNodeType::OFFCURVE, VLNode::SHARP});

    auto withData = readRecord<VLNode>("(1,2,l,{name = x;})");
    ASSERT_NE(withData, nullptr);
    EXPECT_EQ(withData->userData().at("name"), Value("x"));
    EXPECT_EQ(readRecord<VLNode>("(1,2,Z)"), nullptr);
}

TEST(PathReader, DictionaryAndLineForms)
{
    auto path = readRecord<VLPath>("closed = 0;\nnodes = (\n(0,0,l),\n(10,0,l),\n(10,10,c)\n);\n}");
    ASSERT_NE(path, nullptr);
    EXPECT_FALSE(path->closed());
    ASSERT_EQ(path->count(), 3);
    EXPECT_EQ(path->nodeAtIndex(1)->parent(), path);

    auto open = readRecord<VLPath>("\"o 1 2 l;3 4 l\"");
    ASSERT_NE(open, nullptr);
    EXPECT_FALSE(open->closed());
    EXPECT_EQ(open->count(), 2);
    auto empty = readRecord<VLPath>("\"\"");
    ASSERT_NE(empty, nullptr);
    EXPECT_TRUE(empty->closed());
    EXPECT_EQ(empty->count(), 0);
}

TEST(ShapeReader, FactoryMakesPathsAndComponents)
{
    auto component = std::dynamic_pointer_cast<VLComponent>(readRecord<VLShape>("ref = A;\npos = (10,20);\n}"));
    ASSERT_NE(component, nullptr);
    EXPECT_EQ(component->componentName(), "A");
    EXPECT_EQ(component->position(), (Point{10, 20}));

    auto scaled = std::dynamic_pointer_cast<VLComponent>(
        readRecord<VLShape>("ref = B;\ntransform = \"{0, 2, -2, 0, 100, 50}\";\n}"));
    ASSERT_NE(scaled, nullptr);
    EXPECT_EQ(scaled->position(), (Point{0, 0})) << "the matrix's translation is not the position here";
    EXPECT_NEAR(scaled->scale().x, 2, 1e-9);
    EXPECT_NEAR(scaled->scale().y, 2, 1e-9);
    EXPECT_NEAR(scaled->angle(), 90, 1e-9);

    auto path = readRecord<VLShape>("closed = 1;\nnodes = (\n(1,1,l)\n);\n}");
    ASSERT_NE(path, nullptr);
    EXPECT_EQ(path->shapeType(), VLShapeType::Path);
    EXPECT_EQ(readRecord<VLShape>("closed = 1;\n}"), nullptr) << "neither nodes nor a reference";
}

TEST(ComponentReader, LineForm)
{
    auto placed = readRecord<VLComponent>("\"a 10,20\"");
    ASSERT_NE(placed, nullptr);
    EXPECT_EQ(placed->componentName(), "a");
    EXPECT_EQ(placed->position(), (Point{10, 20}));

    auto locked = readRecord<VLComponent>("\"a 10,20;lock;noAlign\"");
    ASSERT_NE(locked, nullptr);
    EXPECT_TRUE(locked->locked());
    EXPECT_EQ(locked->alignment(), VLComponent::AlignmentDisabled);

    auto far = readRecord<VLComponent>("\"a 1,0,0,1,30000,5\"");
    ASSERT_NE(far, nullptr);
    EXPECT_EQ(far->position(), (Point{0, 5}));
}

TEST(RecordReaders, AnchorsHintsAndBackgroundImages)
{
    auto anchor = readRecord<VLAnchor>("name = top;\npos = (250,700);\norientation = center;\n}");
    ASSERT_NE(anchor, nullptr);
    EXPECT_EQ(anchor->name(), "top");
    EXPECT_EQ(anchor->orientation(), VLElement::OrientationCenter);
    auto line = readRecord<VLAnchor>("\"100 200 bottom\"");
    ASSERT_NE(line, nullptr);
    EXPECT_EQ(line->name(), "bottom");
    EXPECT_EQ(line->position(), (Point{100, 200}));

    EXPECT_EQ(readRecord<VLHint>("target = down;\n}")->type(), VLHintType::TopGhost);
    EXPECT_EQ(readRecord<VLHint>("target = up;\n}")->type(), VLHintType::BottomGhost);
    auto stem = readRecord<VLHint>("origin = (0,3);\ntarget = (0,7);\nhorizontal = 1;\n}");
    ASSERT_NE(stem, nullptr);
    EXPECT_EQ(stem->originIndex(), (VLIndexPath{0, 3}));
    EXPECT_TRUE(stem->horizontal());

    auto image = readRecord<VLBackgroundImage>("crop = (1, 2, 3, 4);\n}");
    ASSERT_NE(image, nullptr);
    EXPECT_EQ(image->crop(), (Rect{{1, 2}, {3, 4}}));
    EXPECT_EQ(readRecord<VLBackgroundImage>("crop = (1, 2, 3);\n}")->crop(), Rect());
    ScannedText tooMany("crop = (1,2,3,4,5,6,7,8,9,10,11);\n}");
    EXPECT_EQ(VLBackgroundImage::initWithVelmorParser_format(tooMany.get(), 3), nullptr);
    EXPECT_EQ(tooMany.message(), "Too many values");
}

TEST(LayerReader, PathsStandBeforeComponentsAndLaterIdsWin)
{
    TemporaryFile file(R"({
.formatVersion = 1;
fontMaster = (
{
id = m01;
}
);
glyphs = (
{
glyphname = A;
layers = (
{
components = (
{
name = B;
}
);
layerId = m01;
paths = (
{
closed = 1;
nodes = (
"0 0 LINE",
"10 0 LINE",
"10 10 LINE"
);
}
);
width = 500;
},
{
layerId = brace;
name = "{100}";
width = 300;
},
{
layerId = m01;
width = 700;
}
);
}
);
}
)");
    VLError error;
    auto font = VLFont::initWithURL_error(file.path, &error);
    ASSERT_NE(font, nullptr) << error.description();
    auto glyph = font->glyphForName("A");
    ASSERT_NE(glyph, nullptr);
    EXPECT_EQ(glyph->countOfLayers(), 0u) << "layers wait until they are asked for";
    auto master = glyph->layerForId("m01");
    ASSERT_NE(master, nullptr);
    EXPECT_EQ(master->width(), 700) << "the later of two layers with one id wins";
    EXPECT_EQ(*glyph->layers().keyAtIndex(0), "m01") << "at the place of the earlier one";
    EXPECT_EQ(glyph->countOfLayers(), 2u);
    EXPECT_EQ(glyph->layerForId("brace")->associatedMasterId(), "brace");
    EXPECT_TRUE(glyph->readLayersFormat(1)) << "reading again costs nothing";
}

TEST(LayerReader, ShapeOrderOfOlderLayers)
{
    // Each "paths" list goes in front of all read before it, even when a key repeats.
    ScannedText text("components = (\n{\nname = B;\n}\n);\nlayerId = x;\n"
                     "paths = (\n{\nnodes = (\n\"0 0 LINE\"\n);\n}\n);\n"
                     "components = (\n{\nname = C;\n}\n);\n"
                     "paths = (\n{\nnodes = (\n\"0 0 LINE\",\n\"9 9 LINE\"\n);\n}\n);\n}");
    auto layer = VLLayer::initWithVelmorParser_format(text.get(), 1);
    ASSERT_NE(layer, nullptr);
    ASSERT_EQ(layer->countOfShapes(), 4u);
    const auto& shapes = layer->shapes();
    ASSERT_EQ(shapes[0]->shapeType(), VLShapeType::Path);
    ASSERT_EQ(shapes[1]->shapeType(), VLShapeType::Path);
    EXPECT_EQ(static_cast<const VLPath&>(*shapes[0]).count(), 2) << "the later paths first";
    EXPECT_EQ(static_cast<const VLPath&>(*shapes[1]).count(), 1);
    EXPECT_EQ(static_cast<const VLComponent&>(*shapes[2]).componentName(), "B");
    EXPECT_EQ(static_cast<const VLComponent&>(*shapes[3]).componentName(), "C");
    EXPECT_EQ(shapes[0]->layer(), layer);
}

TEST(LayerReader, BrokenLayerTextFailsOnlyWhenRead)
{
    TemporaryFile file("{\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n{\nglyphname = A;\n"
                       "layers = (\n{\nlayerId = m01;\nbogus = 1;\n}\n);\n}\n);\n}\n");
    VLError error;
    auto font = VLFont::initWithURL_error(file.path, &error);
    ASSERT_NE(font, nullptr);
    auto glyph = font->glyphForName("A");
    EXPECT_FALSE(glyph->readLayersFormat(1));
    EXPECT_EQ(glyph->maxWidth(), 9223372036854775808.0);
    EXPECT_FALSE(glyph->readLayersFormat(1)) << "a failed read stays unread and fails again";
}
