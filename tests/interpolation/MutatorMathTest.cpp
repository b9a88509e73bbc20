#include "interpolation/MALocationIndex.h"
#include "interpolation/MAMathObject.h"
#include "interpolation/MAMutatorIndex.h"
#include "platform/VLException.h"

#include <gtest/gtest.h>

#include <vector>

namespace {

using Locations = MAMutatorIndex::Locations;

std::shared_ptr<MALocationIndex> at(std::vector<double> coordinates)
{
    return MALocationIndex::initWithLocations_count_mathObject(coordinates.data(), coordinates.size(), nullptr);
}

// Masters at the given places, each with the object that names it alone.
Locations masters(const std::vector<std::vector<double>>& places)
{
    Locations result;
    for (size_t i = 0; i < places.size(); ++i) {
        auto object = MAMathObject::init();
        object->setActiveMaster_count(i, places.size());
        auto master = at(places[i]);
        master->setMathObject(object);
        result.push_back(master);
    }
    return result;
}

// The share of each master in the instance at the place.
std::vector<double> sharesAt(const Locations& items, std::vector<double> place)
{
    auto instance = MAMutatorIndex::initWithItems(items)->makeInstance(*at(std::move(place)));
    std::vector<double> shares;
    if (!instance) return shares;
    for (size_t i = 0; i < items.size(); ++i) shares.push_back(instance->factorAtIndex(i));
    return shares;
}

void expectShares(const std::vector<double>& actual, const std::vector<double>& expected, const char* note = "")
{
    SCOPED_TRACE(note);
    ASSERT_EQ(actual.size(), expected.size());
    for (size_t i = 0; i < expected.size(); ++i) EXPECT_NEAR(actual[i], expected[i], 1e-12) << "master " << i;
}

template <typename Call> std::string exceptionOf(Call call, std::string* reason = nullptr)
{
    try {
        call();
    } catch (const VLException& exception) {
        if (reason) *reason = exception.reason();
        return exception.name();
    }
    return "";
}

} // namespace

TEST(MutatorLocation, OriginAxesDifferencesAndTheLimitOfSlots)
{
    EXPECT_TRUE(at({})->isOrigin());
    EXPECT_TRUE(at({0, 1e-16})->isOrigin());
    EXPECT_EQ(at({0, 0})->isOnAxis(), MALocationIndex::originAxis);
    EXPECT_EQ(at({0, 5, 0})->isOnAxis(), 1);
    EXPECT_EQ(at({2, 5})->isOnAxis(), -1);

    auto object = MAMathObject::init();
    object->setActiveMaster_count(1, 3);
    auto place = MALocationIndex::initWithLocations_count_mathObject(std::vector<double>{10, 20}.data(), 2, object);
    auto difference = place->sub(*at({10, 5, 99}));
    EXPECT_EQ(difference->count(), 2u) << "as many coordinates as the receiver has";
    EXPECT_EQ(difference->posAtIndex(0), 0);
    EXPECT_EQ(difference->posAtIndex(1), 15);
    EXPECT_EQ(difference->posAtIndex(2), VLUnsetValue);
    ASSERT_NE(difference->mathObject(), nullptr);
    EXPECT_NE(difference->mathObject(), object) << "a copy of the object";
    EXPECT_EQ(difference->mathObject()->factorAtIndex(1), 1);

    std::vector<double> many(25, 1.0);
    EXPECT_NO_THROW(MALocationIndex::initWithLocations_count_mathObject(many.data(), 24, nullptr));
    std::string reason;
    EXPECT_EQ(exceptionOf([&] { MALocationIndex::initWithLocations_count_mathObject(many.data(), 25, nullptr); }, &reason),
              "Count is to big");
    EXPECT_EQ(reason, "Count (25) is above the max count of 25");
    auto grown = at({});
    grown->setPos_atIndex(3, 24);
    EXPECT_EQ(grown->count(), 25u);
    EXPECT_EQ(grown->posAtIndex(23), VLUnsetValue);
    EXPECT_EQ(exceptionOf([&] { grown->setPos_atIndex(3, 25); }, &reason), "Index to big");
    EXPECT_EQ(reason, "Indes (25) is above the max count of 25");
}

