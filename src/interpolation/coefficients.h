#pragma once

#include "interpolation/Solution.h"

#include <cstddef>
#include <vector>

// Coefficients that blend masters at scattered positions into a target position: one per
// master, adding up to 1, with the weighted master positions meeting the target. On a full
// grid the answer is multi-linear interpolation; otherwise near masters win over the ones
// they hide, and interpolation wins over extrapolation.
//
// Master indices and rankings are 16-bit, so at most 32,767 masters take part.
//
// A ranking of -10922 or more marks an active master, higher being better. A master is
// parked (left out of the single-master candidates for now) by subtracting `park_offset` from its ranking and
// brought back by adding it again; `dropped_ranking` marks a master left out for good because
// it differs from the others in a removed dimension.
constexpr Ranking lowest_active_ranking = -10922;
constexpr int park_offset = 16384;
constexpr Ranking dropped_ranking = INT16_MIN;

inline bool is_active(Ranking ranking)
{
    return ranking >= lowest_active_ranking;
}

using MasterPositions = std::vector<std::vector<double>>;

// Returns one coefficient per master, or nothing when no interpolation is possible (no
// masters, a master with the wrong number of coordinates, all masters at one position).
// Callers pass `limit_candidates` above nine axes, to keep the candidate sets small.
std::vector<double> anyCoeffs(MasterPositions masters, std::vector<double> target, bool limit_candidates);

// Removes every dimension in which the active masters agree, from the masters and from the
// target; returns whether dimensions remain.
bool drop_constant_dimensions(std::vector<double>& target, MasterPositions& masters,
                              std::vector<Ranking>& ranking);

// Marks each active master down once for every other active master that stands between it
// and the target. A flagged master hides nobody.
void rank_masters(const MasterPositions& masters, const std::vector<double>& target,
                  std::vector<Ranking>& ranking, const std::vector<bool>& flagged);

// One single-master candidate per active master (per master when `ranking` is empty).
std::vector<Solution> make_solutions(const MasterPositions& masters, const std::vector<Ranking>& ranking);

// Reduces all dimensions, the last first. Returns false when some dimension yielded no
// candidate; the solutions are then carried through that dimension as they were.
bool determine_solutions(std::vector<Solution>& solutions, std::vector<double> target, bool limit_candidates);

// The normalised sum of all candidates that were not withdrawn.
std::vector<double> blend_solutions(const std::vector<Solution>& solutions, std::size_t N);
