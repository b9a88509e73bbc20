#include "support/PlistTestSupport.h"
#include "platform/VLUnsetValue.h"
#include "reader/VLPlistTypedReaders.h"

#include <gtest/gtest.h>

#include <vector>

TEST(PlistTypedReaders, MatchingKeysComparesBytes)
{
    ScannedText spaced("name = A;");
    EXPECT_FALSE(matchPlistKey(spaced.get(), "nam", 3));
    EXPECT_FALSE(matchPlistKey(spaced.get(), "names", 5));
    EXPECT_TRUE(matchPlistKey(spaced.get(), "name", 4));
    EXPECT_EQ(spaced.offset(), 6u);

    ScannedText tight("name=A;");
    EXPECT_TRUE(matchPlistKey(tight.get(), "name", 4));
    EXPECT_EQ(tight.offset(), 5u);

    for (const char* text : {"name;", "name\t= A;", "nam"}) {
        ScannedText other(text);
        EXPECT_FALSE(matchPlistKey(other.get(), "name", 4)) << text;
        EXPECT_EQ(other.offset(), 0u);
    }
}

TEST(PlistTypedReaders, StringValues)
{
    ScannedText quoted("  \"A b\";");
    EXPECT_EQ(parsePlistStringValue(quoted.get()), Value("A b"));
    EXPECT_EQ(*quoted->curr, ';');

    ScannedText unquoted(" 123;");
    EXPECT_EQ(parsePlistStringValue(unquoted.get()), Value("123"));

    ScannedText spaced("\"A\" ;");
    EXPECT_TRUE(parsePlistStringValue(spaced.get()).isNull());
    EXPECT_EQ(spaced.message(), "No semicolon at the end of the string");

    ScannedText wrong("\n;");
    EXPECT_TRUE(parsePlistStringValue(wrong.get()).isNull());
    EXPECT_EQ(wrong.message(), "Unexpected character “0x3b”");
    EXPECT_EQ(wrong.reason(), "Problem with file at line 2");
    EXPECT_EQ(wrong.offset(), 1u);

    ScannedText stale(";");
    stale->error = makePlistFileError(1, "stale");
    EXPECT_TRUE(parsePlistStringValue(stale.get()).isNull());
    EXPECT_EQ(stale.message(), "stale");

    ScannedText empty("  ");
    EXPECT_TRUE(parsePlistStringValue(empty.get()).isNull());
    EXPECT_FALSE(empty->error);
}

TEST(PlistTypedReaders, DoublesAndBools)
{
    ScannedText doubles(" \"12.5\"; -3; 1e-5; +3; \"7");
    EXPECT_EQ(parsePlistDoubleValue(doubles.get()), 12.5);
    EXPECT_EQ(*doubles->curr, ';');
    const double expected[] = {-3.0, 0.0001, 0.0};
    for (double value : expected) {
        ++doubles->curr;
        EXPECT_EQ(parsePlistDoubleValue(doubles.get()), value);
    }
    EXPECT_EQ(*doubles->curr, '+') << "no plus sign in the stream";
    doubles->curr += 3;
    EXPECT_EQ(parsePlistDoubleValue(doubles.get()), 7.0);
    EXPECT_EQ(doubles->curr, doubles->end);
    EXPECT_EQ(parsePlistDoubleValue(doubles.get()), 0.0);

    ScannedText bools("YES;NO;1;0; 17;x");
    for (bool value : {true, false, true, false, true, false}) {
        EXPECT_EQ(parsePlistBoolValue(bools.get()), value);
        ++bools->curr;
    }
}

TEST(PlistTypedReaders, PointsInBothFormsWithinTheLimits)
{
    struct Case {
        const char* text;
        Point point;
    };
    const Case cases[] = {
        {"\"{12, -3.5}\";", {12, -3.5}},
        {" (12,-3.5);", {12, -3.5}},
        {"(\n 12,\n -3.5\n);", {12, -3.5}},
        {"\"{1000000.1, -1000000}\";", {0, -1000000}},
        {"(-1000001, 1000000);", {0, 1000000}},
    };
    for (const Case& c : cases) {
        ScannedText scanned(c.text);
        EXPECT_EQ(parsePlistPoint(scanned.get()), c.point) << c.text;
        EXPECT_EQ(*scanned->curr, ';') << c.text;
        EXPECT_FALSE(scanned->error) << c.text;
    }
    for (const char* text : {"{1, 2};", "\"{1, 2}\" ;", "(1, 2)"}) {
        ScannedText scanned(text);
        EXPECT_EQ(parsePlistPoint(scanned.get()), (Point{VLUnsetValue, 0.0})) << text;
        EXPECT_EQ(scanned.message(), "Invalid point definition") << text;
    }
    ScannedText unclosed("\"{1, 2}\" ;");
    parsePlistPoint(unclosed.get());
    EXPECT_EQ(unclosed.offset(), 8u) << "moves by what was read";
}

