#include "model/FTPointArray.h"
#include "model/VLFullSort.h"
#include "model/VLIndexPath.h"
#include "model/VLOrderedDictionary.h"
#include "model/VLTransformHelpers.h"
#include "model/VLValueHelpers.h"
#include "platform/VLException.h"
#include "platform/VLUnsetValue.h"

#include <gtest/gtest.h>

#include <numeric>
#include <random>

namespace {

using Dict = VLOrderedDictionary<Value>;
using Keys = std::vector<std::string>;

Dict abc()
{
    Dict d;
    for (const char* key : {"a", "b", "c"}) d.setObject_forKey(Value(std::string(key) + "1"), key);
    return d;
}

} // namespace

TEST(OrderedDictionary, InsertingAnExistingKeyLeavesItTwiceUntilItIsRemoved)
{
    Dict d = abc();
    d.insertObject_forKey_atIndex(Value("new"), "a", 2);
    EXPECT_EQ(d.count(), 4u);
    EXPECT_EQ(d.allKeys(), (Keys{"a", "b", "a", "c"}));
    EXPECT_EQ(d.allValues(), (ValueArray{"new", "b1", "new", "c1"}));
    EXPECT_EQ(d.allDistinctValues(), (ValueArray{"new", "b1", "c1"}));

    d.removeObjectAtIndex(2);
    EXPECT_EQ(d.allKeys(), (Keys{"b", "c"}));
    EXPECT_EQ(d.objectForKey("a"), Value());

    d.insertObject_forKey_atIndex(Value("z1"), "z", 99);
    EXPECT_EQ(d.allKeys(), (Keys{"b", "c", "z"}));
}

TEST(OrderedDictionary, MoveGoesToTheTargetIndexInBothDirections)
{
    Dict d = abc();
    d.moveFromIndex_To(0, 2);
    EXPECT_EQ(d.allKeys(), (Keys{"b", "c", "a"}));
    d = abc();
    d.moveFromIndex_To(2, 0);
    EXPECT_EQ(d.allKeys(), (Keys{"c", "a", "b"}));
    d.moveFromIndex_To(1, 1);
    d.moveFromIndex_To(0, 3);
    EXPECT_EQ(d.allKeys(), (Keys{"c", "a", "b"}));
    EXPECT_EQ(d.objectAtIndex(0), Value("c1"));
}

TEST(OrderedDictionary, RemovalsByPositionRangeAndKey)
{
    Dict d;
    for (const char* key : {"a", "b", "c", "d", "e", "f"}) d.setObject_forKey(Value(key), key);
    // The key handed in is one of the dictionary's own, which the removal shifts.
    d.removeObjectForKey(*d.keyAtIndex(0));
    EXPECT_EQ(d.allKeys(), (Keys{"b", "c", "d", "e", "f"}));
    d.removeObjectsInRange({3, 10});
    EXPECT_EQ(d.allKeys(), (Keys{"b", "c", "d"}));
    d.removeObjectFromIndex_To(0, 1);
    d.removeLastObject();
    EXPECT_EQ(d.allKeys(), (Keys{"c"}));
    d.removeObjectsForKeys({"x", "c"});
    EXPECT_TRUE(d.empty());
    d.removeLastObject();
    d.removeObjectAtIndex(0);
    EXPECT_EQ(d.keyAtIndex(0), nullptr);
}

TEST(OrderedDictionary, OrderChangesAndLookUpsByValue)
{
    Dict d = abc();
    d.setObject_forKey(Value("b1"), "d");
    d.sortUsingComparator([](const std::string& x, const std::string& y) { return x > y ? -1 : x < y ? 1 : 0; });
    EXPECT_EQ(d.allKeys(), (Keys{"d", "c", "b", "a"}));
    d.swipeIndex_with(0, 3);
    d.exchangeObjectAtIndex_withObjectAtIndex(1, 7);
    EXPECT_EQ(d.allKeys(), (Keys{"a", "c", "b", "d"}));
    EXPECT_EQ(d.indexOfKey("b"), 2u);
    EXPECT_EQ(d.indexOfKey("x"), std::nullopt);
    EXPECT_EQ(d.allKeysForObject(Value("b1")), (Keys{"b", "d"}));
    auto reversed = d.reverseKeyEnumerator();
    EXPECT_EQ(Keys(reversed.begin(), reversed.end()), (Keys{"d", "b", "c", "a"}));

    Keys seen;
    d.enumerateKeysAndObjectsUsingBlock([&](const std::string& key, const Value& value, bool& stop) {
        seen.push_back(key + value.string());
        stop = key == "c";
    });
    EXPECT_EQ(seen, (Keys{"aa1", "cc1"}));
}

