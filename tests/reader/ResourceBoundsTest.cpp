#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "outline/VLNode.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

std::shared_ptr<VLFont> readFont(const std::string& text, VLError* error = nullptr)
{
    TemporaryFile file(text);
    VLError ignored;
    return VLFont::initWithURL_error(file.path, error ? error : &ignored);
}

} // namespace

TEST(ResourceBounds, DeepNestingFailsInsteadOfExhaustingTheStack)
{
    const std::string brackets(1000000, '(');
    {
        ScannedText text(brackets);
        EXPECT_TRUE(parsePlistValue(text.get(), true).isNull());
        EXPECT_EQ(text.message(), "Too deeply nested");
    }
    {
        ScannedText text(brackets);
        EXPECT_FALSE(skipPlistValue(text.get()));
    }
    {
        ScannedText text(std::string(1000000, '{'));
        EXPECT_TRUE(parsePlistValue(text.get(), true).isNull());
    }
    VLError error;
    EXPECT_EQ(readFont("{\nglyphs = " + brackets + "\n}", &error), nullptr);
    // Skipped values never descend here: the skipper stops at the first brace of the pile.
    readFont("{\nuserData = " + std::string(1000000, '{') + "\n}");

    std::string shapes = "{\nfontMaster = (\n{\nid = m01;\n}\n);\nglyphs = (\n{\nglyphname = A;\nlayers = (\n{\n"
                         "layerId = m01;\nshapes = (\n";
    for (int i = 0; i < 100000; ++i) shapes += "{\nshapes = (\n";
    auto font = readFont(shapes + "\n}");
    if (font) {
        EXPECT_FALSE(font->glyphForName("A")->readLayersFormat(3));
    }
}

TEST(ResourceBounds, PathologicalTokens)
{
    EXPECT_EQ(readFont(std::string(100000, '"')), nullptr) << "a file of only quotes";
    auto font = readFont("{\nunitsPerEm = " + std::string(1000, '9') + ";\n}");
    ASSERT_NE(font, nullptr) << "a number of a thousand digits wraps, it does not fail";

    ScannedText number("1." + std::string(1000, '7') + ";");
    EXPECT_TRUE(parsePlistValue(number.get(), true).isReal());
    ScannedText data("<" + std::string(100000, 'a') + ">");
    EXPECT_EQ(parsePlistValue(data.get(), true).data().size(), 50000u);
}

TEST(ResourceBounds, NumbersBeyondSinglePrecisionBecomeInfinities)
{
    auto font = readFont("{\n.formatVersion = 3;\naxes = (\n{\ndefault = 1e300;\nname = Weight;\n}\n);\n"
                         "fontMaster = (\n{\nid = m01;\nmetricValues = (\n{\npos = \"-1e300\";\n}\n);\n}\n);\n"
                         "metrics = (\n{\ntype = ascender;\n}\n);\n}\n");
    ASSERT_NE(font, nullptr);
    EXPECT_TRUE(std::isinf(font->axes()[0]->defaultValue()));
    EXPECT_EQ(font->fontMasterAtIndex(0)->defaultAscender(), 0) << "out-of-range metric values read as 0";
}

namespace {

std::string documentWithGlyphs(const std::string& glyphs, const std::string& masters = "{\nid = m01;\n}\n")
{
    return "{\n.formatVersion = 3;\nfontMaster = (\n" + masters + ");\nglyphs = (\n" + glyphs + ");\n}\n";
}

std::string glyphWithShapes(const std::string& name, const std::string& shapes)
{
    return "{\nglyphname = " + name + ";\nlayers = (\n{\nlayerId = m01;\nshapes = (\n" + shapes +
           ");\nwidth = 600;\n}\n);\n},\n";
}

std::string pathOfListNodes(size_t count)
{
    std::string nodes;
    for (size_t i = 0; i < count; ++i) nodes += "(" + std::to_string(i % 1000) + "," + std::to_string(i % 7) + ",l),\n";
    nodes.resize(nodes.size() - 2);
    return "{\nclosed = 1;\nnodes = (\n" + nodes + "\n);\n}\n";
}

std::string pathOfLineNodes(size_t count)
{
    std::string nodes;
    for (size_t i = 0; i < count; ++i) nodes += std::to_string(i % 1000) + " 0 LINE;";
    return "{\nnodes = (\n\"" + nodes + "\"\n);\n}\n";
}

bool layersRead(const std::string& document)
{
    auto font = readFont(document);
    return font && font->glyphForName("A")->readLayersFormat(font->formatVersion());
}

} // namespace

