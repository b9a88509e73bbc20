#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLLayer.h"
#include "support/PlistTestSupport.h"
#include "support/TestDocuments.h"
#include "thumbnail/VLTextSetting.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

namespace {

std::vector<double> positions(const VLSetLine& line)
{
    std::vector<double> xs;
    for (const auto& placed : line.glyphs) xs.push_back(placed.x);
    return xs;
}

std::string stemsDocument()
{
    std::ifstream file(std::string(VELMOR_TEST_DATA) + "/proof/stems.velmor");
    std::stringstream text;
    text << file.rdbuf();
    return text.str();
}

} // namespace

// Widths in Light: I 200, H 500, V 400, space 250; in Bold: I 400, H 600, V 400.
TEST(TextSetting, GlyphsFollowTheirWidthsAndTheKerningOfTheirMasters)
{
    auto font = readTestDocument("proof/stems.velmor");
    ASSERT_NE(font, nullptr);
    auto& I = *font->glyphForName("I");
    auto& V = *font->glyphForName("V");
    font->setKerning_forMaster_direction(Value(ValueDictionary{{I.id(), Value(ValueDictionary{{V.id(), -50}})}}),
                                         "light", 0);
    font->setKerning_forMaster_direction(Value(ValueDictionary{{I.id(), Value(ValueDictionary{{V.id(), -150}})}}),
                                         "bold", 0);

    VLTextStyle light = VLTextStyle::forMaster(*font, "light");
    auto lines = VLSetText(*font, U"IVI\nH I", light);
    ASSERT_EQ(lines.size(), 2u);
    EXPECT_EQ(positions(lines[0]), (std::vector<double>{0, 150, 550}));
    EXPECT_EQ(lines[0].width, 750);
    EXPECT_EQ(positions(lines[1]), (std::vector<double>{0, 500, 750}));

    VLFactors halfway;
    halfway.setObject_forKey(VLFactor(0.5), "light");
    halfway.setObject_forKey(VLFactor(0.5), "bold");
    VLTextStyle regular(*font, halfway);
    auto blended = VLSetText(*font, U"IV", regular);
    EXPECT_EQ(positions(blended[0]), (std::vector<double>{0, 300 - 100})) << "a width of 300, a kerning of -100";
    EXPECT_EQ(regular.advanceForGlyph(font->glyphForName("I")), 300);
}

// The document has ".notdef" 300 wide; without it, "x" leaves a gap of the average of I (200),
// V (400) and I.
TEST(TextSetting, MissingCharactersShowNotdefOrAGap)
{
    auto font = readTestDocument("proof/stems.velmor");
    ASSERT_NE(font, nullptr);
    VLTextStyle style = VLTextStyle::forMaster(*font, "light");
    auto line = VLSetText(*font, U"IxVI", style)[0];
    EXPECT_EQ(line.glyphs[1].glyph, font->glyphForName(".notdef"));
    EXPECT_EQ(positions(line), (std::vector<double>{0, 200, 500, 900}));

    std::string text = stemsDocument();
    text.replace(text.find("glyphname = .notdef;"), 20, "glyphname = box;");
    TemporaryFile document(text);
    VLError error;
    auto withoutNotdef = VLFont::initWithURL_error(document.path, &error);
    ASSERT_NE(withoutNotdef, nullptr);
    VLTextStyle plain = VLTextStyle::forMaster(*withoutNotdef, "light");
    auto gapped = VLSetText(*withoutNotdef, U"IxVI", plain)[0];
    EXPECT_EQ(gapped.glyphs[1].glyph, nullptr);
    EXPECT_NEAR(gapped.glyphs[2].x, 200 + (200 + 400 + 200) / 3.0, 1e-9);
    EXPECT_EQ(VLSetText(*withoutNotdef, U"xy", plain)[0].width, 1000) << "half an em each, with no glyph to average";
}

// Documents of the older format keep code points with leading zeros, "0049" where the newer
// ones keep "49".
TEST(TextSetting, CharactersWrittenWithLeadingZerosAreFound)
{
    auto font = readTestDocument("proof/stems.velmor");
    ASSERT_NE(font, nullptr);
    font->glyphForName("I")->setUnicodes({"0049"});
    VLTextStyle style = VLTextStyle::forMaster(*font, "light");
    auto line = VLSetText(*font, U"IV", style)[0];
    EXPECT_EQ(line.glyphs[0].glyph, font->glyphForName("I"));
    EXPECT_EQ(line.glyphs[1].glyph, font->glyphForName("V"));
}
