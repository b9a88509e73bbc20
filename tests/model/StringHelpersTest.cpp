#include "model/VLColorHelpers.h"
#include "model/VLStringHelpers.h"

#include <gtest/gtest.h>

#include <filesystem>

TEST(StringHelpers, CharacterSetTests)
{
    EXPECT_TRUE(isNumber("-1.5"));
    EXPECT_TRUE(isNumber(""));
    EXPECT_FALSE(isNumber("1e5"));
    EXPECT_FALSE(isNumber("1 5"));
    EXPECT_TRUE(isAllDigits("0123"));
    EXPECT_FALSE(isAllDigits("-1"));
    EXPECT_TRUE(isHexCapitalString("00FF"));
    EXPECT_FALSE(isHexCapitalString("00ff"));
    EXPECT_TRUE(isHexCapitalStringWithLength("0041", 4));
    EXPECT_FALSE(isHexCapitalStringWithLength("041", 4));
}

TEST(StringHelpers, HexadecimalBothWays)
{
    EXPECT_EQ(hexStringToInt("41"), 65);
    EXPECT_EQ(hexStringToInt("-41"), -65);
    EXPECT_EQ(hexStringToInt("ff"), 255);
    EXPECT_EQ(hexStringToInt("1 0"), 16);
    EXPECT_EQ(hexStringToInt(""), 0x7fffffff);
    EXPECT_EQ(hexStringToInt("4G"), 0x7fffffff);
    EXPECT_EQ(hexStringToInt("FFFFFFFF"), -1);
    EXPECT_EQ(hexStringToInt("1FFFFFFFF"), -1);

    EXPECT_EQ(hexStringFromInt(65), "41");
    EXPECT_EQ(hexStringFromInt(256), "100");
    EXPECT_EQ(hexStringFromInt(0), "0");
    EXPECT_EQ(hexStringFromInt(-65), "-41");
    EXPECT_EQ(hexStringFromInt(0x1F600), "1F600");
    EXPECT_EQ(hexStringFromInt(0x123456789), "23456789");
    EXPECT_EQ(hexStringToInt(hexStringFromInt(-0x1234)), -0x1234);
}

TEST(StringHelpers, LenientNumbers)
{
    EXPECT_DOUBLE_EQ(lenientDoubleValue("1,5"), 1.5);
    EXPECT_DOUBLE_EQ(lenientDoubleValue(" -2.25"), -2.25);
    EXPECT_DOUBLE_EQ(lenientDoubleValue("abc"), 0.0);
}

TEST(StringHelpers, DotSuffixes)
{
    EXPECT_EQ(stringByDeletingDotSuffix("a.sc.ss01"), "a");
    EXPECT_EQ(stringByDeletingLastDotSuffix("a.sc.ss01"), "a.sc");
    EXPECT_EQ(stringByDeletingDotSuffix("a"), "a");
    EXPECT_EQ(stringByDeletingLastDotSuffix("a"), "a");
    EXPECT_EQ(dotSuffix("a.sc.ss01"), ".sc.ss01");
    EXPECT_EQ(dotSuffix("a"), std::nullopt);
    EXPECT_EQ(stringByAppendingDotSuffix("a", "sc"), "a.sc");
    EXPECT_EQ(stringByAppendingDotSuffix("a", ".sc"), "a.sc");
    EXPECT_EQ(stringByAppendingDotSuffix("a", ""), "a");
}

TEST(StringHelpers, CharactersAreCodePoints)
{
    EXPECT_EQ(countOfChar("a\u00E9b\u00E9", U'\u00E9'), 2u);
    EXPECT_EQ(character32AtIndex("\u00E9\U0001F600x", 1), U'\U0001F600');
    EXPECT_EQ(character32AtIndex("x", 1), 0u);
    EXPECT_EQ(character32AtIndex("\xFFx", 0), 0xFFFDu);
    EXPECT_EQ(stringByRemovingCharactersInSet("a-b\u00E9c", "-\u00E9"), "abc");
    EXPECT_EQ(camelCaseToSentenceCase("fontNameIsLong"), "font Name Is Long");
    EXPECT_EQ(camelCaseToSentenceCase("ABC"), "ABC");
}

TEST(StringHelpers, FirstCharacterTakesItsFullUnicodeCase)
{
    EXPECT_EQ(stringWithFirstUpper("élan"), "Élan");
    EXPECT_EQ(stringWithFirstLower("Glyph"), "glyph");
    EXPECT_EQ(stringWithFirstUpper("straße"), "Straße") << "only the first character changes";
    EXPECT_EQ(stringWithFirstUpper("ßig"), "SSig") << "one character can become two";
    EXPECT_EQ(stringWithFirstLower("İx"), "i\u0307x");
    EXPECT_EQ(stringWithFirstUpper("ix"), "Ix") << "the same in every language";
    EXPECT_EQ(stringWithFirstUpper("άλφα"), "Άλφα");
    EXPECT_EQ(stringWithFirstLower("ΆΛΦΑ"), "άΛΦΑ");
    EXPECT_EQ(stringWithFirstUpper("ѡ"), "Ѡ");
    EXPECT_EQ(stringWithFirstUpper("այբ"), "Այբ");
    EXPECT_EQ(stringWithFirstLower("Ⴀ"), "ⴀ");
    EXPECT_EQ(stringWithFirstUpper("ǆx"), "Ǆx");
    EXPECT_EQ(stringWithFirstLower("𐐀x"), "𐐨x") << "beyond the first plane";
    EXPECT_EQ(stringWithFirstUpper("1a"), "1a");
    EXPECT_EQ(stringWithFirstUpper(""), "");
    EXPECT_EQ(stringWithFirstUpper("\xFF" "a"), "\xFF" "a") << "text that starts broken stays";
}

