#include "platform/ParallelFor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <vector>

namespace {

TEST(ParallelFor, RunsEveryIndexOnce)
{
    std::vector<std::atomic<int>> runs(10007);
    ParallelFor(runs.size(), [&](size_t i, bool&) { runs[i]++; });
    for (const auto& count : runs) ASSERT_EQ(count.load(), 1);

    bool called = false;
    ParallelFor(0, [&](size_t, bool&) { called = true; });
    EXPECT_FALSE(called);
}

TEST(ParallelFor, StopHandsOutNoFurtherWork)
{
    std::atomic<size_t> calls{0};
    ParallelFor(100000, [&](size_t, bool& stop) {
        calls++;
        stop = true;
    });
    EXPECT_LT(calls.load(), 100u);
}

} // namespace
