#include "platform/Value.h"

#include <gtest/gtest.h>

namespace {

TEST(Value, NumbersCompareByValueAcrossIntegerAndReal)
{
    EXPECT_EQ(Value(3), Value(3.0));
    EXPECT_NE(Value(3), Value(3.5));
    EXPECT_NE(Value(3), Value("3"));
    EXPECT_EQ(Value(ValueArray{1, "a"}), Value(ValueArray{1.0, "a"}));
}

TEST(Value, CopiesShareTheirContainer)
{
    Value a(ValueArray{});
    Value b = a;
    b.mutableArray()->push_back(7);
    EXPECT_EQ(a.count(), 1u);
    EXPECT_EQ(a[0], Value(7));
}

TEST(Value, LookUpsThatMissGiveNull)
{
    Value array(ValueArray{1, 2});
    Value dictionary(ValueDictionary{{"key", 1}});
    EXPECT_TRUE(array[2].isNull());
    EXPECT_TRUE(array["key"].isNull());
    EXPECT_TRUE(dictionary["other"].isNull());
    EXPECT_TRUE(dictionary[0].isNull());
    EXPECT_TRUE(Value()[0]["key"].isNull());
}

} // namespace
