#include "model/VLAxis.h"
#include "model/VLFont.h"
#include "model/VLFontMaster.h"
#include "model/VLGlyph.h"
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