TEST(OrderedDictionary, ConversionCopiesDeeplyAndOrdersNestedLevels)
{
    Value inner = ValueDictionary{{"y", 2}, {"x", 1}};
    ValueDictionary source{{"b", inner}, {"a", ValueArray{inner}}, {"c", "text"}};
    Dict d = Dict::initConvertFromDictionary(source);
    EXPECT_EQ(d.allKeys(), (Keys{"a", "b", "c"}));
    inner.mutableDictionary()->emplace("z", 3);
    EXPECT_EQ(d.objectForKey("b").count(), 2u);
    EXPECT_EQ(d.objectForKey("a")[size_t(0)].count(), 2u);

    Dict reordered = d;
    reordered.moveFromIndex_To(2, 0);
    EXPECT_EQ(Dict::initConvertFromDictionary(reordered).allKeys(), (Keys{"c", "a", "b"}));

    using Nested = VLOrderedDictionary<Dict>;
    Nested n = Nested::initConvertFromDictionary(source);
    EXPECT_EQ(n.allKeys(), (Keys{"b"}));
    EXPECT_EQ(n.objectForKey("b").allKeys(), (Keys{"x", "y", "z"}));
}

TEST(OrderedDictionary, DefaultObjectIsMadeOnce)
{
    Dict d;
    int made = 0;
    auto make = [&] { return Value(++made); };
    EXPECT_EQ(d.objectForKey_defaultClass("k", make), Value(1));
    EXPECT_EQ(d.objectForKey_defaultClass("k", make), Value(1));
    EXPECT_EQ(d.allKeys(), (Keys{"k"}));

    Value root = ValueDictionary{};
    Value made1 = objectForKey_defaultClass(root, "k", [] { return Value(ValueDictionary{}); });
    made1.mutableDictionary()->emplace("x", 1);
    EXPECT_EQ(objectForKeyPath(root, "k.x"), Value(1));
    Value notADictionary = 5;
    EXPECT_TRUE(objectForKey_defaultClass(notADictionary, "k", make).isNull());
}

TEST(ValueHelpers, KeyPathsWalkDownAndStopAtTheFirstMissingValue)
{
    Value root = ValueDictionary{{"a", ValueDictionary{{"b", ValueDictionary{{"c", 7}}}, {"s", "text"}}}};
    EXPECT_EQ(objectForKeyPath(root, "a.b.c"), Value(7));
    EXPECT_EQ(objectForKeys(root, {"a", "b", "c"}), Value(7));
    EXPECT_EQ(objectForKeysInArray(root, {"a", "b"}).count(), 1u);
    EXPECT_TRUE(objectForKeyPath(root, "a.x.c").isNull());
    EXPECT_TRUE(objectForKeyPath(root, "a.s.c").isNull());
}

TEST(ValueHelpers, SettingByKeysCreatesDictionariesAndRaisesOnOtherValues)
{
    Value root = ValueDictionary{{"s", "text"}, {"t", ValueDictionary{{"u", 1}}}};
    setObject_forKeysInArray(root, 5, {"a", "b", "c"});
    EXPECT_EQ(objectForKeyPath(root, "a.b.c"), Value(5));

    auto reasonFor = [&](const Keys& keys) {
        try {
            setObject_forKeysInArray(root, 1, keys);
        } catch (const VLException& e) {
            return e.reason();
        }
        return std::string("no exception");
    };
    EXPECT_EQ(reasonFor({"s", "x"}), "Before-last path item is not a dictionary (keyPath s.x)");
    EXPECT_EQ(reasonFor({"t", "u", "x", "y"}), "Path item not a dictionary (keyPath t.u.x.y - offending u)");

    Value text = "text";
    setObject_forKeysInArray(text, 1, {"a"});
    EXPECT_EQ(text, Value("text"));
}

TEST(ValueHelpers, CopiesAndReverseLookUps)
{
    Value inner = ValueArray{ValueDictionary{{"k", 1}}};
    Value original = ValueDictionary{{"list", inner}, {"name", "A"}};
    Value copy = deepMutableCopy(original);
    inner.mutableArray()->at(0).mutableDictionary()->emplace("j", 2);
    inner.mutableArray()->push_back(3);
    EXPECT_EQ(copy, (Value(ValueDictionary{{"list", ValueArray{ValueDictionary{{"k", 1}}}}, {"name", "A"}})));

    ValueDictionary codes{{"0041", "A"}, {"0042", 5}, {"0043", "A"}};
    EXPECT_EQ(reverseMapping(codes), (ValueDictionary{{"A", "0043"}, {"5", "0042"}}));
    ASSERT_NE(firstKeyForObject(codes, Value("A")), nullptr);
    EXPECT_EQ(*firstKeyForObject(codes, Value("A")), "0041");
    EXPECT_EQ(firstKeyForObject(codes, Value("B")), nullptr);
}

