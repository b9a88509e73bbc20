#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "reader/VLPlistParser.h"
#include "reader/VLPlistSkippers.h"
#include "support/PlistTestSupport.h"

#include <gtest/gtest.h>

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
