#include "reader/VLPlistNumbers.h"

#include <gtest/gtest.h>

#include <string>

namespace {

const uint8_t* bytes(const std::string& text)
{
    return reinterpret_cast<const uint8_t*>(text.c_str());
}

double doubleAt(const std::string& text, size_t* index = nullptr)
{
    return parseDoubleAt(bytes(text), index);
}

} // namespace

TEST(PlistNumbers, DoublesKeepThirteenDecimalsAndTheOldExponentRule)
{
    EXPECT_EQ(doubleAt("1e-5"), 0.0001);
    EXPECT_EQ(doubleAt("1.0e-5"), 0.00001);
    EXPECT_EQ(doubleAt("1.5e-5"), 0.000015);
    EXPECT_EQ(doubleAt("0.12345678901234"), 0.1234567890123);
    EXPECT_EQ(doubleAt("-0.99999999999999"), -0.9999999999999);
    EXPECT_EQ(doubleAt("1.2.3"), 12.3);
    EXPECT_EQ(doubleAt("+3"), 3.0);
    EXPECT_EQ(doubleAt(" \t\"-12.5\""), -12.5);
    EXPECT_EQ(doubleAt("x"), 0.0);

    size_t index = 0;
    EXPECT_EQ(doubleAt("0.12345678901234e-5;", &index), 0.1234567890123);
    EXPECT_EQ(index, 16u) << "the number ends at the thirteenth decimal";
    index = 0;
    EXPECT_EQ(doubleAt("1e5", &index), 1.0);
    EXPECT_EQ(index, 1u) << "an exponent without a minus stays unread";
    index = 4;
    EXPECT_EQ(doubleAt("abc, \"7.25\";", &index), 7.25);
    EXPECT_EQ(index, 11u) << "behind the closing quote";
    index = 0;
    EXPECT_EQ(doubleAt("2.5e-2\"x", &index), 0.025);
    EXPECT_EQ(index, 7u);
}

TEST(PlistNumbers, Integers)
{
    size_t index = 0;
    EXPECT_EQ(parseIntegerAt(bytes("\t\"+-42\","), &index), -42);
    EXPECT_EQ(index, 7u);
    index = 0;
    EXPECT_EQ(parseIntegerAt(bytes("abc"), &index), 0);
    EXPECT_EQ(index, 0u);
    EXPECT_EQ(parseIntegerAt(bytes(" 9007199254740993"), nullptr), 9007199254740993);
}

TEST(PlistNumbers, TuplesStopAtTheParenthesisOrTheCapacity)
{
    double values[10] = {};
    size_t index = 0;
    int count = 0;
    std::string text = "\n (\n1\t,\n-2.5 ,3,)x";
    EXPECT_TRUE(parseDoubleTupleAt(bytes(text), &index, values, &count));
    EXPECT_EQ(count, 3);
    EXPECT_EQ(values[1], -2.5);
    EXPECT_EQ(text[index], ')');

    index = 0;
    count = 2;
    EXPECT_TRUE(parseDoubleTupleAt(bytes("(1, 2)"), &index, values, &count));
    EXPECT_EQ(count, 2);
    index = 0;
    count = 2;
    EXPECT_FALSE(parseDoubleTupleAt(bytes("(1, 2, 3)"), &index, values, &count));
    EXPECT_EQ(count, -1);

    index = 0;
    EXPECT_TRUE(parseDoubleTupleAt(bytes("()"), &index, values, &count));
    EXPECT_EQ(count, 0);
    EXPECT_FALSE(parseDoubleTupleAt(bytes("(1, 2"), nullptr, values, nullptr));
    EXPECT_FALSE(parseDoubleTupleAt(bytes("(a)"), nullptr, values, nullptr));
    EXPECT_FALSE(parseDoubleTupleAt(bytes("1"), nullptr, values, nullptr));
}
