#include "interpolation/VLCoefficientCache.h"

#include <bit>
#include <cstdint>
#include <mutex>
#include <unordered_map>

namespace {

constexpr size_t maximumMasterSets = 5000;
constexpr size_t maximumTargets = 1000;

// Mixes each number in; 0.0 and -0.0 are equal keys, so both mix in as the same value.
void mixInto(uint64_t& seed, double x)
{
    constexpr uint64_t golden = 0x9e3779b9;
    uint64_t bits = x == 0.0 ? golden : std::bit_cast<uint64_t>(x) + golden;
    seed ^= (seed >> 2) + seed * 64 + bits;
}

struct TargetHash {
    size_t operator()(const std::vector<double>& target) const
    {
        uint64_t seed = target.size();
        for (double x : target) mixInto(seed, x);
        return seed;
    }
};

struct MastersHash {
    size_t operator()(const MasterPositions& masters) const
    {
        uint64_t seed = masters.size();
        for (const auto& master : masters)
            for (double x : master) mixInto(seed, x);
        return seed;
    }
};

using Targets = std::unordered_map<std::vector<double>, std::vector<double>, TargetHash>;

struct Cache {
    std::mutex mutex;
    std::unordered_map<MasterPositions, Targets, MastersHash> masterSets;
    size_t solves = 0;

    Cache() { masterSets.max_load_factor(1.0); }
};

Cache& cache()
{
    static Cache shared;
    return shared;
}

} // namespace

std::vector<double> VLCoefficientCache::coefficientsForMasters_target(const MasterPositions& masters,
                                                                      const std::vector<double>& target)
{
    Cache& c = cache();
    std::lock_guard lock(c.mutex);
    auto [entry, isNewSet] = c.masterSets.try_emplace(masters);
    Targets& targets = entry->second;
    if (isNewSet) targets.max_load_factor(1.0);
    if (auto hit = targets.find(target); hit != targets.end()) return hit->second;

    ++c.solves;
    std::vector<double> coefficients = anyCoeffs(masters, target, false);
    targets.emplace(target, coefficients);
    if (c.masterSets.size() > maximumMasterSets)
        c.masterSets.clear();
    else if (targets.size() > maximumTargets)
        targets.clear();
    return coefficients;
}

size_t VLCoefficientCache::solveCount()
{
    std::lock_guard lock(cache().mutex);
    return cache().solves;
}

void VLCoefficientCache::removeAllEntries()
{
    std::lock_guard lock(cache().mutex);
    cache().masterSets.clear();
}