TEST(PlistTypedReaders, TransformsAreNormalised)
{
    double m[6] = {};
    ScannedText quoted(" \"{1, 0.5, -0.5, 2, 10, -20}\";");
    parsePlistTransform(quoted.get(), m);
    EXPECT_EQ(std::vector<double>(m, m + 6), (std::vector<double>{1, 0.5, -0.5, 2, 10, -20}));
    EXPECT_EQ(*quoted->curr, ';');

    ScannedText collapsed("{0.0000000001, 0, 0, 0, 30000.5, -30001}");
    parsePlistTransform(collapsed.get(), m);
    EXPECT_EQ(std::vector<double>(m, m + 6), (std::vector<double>{0.1, 0, 0, 0.1, 0, 0}));
    EXPECT_EQ(collapsed.offset(), collapsed->end - collapsed->begin + 1);

    ScannedText kept("{0, 1, 1, 0, 30000, -30000}");
    parsePlistTransform(kept.get(), m);
    EXPECT_EQ(std::vector<double>(m, m + 6), (std::vector<double>{0, 1, 1, 0, 30000, -30000}));

    ScannedText wrong("\n(1, 0, 0, 1, 0, 0)");
    parsePlistTransform(wrong.get(), m);
    EXPECT_EQ(std::vector<double>(m, m + 6), (std::vector<double>{0, 1, 1, 0, 30000, -30000}));
    EXPECT_EQ(wrong.message(), "Unexpected character “0x28” (expected “\" or {”)");
    EXPECT_EQ(wrong.reason(), "Problem with file at line 2");
    EXPECT_EQ(wrong.offset(), 2u);
}

TEST(PlistTypedReaders, ColoursByComponentCount)
{
    struct Case {
        const char* text;
        Color color;
    };
    const Case cases[] = {
        {"(51)", Color::colorWithCalibratedRed_green_blue_alpha(0.2, 1, 1, 1)},
        {"(0, 51)", Color::colorWithCalibratedWhite_alpha(0, 0.2)},
        {"(255, 0, 51)", Color::colorWithCalibratedRed_green_blue_alpha(1, 0, 0.2, 1)},
        {"(255, 0, 0, 51)", Color::colorWithCalibratedRed_green_blue_alpha(1, 0, 0, 0.2)},
        {"(0, 51, 0, 255, 255)", Color::colorWithDeviceCyan_magenta_yellow_black_alpha(0, 0.2, 0, 1, 1)},
        {"(0, 0, 0, 51, 1, 2)", Color::colorWithCalibratedRed_green_blue_alpha(0, 0, 0, 0.2)},
        {"()", Color::colorWithCalibratedRed_green_blue_alpha(1, 1, 1, 1)},
    };
    for (const Case& c : cases) {
        ScannedText scanned(std::string(c.text) + ";");
        EXPECT_EQ(parsePlistColor(scanned.get()), c.color) << c.text;
        EXPECT_EQ(*scanned->curr, ';') << c.text;
    }
    ScannedText wrong("x;");
    EXPECT_FALSE(parsePlistColor(wrong.get()));
    EXPECT_EQ(wrong.offset(), 1u);
}

TEST(PlistTypedReaders, NumberLists)
{
    std::vector<double> values;
    auto collect = [&values](double value) { values.push_back(value); };

    ScannedText list(" (1, -2.5,\n3 , );");
    EXPECT_TRUE(parsePlistNumberList(list.get(), collect));
    EXPECT_EQ(values, (std::vector<double>{1, -2.5, 3}));
    EXPECT_EQ(*list->curr, ';');

    values.clear();
    ScannedText notAList("0;");
    EXPECT_TRUE(parsePlistNumberList(notAList.get(), collect));
    EXPECT_TRUE(values.empty());
    EXPECT_EQ(*notAList->curr, ';');

    for (auto [text, byte] : {std::pair{"();", "0x29"}, {"(1, x)", "0x78"}, {"(1, 2", "0x0"}}) {
        ScannedText wrong(text);
        EXPECT_FALSE(parsePlistNumberList(wrong.get(), collect)) << text;
        EXPECT_EQ(wrong.message(), std::string("Unexpected character “") + byte + "”") << text;
    }
}
