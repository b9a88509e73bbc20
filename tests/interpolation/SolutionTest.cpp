#include "interpolation/Solution.h"

#include <gtest/gtest.h>

namespace {

Solution candidate(std::vector<double> c, std::vector<double> coordinates)
{
    Solution solution{c, coordinates};
    // Recounted through a neutral difference, as every combining step does.
    solution.add_difference(solution, solution);
    return solution;
}

TEST(Solution, ReducingRefusesPairsThatCannotReachThePlane)
{
    const Solution a = Solution::single(0, 2, {0, 10});
    const Solution b = Solution::single(1, 2, {100, 10});
    Solution scratch{{0, 0}, {0}};
    // Both on one level: no line through them crosses the target's level.
    EXPECT_FALSE(scratch.reduce_dimension(a, b, {50, 20}));
    EXPECT_FALSE(scratch.reduce_dimension_perfect(a, b, {50, 20}));
    // One of them on the target's level: that one is taken over as it is instead.
    EXPECT_FALSE(scratch.reduce_dimension(Solution::single(0, 2, {0, 20}), b, {50, 20}));
    EXPECT_EQ(scratch.c, (std::vector<double>{0, 0}));
}

TEST(Solution, ReducingExtrapolatesAndCountsNegativeCoefficients)
{
    const Solution low = Solution::single(0, 3, {0, 0});
    const Solution high = Solution::single(2, 3, {40, 100});
    Solution scratch{{0, 0, 0}, {0}};
    ASSERT_TRUE(scratch.reduce_dimension(low, high, {0, 150}));
    EXPECT_EQ(scratch.c, (std::vector<double>{-0.5, 0, 1.5}));
    EXPECT_EQ(scratch.coordinates, (std::vector<double>{60}));
    EXPECT_EQ(scratch.used_count, 2);
    EXPECT_EQ(scratch.negative_sum, -0.5);

    // A perfect pair needs the same position in every other dimension.
    EXPECT_FALSE(scratch.reduce_dimension_perfect(low, high, {0, 150}));
    ASSERT_TRUE(scratch.reduce_dimension_perfect(low, Solution::single(2, 3, {1e-8, 100}), {0, 25}));
    EXPECT_EQ(scratch.c, (std::vector<double>{0.75, 0, 0.25}));
    EXPECT_EQ(scratch.coordinates, (std::vector<double>{0}));
}

TEST(Solution, AddIfNewSkipsWithdrawnAndNearlyEqualCandidates)
{
    std::vector<Solution> list{candidate({0.5, 0.5}, {1})};
    candidate({0.5 + 5e-8, 0.5 - 5e-8}, {9}).add_if_new(list);
    EXPECT_EQ(list.size(), 1u);
    Solution withdrawn = candidate({0.25, 0.75}, {1});
    withdrawn.withdraw();
    withdrawn.add_if_new(list);
    EXPECT_EQ(list.size(), 1u);
    candidate({0.25, 0.75}, {1}).add_if_new(list);
    EXPECT_EQ(list.size(), 2u);
}

TEST(Solution, WorstUsedMasterRankingLooksOnlyAtUsedMasters)
{
    const std::vector<Ranking> ranking{-5, 3, -9};
    Solution solution = candidate({0.4, 0.6, 5e-8}, {});
    EXPECT_EQ(solution.worst_used_master_ranking(ranking), -5);
    solution.limit_worst_used_master_ranking(ranking, -5);
    EXPECT_FALSE(solution.is_withdrawn());
    solution.limit_worst_used_master_ranking(ranking, -4);
    EXPECT_TRUE(solution.is_withdrawn());
    EXPECT_EQ(solution.worst_used_master_ranking(ranking), INT16_MIN);
}

TEST(SolutionDeathTest, BrokenInvariantsEndTheProcessWithTheirText)
{
    const Solution single = Solution::single(0, 2, {0, 1});
    EXPECT_DEATH(single.last_is_on_target({1}), "coordinates.size\\(\\) == target.size\\(\\)");
    Solution scratch{{0, 0, 0}, {0}};
    EXPECT_DEATH(scratch.reduce_dimension(single, Solution::single(1, 2, {5, 5}), {0, 3}),
                 "c.size\\(\\) == other1.c.size\\(\\)");
}

} // namespace
