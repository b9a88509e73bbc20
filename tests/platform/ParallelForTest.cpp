#include "platform/ParallelFor.h"

#include <gtest/gtest.h>

#include <atomic>
#include <new>
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

TEST(ParallelFor, AnExceptionStopsTheLoopAndReachesTheCaller)
{
    std::atomic<size_t> calls{0};
    auto run = [&] {
        ParallelFor(100000, [&](size_t i, bool&) {
            calls++;
            if (i == 5) throw std::bad_alloc();
        });
    };
    EXPECT_THROW(run(), std::bad_alloc);
    EXPECT_LT(calls.load(), 100000u);
}

} // namespace