TEST(MutatorIndex, TwoAxesOfAFullGridBlendAsTheirProduct)
{
    auto corners = masters({{0, 0}, {100, 0}, {0, 100}, {100, 100}});
    expectShares(sharesAt(corners, {50, 50}), {0.25, 0.25, 0.25, 0.25});
    // (1 - u)(1 - v), u(1 - v), (1 - u)v, uv with u = 0.25, v = 0.75.
    expectShares(sharesAt(corners, {25, 75}), {0.1875, 0.0625, 0.5625, 0.1875});
    expectShares(sharesAt(corners, {100, 100}), {0, 0, 0, 1}, "on a master, that master alone");
    expectShares(sharesAt(corners, {100, 0}), {0, 1, 0, 0});
    // Past the end of an axis the on-axis delta grows beyond 1, and the corner's fades out.
    expectShares(sharesAt(corners, {150, 0}), {-0.5, 1.5, 0, 0});
    // Below the start of an axis: the product again, (1 - u)(1 - v) and so on with u = -0.5.
    expectShares(sharesAt(corners, {-50, 50}), {0.75, -0.25, 0.75, -0.25});

    auto model = MAMutatorIndex::initWithItems(corners);
    ASSERT_NE(model->neutral(), nullptr);
    EXPECT_EQ(model->neutral(), corners[0]) << "the master at the most common place";
    ASSERT_EQ(model->locations().size(), 4u);
    EXPECT_EQ(model->locations()[0]->name(), "origin");
    // The corner's delta holds only what the deltas of the axes don't give there.
    auto corner = model->locations()[3]->mathObject();
    ASSERT_NE(corner, nullptr);
    expectShares({corner->factorAtIndex(0), corner->factorAtIndex(1), corner->factorAtIndex(2), corner->factorAtIndex(3)},
                 {1, -1, -1, 1});
}

TEST(MutatorIndex, ThreeAxesWithOneMasterOffTheAxes)
{
    // The origin, one master on each axis, and one between the first two axes.
    auto items = masters({{0, 0, 0}, {100, 0, 0}, {0, 100, 0}, {0, 0, 100}, {100, 100, 0}});
    // By hand: the axes' deltas weigh 0.5 each, the off-axis one 0.5 * 0.5 * 0.5; the neutral
    // takes 1 - 3 * 0.5 + 0.125, the first two masters 0.5 - 0.125.
    auto shares = sharesAt(items, {50, 50, 50});
    expectShares(shares, {-0.375, 0.375, 0.375, 0.5, 0.125});
    double x = 0, y = 0, z = 0;
    for (size_t i = 0; i < items.size(); ++i) {
        x += shares[i] * items[i]->posAtIndex(0);
        y += shares[i] * items[i]->posAtIndex(1);
        z += shares[i] * items[i]->posAtIndex(2);
    }
    EXPECT_NEAR(x, 50, 1e-12);
    EXPECT_NEAR(y, 50, 1e-12);
    EXPECT_NEAR(z, 50, 1e-12);
    expectShares(sharesAt(items, {100, 100, 0}), {0, 0, 0, 0, 1});
    expectShares(sharesAt(items, {0, 0, 0}), {1, 0, 0, 0, 0});

    std::vector<double> factors;
    auto model = MAMutatorIndex::initWithItems(items);
    model->getInstance_axisOnly_getFactors(*at({50, 50, 50}), true, &factors);
    expectShares(factors, {1, 0.5, 0.5, 0.5, 0}, "only the axes");
}

TEST(MutatorIndex, OneLocationOrNoneAtTheMostCommonPlace)
{
    // All at one place: the neutral, and nothing to add wherever the instance is.
    expectShares(sharesAt(masters({{30, 30}, {30, 30}}), {80, 0}), {1, 0});

    // No master at (0, 0), the most common place: the deltas stand for their masters alone.
    auto scattered = masters({{100, 0}, {0, 100}, {200, 300}});
    auto model = MAMutatorIndex::initWithItems(scattered);
    EXPECT_EQ(model->neutral(), nullptr);
    expectShares(sharesAt(scattered, {100, 0}), {1, 0, 0});
    expectShares(sharesAt(scattered, {50, 50}), {0.5, 0.5, 0});

    // Off the axes all, with no neutral: the first can't be measured against anything.
    EXPECT_EQ(exceptionOf([] { MAMutatorIndex::initWithItems(masters({{0, 1, 2}, {1, 2, 0}, {2, 0, 1}})); }),
              "mutator.error.MutatorError");
}

TEST(MutatorIndex, LimitsAreTheNearestLocationsOnEitherSide)
{
    Locations deltas{at({100, 0}), at({300, 0}), at({0, 50}), at({-40, 0})};
    auto limits = MAMutatorIndex::getLimits_current(deltas, *at({150, 50}));
    ASSERT_EQ(limits.size(), 2u);
    EXPECT_EQ(limits[0].left, 100);
    EXPECT_EQ(limits[0].right, 300);
    EXPECT_EQ(limits[0].middle, VLUnsetValue);
    EXPECT_EQ(limits[1].middle, 50) << "where the current location is";

    // Beyond the last on the right: the last two, the nearer as the middle.
    limits = MAMutatorIndex::getLimits_current({at({100, 0}), at({300, 0})}, *at({500, 0}));
    EXPECT_EQ(limits[0].left, 100);
    EXPECT_EQ(limits[0].middle, 300);
    EXPECT_EQ(limits[0].right, VLUnsetValue);
    // Left of the origin, which counts as a location: the origin and the next to the right.
    limits = MAMutatorIndex::getLimits_current(deltas, *at({-10, 0}));
    EXPECT_EQ(limits[0].left, -40);
    EXPECT_EQ(limits[0].right, 0);
}