TEST(ResourceBounds, PathsLongerThanAnyContourFailTheirLayer)
{
    EXPECT_TRUE(layersRead(documentWithGlyphs(glyphWithShapes("A", pathOfListNodes(VLPathMaximumNodes)))));
    EXPECT_FALSE(layersRead(documentWithGlyphs(glyphWithShapes("A", pathOfListNodes(VLPathMaximumNodes + 1)))));
    EXPECT_FALSE(layersRead(documentWithGlyphs(glyphWithShapes("A", pathOfListNodes(1000000)))));
    EXPECT_FALSE(layersRead(documentWithGlyphs(glyphWithShapes("A", pathOfLineNodes(1000000)))));
}

TEST(ResourceBounds, RepeatedShapeKeysReadInLinearTime)
{
    std::string keys;
    for (size_t i = 0; i < VLLayerMaximumShapes; ++i) keys += "shapes = (\n{\nnodes = (\n(0,0,l)\n);\n}\n);\n";
    ScannedText text(keys + "}");
    auto layer = VLLayer::initWithVelmorParser_format(text.get(), 3);
    ASSERT_NE(layer, nullptr);
    EXPECT_EQ(layer->countOfShapes(), VLLayerMaximumShapes);
}

TEST(ResourceBounds, MastersBeyondAnyDesignSpaceFailTheDocument)
{
    auto masters = [](size_t count) {
        std::string list;
        for (size_t i = 0; i < count; ++i) list += "{\nid = m" + std::to_string(i) + ";\n},\n";
        return list;
    };
    auto font = readFont(documentWithGlyphs("", masters(VLFontMaximumMasters)));
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(font->fontMasters().size(), VLFontMaximumMasters);
    VLError error;
    EXPECT_EQ(readFont(documentWithGlyphs("", masters(VLFontMaximumMasters + 1)), &error), nullptr);
}

TEST(ResourceBounds, ComponentChainsAndCyclesEndWithoutRecursion)
{
    std::string glyphs = glyphWithShapes("A", "{\nref = c1;\n},\n{\nref = A;\n}\n");
    for (int i = 1; i < 5000; ++i)
        glyphs += glyphWithShapes("c" + std::to_string(i), "{\nref = c" + std::to_string(i + 1) + ";\n}\n");
    glyphs += glyphWithShapes("g", pathOfListNodes(4));
    auto font = readFont(documentWithGlyphs(glyphs));
    ASSERT_NE(font, nullptr);
    for (const auto& glyph : font->glyphs()) {
        ASSERT_TRUE(glyph->readLayersFormat(3));
        auto layer = glyph->layerForId("m01");
        layer->copyDecomposedLayer();
        layer->bezierPath();
    }
    EXPECT_NE(font->glyphForName("g")->bezierPath(), nullptr);
}

TEST(ResourceBounds, LayersOfMoreShapesThanAnyGlyphFail)
{
    auto paths = [](size_t count) {
        std::string list;
        for (size_t i = 0; i < count; ++i) list += "{\nnodes = (\n(0,0,l)\n);\n},\n";
        return list;
    };
    EXPECT_TRUE(layersRead(documentWithGlyphs(glyphWithShapes("A", paths(VLLayerMaximumShapes)))));
    EXPECT_FALSE(layersRead(documentWithGlyphs(glyphWithShapes("A", paths(VLLayerMaximumShapes + 1)))));
    // Lists repeated under their key count together.
    std::string half = "shapes = (\n" + paths(VLLayerMaximumShapes / 2 + 1) + ");\n";
    ScannedText text(half + half + "}");
    EXPECT_EQ(VLLayer::initWithVelmorParser_format(text.get(), 3), nullptr);
    EXPECT_EQ(text.message(), "Too many entries: VLShape");
}

TEST(ResourceBounds, AFontBoundsTheRecordsItsOutlinesBuild)
{
    // Two glyphs of 1 layer, 1 path and 10 nodes: 12 records each.
    auto font = readFont(documentWithGlyphs(glyphWithShapes("A", pathOfListNodes(10)) +
                                            glyphWithShapes("B", pathOfListNodes(10)) +
                                            glyphWithShapes("C", "\"0 0 LINE;100 0 LINE;100 100 LINE\"\n")));
    ASSERT_NE(font, nullptr);
    EXPECT_EQ(*font->outlineRecordsLeft(), UINT64_MAX) << "unbounded unless a request bounds it";
    font->setOutlineRecordsLeft(20);
    EXPECT_TRUE(font->glyphForName("A")->readLayersFormat(3));
    EXPECT_EQ(*font->outlineRecordsLeft(), 8u);
    EXPECT_FALSE(font->glyphForName("B")->readLayersFormat(3)) << "the bound spans the glyphs";
    font->setOutlineRecordsLeft(100);
    EXPECT_TRUE(font->glyphForName("C")->readLayersFormat(3));
    EXPECT_EQ(*font->outlineRecordsLeft(), 100u - 5u) << "nodes of the line form count too";
}