TEST(FullSort, SortsPartialOrdersAndEndsOnAnyComparator)
{
    std::vector<int> items{5, 3, 9, 1, 7};
    fullSort(items, [](int a, int b) { return a > b ? 1 : a < b ? -1 : 0; });
    EXPECT_EQ(items, (std::vector<int>{1, 3, 5, 7, 9}));

    std::vector<int> many(50);
    std::iota(many.begin(), many.end(), 0);
    fullSort(many, [](int, int) { return 1; });
    std::mt19937 random(7);
    fullSort(many, [&](int, int) { return static_cast<int>(random() % 3) - 1; });
    std::vector<int> sorted = many;
    std::sort(sorted.begin(), sorted.end());
    std::vector<int> expected(50);
    std::iota(expected.begin(), expected.end(), 0);
    EXPECT_EQ(sorted, expected);

    std::vector<int> one{1};
    fullSort(one, [](int, int) -> int { throw std::logic_error("compared"); });
}

TEST(IndexPath, LastIndexSteps)
{
    EXPECT_EQ(lastIndex({2, 5}), 5u);
    EXPECT_EQ(lastIndex({}), std::nullopt);
    EXPECT_EQ(indexPathByAddingOneToLastIndex({2, 5}), (VLIndexPath{2, 6}));
    EXPECT_EQ(indexPathBySubtractingOneToLastIndex({2, 5}), (VLIndexPath{2, 4}));
    EXPECT_EQ(indexPathBySubtractingOneToLastIndex({2, 0}), VLIndexPath{});
    EXPECT_EQ(indexPathByAddingOneToLastIndex({}), VLIndexPath{});
}

TEST(TransformHelpers, ShearsActAfterTheTransformAroundTheirCentre)
{
    AffineTransform t;
    t.setTransformStruct({2, 0, 0, 2, 10, 0});
    shearXBy_yBy_atCenter(t, 0.5, 0.0, Point{0, 20});
    // (5, 15) -> scaled and moved (20, 30) -> sheared by half its height above 20.
    AffineTransformStruct m = t.transformStruct();
    EXPECT_DOUBLE_EQ(m.m11 * 5 + m.m21 * 15 + m.tX, 25.0);
    EXPECT_DOUBLE_EQ(m.m12 * 5 + m.m22 * 15 + m.tY, 30.0);

    resetToIdentityMatrix(t);
    shearYBy_atCenter(t, 2.0, Point{3, 0});
    m = t.transformStruct();
    EXPECT_EQ(m, (AffineTransformStruct{1, 2, 0, 1, 0, -6}));
    resetToIdentityMatrix(t);
    shearXBy(t, 1.0);
    shearYBy(t, 1.0);
    EXPECT_EQ(t.transformStruct(), (AffineTransformStruct{1, 1, 1, 2, 0, 0}));
}

TEST(FTPointArray, FromValuesThroughSinglePrecision)
{
    FTPointArray a = FTPointArray::pointArrayWithArray({Value(), ValueArray{0.1, 2}, Value(0.3), ValueArray{4}});
    ASSERT_EQ(a.count(), 4u);
    EXPECT_EQ(a.pointAtIndex(0), (Point{VLUnsetValue, 0}));
    EXPECT_EQ(a.pointAtIndex(1), (Point{static_cast<float>(0.1), 2}));
    EXPECT_EQ(a.pointAtIndex(2), (Point{static_cast<float>(0.3), VLUnsetValue}));
    EXPECT_EQ(a.pointAtIndex(3), (Point{4, 0}));
    EXPECT_NE(a.pointAtIndex(1).x, 0.1);
}

TEST(FTPointArray, EditsAndLookUps)
{
    Point ps[] = {{0, 0}, {10, 10}, {20, 0}};
    FTPointArray a = FTPointArray::initWithPoints_count(ps, 3);
    a.insertPoint_atIndex({5, 5}, 1);
    a.setPoint_atIndex({9, 9}, 9);
    a.removePointAtIndex(9);
    EXPECT_EQ(a.lastPoint(), (Point{20, 0}));
    Point tail[] = {{5, 5}, {10, 10}, {20, 0}};
    EXPECT_EQ(a.copySubarrayWithRange({1, 9}), FTPointArray::initWithPoints_count(tail, 3));
    EXPECT_TRUE(a.containsPoint_threshold({10.9, 9.1}, 1.0));
    EXPECT_FALSE(a.containsPoint_threshold({11, 10}, 1.0));
    EXPECT_EQ(a.pointAtIndex(4).x, VLUnsetValue);

    FTPointArray empty;
    EXPECT_EQ(empty.firstPoint().x, VLUnsetValue);
    EXPECT_EQ(empty.lastPoint().x, VLUnsetValue);
    empty.addPointsFromPointArray(a);
    EXPECT_EQ(empty, a);
}
