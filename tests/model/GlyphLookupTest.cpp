#include "model/VLFont.h"
#include "model/VLGlyph.h"
#include "model/VLVelmorInfo.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace {

std::shared_ptr<VLGlyph> glyph(const std::string& name, std::vector<std::string> codes = {})
{
    auto g = VLGlyph::initFast();
    g->setNameFast(name);
    g->setUnicodesFast(codes);
    return g;
}

} // namespace

TEST(GlyphLookup, CodePointsFindTheLaterGlyphAndFollowChanges)
{
    auto font = VLFont::init();
    auto first = glyph("A", {"0041"});
    auto second = glyph("A.alt", {"0041"});
    font->setGlyphs({first, second, glyph("B", {"0042"})});
    EXPECT_EQ(font->glyphForUnicode("0041"), second);
    EXPECT_EQ(font->glyphForUnicodes({"0099", "0042"})->name(), "B");

    second->removeUnicode("0041");
    EXPECT_EQ(font->glyphForUnicode("0041"), first) << "the removal reaches the index at once";
    first->addUnicode("00c1");
    EXPECT_EQ(font->glyphForUnicode("00C1"), first);
    EXPECT_EQ(first->unicode(), "0041");
}

TEST(GlyphLookup, StaleEntriesAndPrivateCodes)
{
    auto font = VLFont::init();
    auto a = glyph("Adotbelow", {"1EA0"});
    auto b = glyph("B");
    font->setGlyphs({a, b});
    ASSERT_EQ(font->glyphForCharacter(0x1EA0), a);
    a->setUnicodesFast({"1EA1"}); // behind the index's back
    EXPECT_EQ(font->glyphForCharacter(0x1EA0), a) << "the fast look-up does not test staleness";
    EXPECT_EQ(font->glyphForUnicode("1EA0"), nullptr) << "the checked look-up drops the stale entry";

    EXPECT_EQ(font->characterForGlyph(b), 0x10FFFCu);
    EXPECT_EQ(font->characterForGlyph(b), 0x10FFFCu) << "the same private code the second time";
    EXPECT_EQ(font->characterForGlyph(a), 0x1EA1u);
    EXPECT_EQ(font->characterForGlyph(glyph("loose")), 0u) << "a glyph outside a font has none";
}

TEST(GlyphLookup, IdsAndNames)
{
    auto font = VLFont::init();
    auto a = glyph("A");
    a->setId("id-a");
    font->setGlyphs({a});
    EXPECT_EQ(font->glyphForId("id-a"), a);
    EXPECT_EQ(font->glyphForNameFast("A"), a);
    EXPECT_EQ(font->glyphsForNames({"x", "A", "y"}).size(), 1u);
}

TEST(GlyphLookup, FileNamesOfGlyphs)
{
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("A"), "A_");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("Aacute.sc"), "A_acute.sc");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("AE"), "A_E_");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("a"), "a");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("Z@[z"), "Z_@[z");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName(".notdef"), "_notdef");
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName(".Ä"), "_Ä_");
    // Upper case and title case by their Unicode categories, in every script and plane.
    for (std::string upper : {"Ä", "Ǆ", "ǅ", "Ά", "ẞ", "Ա", "Ѡ", "Ⴀ", "Ა", "ᾈ", "𝐀"})
        EXPECT_EQ(VLVelmorInfo::glyphNameToFileName(upper + "x"), upper + "_x") << upper;
    for (std::string other : {"ſ", "ĸ", "ǆ", "ά", "ß", "ա", "ѡ", "ა", "𝐚", "Ⅰ", "Ⓐ", "ª"})
        EXPECT_EQ(VLVelmorInfo::glyphNameToFileName(other + "x"), other + "x") << other;
    EXPECT_EQ(VLVelmorInfo::glyphNameToFileName("A\xFF" "B\xC3"), "A_\xFF" "B_\xC3") << "bytes that are no UTF-8 stay";
}

TEST(GlyphLookup, PackageGlyphsAreReadWhenNamed)
{
    namespace fs = std::filesystem;
    char name[] = "/tmp/velmor-lookup-XXXXXX";
    fs::path folder = mkdtemp(name);
    fs::create_directory(folder / "glyphs");
    std::ofstream(folder / "glyphs" / "A_.glyph") << "{\nglyphname = A;\nindex = 7;\n}\n";

    auto font = VLFont::init();
    font->setTempData_forKey(Value(folder.string()), "filePath");
    font->setGlyphs({glyph("z")});
    font->setGlyphFiles({"A", "B", "z"});
    EXPECT_EQ(font->countOfGlyphs(), 3u);
    auto a = font->glyphAtIndex(0);
    ASSERT_NE(a, nullptr);
    EXPECT_EQ(a->glyphId(), 7u);
    EXPECT_EQ(font->glyphs().back(), a) << "a loaded glyph goes to the end of the list";
    EXPECT_EQ(font->glyphAtIndex(1), nullptr) << "no file, no glyph";
    fs::remove_all(folder);
}
