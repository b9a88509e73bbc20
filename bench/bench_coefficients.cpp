#include "interpolation/coefficients.h"

#include <benchmark/benchmark.h>

#include <random>

namespace {

constexpr int target_count = 10000;

std::vector<double> random_point(std::mt19937& random, std::size_t dimensions)
{
    std::uniform_real_distribution<double> value(0, 1000);
    std::vector<double> point;
    for (std::size_t d = 0; d < dimensions; ++d) {
        point.push_back(value(random));
    }
    return point;
}

MasterPositions grid_masters(std::size_t dimensions)
{
    MasterPositions masters;
    for (std::size_t corner = 0; corner < (std::size_t{1} << dimensions); ++corner) {
        std::vector<double> position;
        for (std::size_t d = 0; d < dimensions; ++d) {
            position.push_back((corner >> d) & 1 ? 1000.0 : 0.0);
        }
        masters.push_back(position);
    }
    return masters;
}

MasterPositions scatter_masters(std::mt19937& random, std::size_t dimensions, std::size_t count)
{
    MasterPositions masters;
    for (std::size_t m = 0; m < count; ++m) {
        masters.push_back(random_point(random, dimensions));
    }
    return masters;
}

void solve_targets(benchmark::State& state, const MasterPositions& masters, bool limit_candidates)
{
    std::mt19937 random(42);
    std::vector<std::vector<double>> targets;
    for (int t = 0; t < target_count; ++t) {
        targets.push_back(random_point(random, masters.front().size()));
    }
    for (auto _ : state) {
        for (const std::vector<double>& target : targets) {
            benchmark::DoNotOptimize(anyCoeffs(masters, target, limit_candidates));
        }
    }
    state.SetItemsProcessed(state.iterations() * target_count);
}

void BM_Grid4Axes16Masters(benchmark::State& state)
{
    solve_targets(state, grid_masters(4), false);
}

void BM_Scatter6Axes30Masters(benchmark::State& state)
{
    std::mt19937 random(6);
    solve_targets(state, scatter_masters(random, 6, 30), false);
}

void BM_Scatter12AxesLimitedCandidates(benchmark::State& state)
{
    std::mt19937 random(12);
    solve_targets(state, scatter_masters(random, 12, 30), true);
}

} // namespace

BENCHMARK(BM_Grid4Axes16Masters)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Scatter6Axes30Masters)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Scatter12AxesLimitedCandidates)->Unit(benchmark::kMillisecond);

BENCHMARK_MAIN();