TEST(StringHelpers, RemovingAccentsKeepsTheBaseLetters)
{
    EXPECT_EQ(stringByRemovingAccents("Ångström Łódź e\u0301"), "Angstrom Łodz e") << "Ł has no base letter";
    EXPECT_EQ(stringByRemovingAccents("Tiếng Việt"), "Tieng Viet") << "stacked accents";
    EXPECT_EQ(stringByRemovingAccents("Đường"), "Đuong");
    EXPECT_EQ(stringByRemovingAccents("Άλφα ώρα ᾈ"), "Αλφα ωρα Α");
    EXPECT_EQ(stringByRemovingAccents("Ёлка й"), "Елка и");
    EXPECT_EQ(stringByRemovingAccents("a\u0323\u0301"), "a");
    EXPECT_EQ(stringByRemovingAccents("가 ﬁ"), "가 ﬁ") << "syllables and ligatures are no accented letters";
    EXPECT_EQ(stringByRemovingAccents("𝐀\u0301"), "𝐀");
    EXPECT_EQ(stringByRemovingAccents(""), "");
}

TEST(StringHelpers, AsciiEscapesOnlyStringsThatNeedIt)
{
    EXPECT_EQ(asciiString("say \"hi\" \\"), "say \"hi\" \\");
    EXPECT_EQ(asciiString("a\tb\"\\"), "a\\011b\\\"\\\\");
    EXPECT_EQ(asciiString("\u00E9\x7F"), "\\U00E9\\177");
    EXPECT_EQ(asciiString("\U0001F600"), "\\UD83D\\UDE00");
}

TEST(StringHelpers, FilePaths)
{
    EXPECT_EQ(encodeForFilePath("a<b>:c\"d/e\\f|g?h*i\nj"), "abcdefghij");
    std::string one = pathForTemporaryFileWithPrefix("thumb");
    EXPECT_EQ(std::filesystem::path(one).parent_path(), std::filesystem::temp_directory_path());
    EXPECT_TRUE(std::filesystem::path(one).filename().string().starts_with("thumb-"));
    EXPECT_NE(one, pathForTemporaryFileWithPrefix("thumb"));

    EXPECT_EQ(absolutePathFromBaseDirPath("../img/a.png", "/fonts/doc"), "/fonts/img/a.png");
    EXPECT_EQ(absolutePathFromBaseDirPath("/abs/a.png", "/fonts"), "/abs/a.png");
    EXPECT_EQ(relativePathFromBaseDirPath("/fonts/img/a.png", "/fonts/doc"), "../img/a.png");
    EXPECT_EQ(relativePathFromBaseDirPath("img/a.png", "/fonts"), "img/a.png");
}

namespace {

std::array<double, 4> rgbaOf(std::string_view text)
{
    std::optional<Color> c = colorWithString(text);
    return c ? c->rgba() : std::array<double, 4>{-1, -1, -1, -1};
}

} // namespace

TEST(ColorHelpers, ColoursFromText)
{
    EXPECT_EQ(rgbaOf("rgba(255,0,0,0.5)"), (std::array<double, 4>{1, 0, 0, 1}));
    EXPECT_EQ(colorWithString("rgba(255,0,0)"), std::nullopt);
    EXPECT_EQ(rgbaOf("#f00"), (std::array<double, 4>{1, 0, 0, 1}));
    EXPECT_EQ(rgbaOf("#8F00"), (std::array<double, 4>{1, 0, 0, 0x88 / 255.0}));
    EXPECT_EQ(rgbaOf("#00ff0080"), (std::array<double, 4>{1, 0, 0x80 / 255.0, 0}));
    EXPECT_EQ(rgbaOf("#336699"), (std::array<double, 4>{0x33 / 255.0, 0x66 / 255.0, 0x99 / 255.0, 1}));
    EXPECT_EQ(colorWithString("#12345"), std::nullopt);
    EXPECT_EQ(colorWithString("red"), std::nullopt);

    auto green = rgbaOf("hsb(85,255,255)");
    EXPECT_NEAR(green[0], 0.0, 1e-2);
    EXPECT_NEAR(green[1], 1.0, 1e-9);
    EXPECT_EQ(green[3], 1.0);
    auto grey = rgbaOf("hsba(10,0,128,0.25)");
    EXPECT_EQ(grey, (std::array<double, 4>{128 / 255.0, 128 / 255.0, 128 / 255.0, 0.25}));
    EXPECT_EQ(colorWithString("hsb(1,2)"), std::nullopt);

    EXPECT_DOUBLE_EQ(colorComponentFrom_start_length("ABF", 2, 1), 1.0);
    EXPECT_DOUBLE_EQ(colorComponentFrom_start_length("AB80", 2, 2), 128 / 255.0);
}
