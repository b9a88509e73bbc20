#include "model/FTPointArray.h"
#include "model/VLColorHelpers.h"
#include "model/VLFullSort.h"
#include "model/VLOrderedDictionary.h"
#include "model/VLStringHelpers.h"
#include "model/VLTransformHelpers.h"
#include "model/VLValueHelpers.h"
#include "platform/VLException.h"

#include <gtest/gtest.h>

TEST(OrderedDictionary, OrderQuirksAndMoves)
{
    VLOrderedDictionary<int> d;
    d.setObject_forKey(1, "a");
    d.setObject_forKey(2, "b");
    d.setObject_forKey(3, "c");
    d.moveFromIndex_To(0, 2);
    EXPECT_EQ(d.allKeys(), (std::vector<std::string>{"b", "c", "a"}));
    d.moveFromIndex_To(2, 0);
    EXPECT_EQ(d.allKeys(), (std::vector<std::string>{"a", "b", "c"}));

    d.insertObject_forKey_atIndex(9, "a", 2);
    EXPECT_EQ(d.count(), 4u) << "an existing key inserted again stands twice";
    EXPECT_EQ(d.allValues(), (std::vector<int>{9, 2, 9, 3}));
    d.removeObjectForKey("a");
    EXPECT_EQ(d.allKeys(), (std::vector<std::string>{"b", "c"}));
    EXPECT_EQ(d.indexOfKey("c"), 1u);
    EXPECT_EQ(d.keyAtIndex(5), nullptr);
}

TEST(StringHelpers, NumbersAndHexadecimal)
{
    EXPECT_EQ(hexStringToInt("41"), 65);
    EXPECT_EQ(hexStringToInt("-41"), -65);
    EXPECT_EQ(hexStringToInt(""), 0x7fffffff);
    EXPECT_EQ(hexStringToInt("4G"), 0x7fffffff);
    EXPECT_EQ(hexStringToInt("1 0"), 16) << "a blank costs no shift";
    EXPECT_EQ(hexStringFromInt(65), "41");
    EXPECT_EQ(hexStringFromInt(256), "100");
    EXPECT_EQ(hexStringFromInt(0), "0");
    EXPECT_EQ(hexStringFromInt(-255), "-FF");
    EXPECT_DOUBLE_EQ(lenientDoubleValue("1,5"), 1.5);
    EXPECT_TRUE(isNumber("-1.5"));
    EXPECT_FALSE(isNumber("1e5"));
    EXPECT_TRUE(isNumber(""));
    EXPECT_TRUE(isHexCapitalStringWithLength("00E4", 4));
    EXPECT_FALSE(isHexCapitalString("00e4"));
}

TEST(StringHelpers, SuffixesAndEscapes)
{
    EXPECT_EQ(stringByDeletingDotSuffix("a.sc.ss01"), "a");
    EXPECT_EQ(stringByDeletingLastDotSuffix("a.sc.ss01"), "a.sc");
    EXPECT_EQ(dotSuffix("a.sc.ss01"), ".sc.ss01");
    EXPECT_FALSE(dotSuffix("a"));
    EXPECT_EQ(stringByAppendingDotSuffix("a", "sc"), "a.sc");
    EXPECT_EQ(stringByAppendingDotSuffix("a", ".sc"), "a.sc");
    EXPECT_EQ(stringByAppendingDotSuffix("a", ""), "a");
    EXPECT_EQ(asciiString("a\"\n\xC3\xA4"), "a\\\"\\012\\U00E4");
    EXPECT_EQ(camelCaseToSentenceCase("axisLocationValue"), "axis Location Value");
    EXPECT_EQ(encodeForFilePath("a/b:c?\x01"), "abc");
}

TEST(ValueHelpers, KeyPaths)
{
    Value root(ValueDictionary{});
    setObject_forKeysInArray(root, Value(5), {"a", "b", "c"});
    EXPECT_EQ(objectForKeyPath(root, "a.b.c"), Value(5));
    EXPECT_TRUE(objectForKeyPath(root, "a.x.c").isNull());
    setObject_forKeysInArray(root, Value("leaf"), {"a", "d"});
    EXPECT_THROW(setObject_forKeysInArray(root, Value(1), {"a", "d", "e"}), VLException);

    Value copy = deepMutableCopy(root);
    setObject_forKeysInArray(copy, Value(6), {"a", "b", "c"});
    EXPECT_EQ(objectForKeyPath(root, "a.b.c"), Value(5)) << "the copy shares nothing";
    EXPECT_EQ(firstKeyForObject(root["a"].dictionary(), Value("leaf")), "d");
}

TEST(FullSort, EndsOnAnyComparator)
{
    std::vector<int> items = {3, 1, 2, 5, 4};
    fullSort(items, [](int a, int b) { return a > b ? 1 : -1; });
    EXPECT_TRUE(std::is_sorted(items.begin(), items.end()));
    std::vector<int> cycle = {1, 2, 3, 4};
    fullSort(cycle, [](int, int) { return 1; });
    EXPECT_EQ(cycle.size(), 4u) << "an inconsistent comparator runs out of budget";
}

TEST(ColourHelpers, TextForms)
{
    auto red = colorWithString("rgba(255,0,0,0.5)");
    ASSERT_TRUE(red);
    EXPECT_EQ(red->rgba(), (std::array<double, 4>{1, 0, 0, 1})) << "the alpha of rgba is dropped";
    auto argb = colorWithHexString("#80FF0000");
    ASSERT_TRUE(argb);
    EXPECT_NEAR(argb->rgba()[3], 128 / 255.0, 1e-12);
    EXPECT_EQ(colorWithHexString("#F00")->rgba(), (std::array<double, 4>{1, 0, 0, 1}));
    EXPECT_FALSE(colorWithHexString("#12345"));
    EXPECT_FALSE(colorWithString("red"));
    EXPECT_NEAR(colorWithString("hsba(0,255,255,0.5)")->rgba()[0], 1, 1e-12);
}

TEST(PointArrays, FromValuesAndSearch)
{
    FTPointArray points = FTPointArray::pointArrayWithArray({Value(), Value(ValueArray{1.1, 2.0}), Value(3)});
    ASSERT_EQ(points.count(), 3u);
    EXPECT_EQ(points.firstPoint().x, VLUnsetValue);
    EXPECT_EQ(points.pointAtIndex(1).x, static_cast<double>(1.1f)) << "through single precision";
    EXPECT_EQ(points.lastPoint().y, VLUnsetValue);
    EXPECT_TRUE(points.containsPoint_threshold({1.1, 2.05}, 0.1));
    EXPECT_EQ(points.copySubarrayWithRange(1, 9).count(), 2u);
}

TEST(TransformHelpers, ShearAroundACentre)
{
    AffineTransform t;
    shearXBy_yBy_atCenter(t, 0.5, 0, {0, 100});
    EXPECT_EQ(t.transformPoint({10, 100}), (Point{10, 100})) << "the centre's line stays";
    EXPECT_EQ(t.transformPoint({10, 200}), (Point{60, 200}));
    EXPECT_EQ(indexPathByAddingOneToLastIndex({0, 3}), (std::vector<size_t>{0, 4}));
}
