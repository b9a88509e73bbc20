#include "interpolation/coefficients.h"

#include <algorithm>
#include <cstdio>
#include <functional>
#include <limits>
#include <numeric>
#include <optional>
#include <string>
#include <unordered_map>

namespace {

// A dimension that yields this many candidates is pruned to the best ones per master, since
// the next dimension pairs them all with each other.
constexpr std::size_t pruning_threshold = 50;
// With many axes even the best candidates per master are too many; callers then ask for
// this limit.
constexpr std::size_t limited_best_list_size = 6;

constexpr double no_interpolation_floor = -100.0;
constexpr double extrapolation_margin = -0.05;

bool takes_part(const std::vector<Ranking>& ranking, std::size_t master)
{
    return ranking.empty() || is_active(ranking[master]);
}

// ---- Dimensions the masters do not span

std::size_t first_active_master(const std::vector<Ranking>& ranking, std::size_t N)
{
    std::size_t master = 0;
    while (master < N && !takes_part(ranking, master)) {
        ++master;
    }
    return master;
}

bool active_masters_differ(const MasterPositions& masters, const std::vector<Ranking>& ranking,
                           std::size_t first, std::size_t d)
{
    for (std::size_t m = first; m < masters.size(); ++m) {
        if (takes_part(ranking, m) && masters[m][d] != masters[first][d]) {
            return true;
        }
    }
    return false;
}

// A master that is not active and leaves the common value of dimension d could never be
// reached again once d is gone, so it is dropped for good.
void remove_dimension(std::vector<double>& target, MasterPositions& masters,
                      std::vector<Ranking>& ranking, std::size_t first, std::size_t d)
{
    if (first < masters.size()) {
        const double common = masters[first][d];
        for (std::size_t m = 0; m < masters.size(); ++m) {
            if (masters[m][d] != common) {
                ranking[m] = dropped_ranking;
            }
        }
    }
    for (std::vector<double>& position : masters) {
        position.erase(position.begin() + static_cast<std::ptrdiff_t>(d));
    }
    target.erase(target.begin() + static_cast<std::ptrdiff_t>(d));
}

// ---- Ranking

void reset_ranking(std::vector<Ranking>& ranking, std::size_t N)
{
    if (ranking.empty()) {
        ranking.assign(N, 0);
    }
    for (Ranking& value : ranking) {
        if (is_active(value)) {
            value = 0;
        }
    }
}

int dimensions_on_target(const std::vector<double>& position, const std::vector<double>& target)
{
    int count = 0;
    for (std::size_t d = 0; d < target.size(); ++d) {
        count += nearly_equal(position[d], target[d]) ? 1 : 0;
    }
    return count;
}

// Whether j lies between i and the target, and i between j and the target, in every
// dimension in which the two differ. Both hold only for masters at one position.
struct Betweenness {
    bool j_between = true;
    bool i_between = true;
};

Betweenness betweenness(const std::vector<double>& position_i, const std::vector<double>& position_j,
                        const std::vector<double>& target)
{
    Betweenness result;
    for (std::size_t d = 0; d < target.size(); ++d) {
        if (nearly_equal(position_j[d], position_i[d])) {
            continue;
        }
        const double delta = position_j[d] - position_i[d];
        if (delta * (position_i[d] - target[d]) > -solver_tolerance) {
            result.j_between = false;
        } else {
            result.i_between = false;
            result.j_between = result.j_between && delta * (position_j[d] - target[d]) < solver_tolerance;
        }
    }
    return result;
}

void rank_pair(const MasterPositions& masters, const std::vector<double>& target,
               std::vector<Ranking>& ranking, const std::vector<bool>& flagged, std::size_t i, std::size_t j)
{
    const Betweenness between = betweenness(masters[i], masters[j], target);
    if (between.i_between && between.j_between) {
        std::printf("oh no! this should never happen! %i and %i behind each other!\n",
                    static_cast<int>(i), static_cast<int>(j));
    } else if (between.j_between && !flagged[j]) {
        ranking[i] = wrapped(ranking[i] - 1);
    } else if (between.i_between && !flagged[i]) {
        ranking[j] = wrapped(ranking[j] - 1);
    }
}

// ---- Reducing one dimension

// The solutions entering one dimension and the candidates made from them on the plane of
// the dimension's target value.
class DimensionReduction {
public:
    DimensionReduction(const std::vector<Solution>& solutions, const std::vector<double>& target)
        : _solutions(solutions)
        , _target(target)
        , _is_taken(solutions.size(), false)
        , _number_of_partners(solutions.size(), 0)
        , _scratch{std::vector<double>(solutions.front().c.size()), std::vector<double>(target.size() - 1)}
    {
        const std::size_t solutions_size_init = solutions.size();
        solver_require(_is_taken.size() == solutions_size_init, "is_taken.size() == solutions_size_init");
        solver_require(_number_of_partners.size() == solutions_size_init,
                       "number_of_partners.size() == solutions_size_init");
        classify();
    }

    std::vector<Solution> make_candidates()
    {
        if (_target.size() == 1) {
            pair_last_dimension();
        } else {
            add_halves();
            if (!add_differences()) {
                add_perfect_pairs();
                add_other_pairs();
            }
        }
        return std::move(_new_solutions);
    }

private:
    std::size_t size() const { return _solutions.size(); }

    void classify()
    {
        for (std::size_t i = 0; i < size(); ++i) {
            if (_solutions[i].last_is_on_target(_target)) {
                _new_solutions.push_back(_solutions[i]);
                _new_solutions.back().coordinates.pop_back();
                _is_taken[i] = true;
                add_partners(i, 1);
            } else {
                note_off_target_value(_solutions[i].coordinates.back());
            }
        }
    }

    // Only tells whether all solutions off the plane share one last coordinate, so two
    // distinct values are enough.
    void note_off_target_value(double value)
    {
        if (_off_target_values.size() < 2 && (_off_target_values.empty() || _off_target_values.front() != value)) {
            _off_target_values.push_back(value);
        }
    }

    void add_partners(std::size_t i, int count)
    {
        _number_of_partners[i] = static_cast<std::int16_t>(_number_of_partners[i] + count);
    }

    void pair_last_dimension()
    {
        for (std::size_t i = 0; i < size(); ++i) {
            for (std::size_t j = i + 1; j < size(); ++j) {
                if (!_is_taken[i] && !_is_taken[j]
                    && _scratch.reduce_dimension_1D(_solutions[i], _solutions[j], _target)) {
                    _new_solutions.push_back(_scratch);
                }
            }
        }
    }

    // Halves of the candidates already on the plane; the halves themselves are not blended
    // again.
    void add_halves()
    {
        const std::size_t count = _new_solutions.size();
        for (std::size_t a = 0; a < count; ++a) {
            for (std::size_t b = a + 1; b < count; ++b) {
                _scratch.equal_blend(_new_solutions[a], _new_solutions[b]);
                _new_solutions.push_back(_scratch);
            }
        }
    }

    // When every solution off the plane lies at one last coordinate, no pair of them can reach
    // the plane; their differences, moved onto a candidate that is on it, still span the
    // remaining dimensions.
    bool add_differences()
    {
        if (_new_solutions.empty() || _off_target_values.size() != 1) {
            return false;
        }
        for (std::size_t i = 0; i < size(); ++i) {
            if (_is_taken[i]) {
                continue;
            }
            if (_number_of_partners[i] > 2) {
                break;
            }
            for (std::size_t j = i + 1; j < size(); ++j) {
                if (_is_taken[j] || _number_of_partners[j] > 2) {
                    continue;
                }
                add_difference_of(i, j);
                add_difference_of(j, i);
                add_partners(i, 2);
                add_partners(j, 2);
            }
        }
        return true;
    }

    void add_difference_of(std::size_t plus, std::size_t minus)
    {
        Solution candidate = _new_solutions.front();
        candidate.add_difference(_solutions[plus], _solutions[minus]);
        candidate.add_if_new(_new_solutions);
    }

    // Pairs that differ only in the last dimension make the cleanest candidates; a solution
    // used in one is taken, and is left out of the other pairs where possible.
    void add_perfect_pairs()
    {
        for (std::size_t i = 0; i < size(); ++i) {
            if (_is_taken[i]) {
                continue;
            }
            for (std::size_t j = i + 1; j < size(); ++j) {
                if (!_is_taken[j] && _scratch.reduce_dimension_perfect(_solutions[i], _solutions[j], _target)) {
                    _new_solutions.push_back(_scratch);
                    add_partners(i, 1);
                    add_partners(j, 1);
                    _is_taken[i] = true;
                    _is_taken[j] = true;
                }
            }
        }
    }

    // The partner counts stop a solution from pairing without end.
    void add_other_pairs()
    {
        for (std::size_t i = 0; i < size(); ++i) {
            for (std::size_t j = i + 1; j < size(); ++j) {
                if ((_is_taken[i] && _is_taken[j]) || (_number_of_partners[i] >= 2 && _number_of_partners[j] > 1)) {
                    continue;
                }
                if (_scratch.reduce_dimension(_solutions[i], _solutions[j], _target)) {
                    _new_solutions.push_back(_scratch);
                    add_partners(i, 1);
                    add_partners(j, 1);
                }
            }
        }
    }

    const std::vector<Solution>& _solutions;
    const std::vector<double>& _target;
    std::vector<Solution> _new_solutions;
    std::vector<bool> _is_taken;
    std::vector<std::int16_t> _number_of_partners;
    std::vector<double> _off_target_values;
    Solution _scratch;
};

// The best candidates that use master k: the least negative ones and, among those, the ones
// that use the fewest masters.
std::vector<std::size_t> best_candidates_for_master(const std::vector<Solution>& candidates, std::size_t k,
                                                    bool limit_candidates)
{
    std::vector<std::size_t> best_list;
    double best_negative_sum = 0.0;
    std::uint16_t best_count = 0;
    for (std::size_t index = 0; index < candidates.size(); ++index) {
        const Solution& candidate = candidates[index];
        if (is_zero(candidate.c[k])) {
            continue;
        }
        if (best_list.empty() || candidate.negative_sum > best_negative_sum + solver_tolerance) {
            best_list = {index};
            best_negative_sum = candidate.negative_sum;
            best_count = candidate.used_count;
        } else if (std::abs(candidate.negative_sum - best_negative_sum) <= solver_tolerance) {
            if (candidate.used_count < best_count) {
                best_list = {index};
                best_count = candidate.used_count;
            } else if (candidate.used_count == best_count
                       && !(limit_candidates && best_list.size() >= limited_best_list_size)) {
                best_list.push_back(index);
            }
        }
    }
    return best_list;
}

// Every master keeps its best candidates, so a master that only poor candidates use still
// keeps one.
std::vector<Solution> prune_candidates(const std::vector<Solution>& candidates, bool limit_candidates)
{
    std::vector<Solution> kept;
    std::vector<bool> taken(candidates.size(), false);
    const std::size_t N = candidates.front().c.size();
    for (std::size_t k = 0; k < N; ++k) {
        for (std::size_t index : best_candidates_for_master(candidates, k, limit_candidates)) {
            if (!taken[index]) {
                candidates[index].add_if_new(kept);
                taken[index] = true;
            }
        }
    }
    return kept;
}

// For each master whether the candidate uses it negatively, not at all or positively.
std::string sign_pattern(const Solution& solution)
{
    std::string pattern(solution.c.size(), '0');
    for (std::size_t i = 0; i < pattern.size(); ++i) {
        if (is_negative(solution.c[i])) {
            pattern[i] = '-';
        } else if (is_positive(solution.c[i])) {
            pattern[i] = '+';
        }
    }
    return pattern;
}

// Of the candidates that extrapolate from the same masters in the same directions only the
// least negative one is kept; interpolations are all kept. Candidates are compared with the
// first one kept of their pattern, which a replacement leaves at its place.
std::vector<Solution> replace_by_sign_pattern(const std::vector<Solution>& candidates)
{
    std::vector<Solution> kept;
    std::unordered_map<std::string, std::size_t> first_of_pattern;
    for (const Solution& candidate : candidates) {
        const auto [match, is_new] = first_of_pattern.try_emplace(sign_pattern(candidate), kept.size());
        if (is_new || kept[match->second].negative_sum == 0.0) {
            kept.push_back(candidate);
        } else if (kept[match->second].negative_sum < candidate.negative_sum) {
            kept[match->second] = candidate;
        }
    }
    return kept;
}

// Puts the candidates on the plane of the last target value in place of `solutions`. With
// none, the solutions are carried on as they are and false is returned.
bool reduce_last_dimension(std::vector<Solution>& solutions, const std::vector<double>& target,
                           bool limit_candidates)
{
    const std::vector<Solution> candidates = DimensionReduction(solutions, target).make_candidates();
    if (candidates.empty()) {
        for (Solution& solution : solutions) {
            solution.coordinates.pop_back();
        }
        return false;
    }
    if (target.size() >= 2 && candidates.size() >= pruning_threshold) {
        solutions = prune_candidates(candidates, limit_candidates);
    } else {
        solutions = replace_by_sign_pattern(candidates);
    }
    return true;
}

// ---- Choosing the masters

struct CutOff {
    std::vector<Ranking> sorted; // ascending up to and including `index`
    std::size_t index = 0;
    Ranking value = 0;
};

// The ranking that is D-th from the top, with D dimensions left, or the one below it when
// that is negative. Widening walks down from there, so only the values below it are sorted.
CutOff choose_cut_off(const std::vector<Ranking>& ranking, std::size_t dimensions)
{
    CutOff cut_off{ranking, ranking.size() - dimensions};
    const auto end_of_sorted = cut_off.sorted.begin() + static_cast<std::ptrdiff_t>(cut_off.index) + 1;
    std::partial_sort(cut_off.sorted.begin(), end_of_sorted, cut_off.sorted.end());
    if (cut_off.sorted[cut_off.index] < 0) {
        --cut_off.index;
    }
    cut_off.value = cut_off.sorted[cut_off.index];
    return cut_off;
}

// In a repeated pass a parked master is parked again, and its ranking wraps round: -16384
// becomes -32768 and lower values turn high. Results depend on this, so it is kept.
void park_masters(std::vector<Ranking>& ranking, Ranking cut_off)
{
    for (Ranking& value : ranking) {
        if (value != dropped_ranking && value < cut_off) {
            value = wrapped(value - park_offset);
        }
    }
}

void bring_back_masters(std::vector<Ranking>& ranking, Ranking cut_off)
{
    const Ranking parked = wrapped(cut_off - park_offset);
    std::replace(ranking.begin(), ranking.end(), parked, cut_off);
}

// The search for candidates over the masters that are not too far from the target.
struct MasterSelection {
    MasterPositions& masters;
    std::vector<double>& target;
    const bool limit_candidates;
    std::vector<Ranking> ranking;
    std::vector<bool> flagged{};
    CutOff cut_off{};
    std::size_t single_count = 0;
    std::vector<Solution> solutions{};

    // Repeated while solving makes further dimensions constant among the chosen masters:
    // fewer dimensions need fewer masters.
    void run_passes()
    {
        while (run_pass() && dimensions_dropped()) {
        }
    }

    bool run_pass()
    {
        flagged.assign(masters.size(), false);
        rank_masters(masters, target, ranking, flagged);
        cut_off = choose_cut_off(ranking, target.size());
        park_masters(ranking, cut_off.value);
        solutions = make_solutions(masters, ranking);
        single_count = solutions.size();
        if (determine_solutions(solutions, target, limit_candidates)) {
            return true;
        }
        widen();
        return false;
    }

    // With no dimension left the chosen masters agree with the target everywhere, and the
    // candidates found stand.
    bool dimensions_dropped()
    {
        const std::size_t dimensions = target.size();
        return drop_constant_dimensions(target, masters, ranking) && target.size() != dimensions;
    }

    // Brings back parked masters, the best first, until the target can be reached. The
    // worst-ranked masters never come back this way.
    void widen()
    {
        while (cut_off.index > 1) {
            --cut_off.index;
            cut_off.value = cut_off.sorted[cut_off.index];
            bring_back_masters(ranking, cut_off.value);
            std::vector<Solution> singles = make_solutions(masters, ranking);
            if (singles.size() == single_count) {
                continue;
            }
            solutions = std::move(singles);
            single_count = solutions.size();
            if (determine_solutions(solutions, target, limit_candidates)) {
                return;
            }
        }
    }

    // A master used with a negative coefficient is one the target lies beyond; it should not
    // hide the masters behind it, which may give an interpolation after all.
    void second_opinion()
    {
        const double best = best_negative_sum();
        if (best == 0.0 || 2 * masters.size() < solutions.size()) {
            return;
        }
        const std::vector<double> blended = blend_solutions(solutions, masters.size());
        solver_require(blended.size() == masters.size(), "blended.size() == masters.size()");
        for (std::size_t m = 0; m < masters.size(); ++m) {
            if (is_negative(blended[m])) {
                flagged[m] = true;
            }
        }
        for (Ranking& value : ranking) {
            if (value != dropped_ranking) {
                value = 0;
            }
        }
        rank_masters(masters, target, ranking, flagged);
        park_masters(ranking, cut_off.value);
        std::vector<Solution> singles = make_solutions(masters, ranking);
        if (singles.size() == single_count) {
            return;
        }
        determine_solutions(singles, target, limit_candidates);
        for (Solution& single : singles) {
            if (single.negative_sum < best) {
                single.withdraw();
            }
            single.add_if_new(solutions);
        }
    }

    double best_negative_sum() const
    {
        double best = -std::numeric_limits<double>::infinity();
        for (const Solution& solution : solutions) {
            solver_require(!solution.c.empty(), "! solution.c.empty()");
            best = std::max(best, solution.negative_sum);
            if (best == 0.0) {
                break;
            }
        }
        return best;
    }
};

// ---- Filtering the candidates

// Interpolations beat every extrapolation. Returns whether there was one.
bool keep_only_interpolations(std::vector<Solution>& solutions)
{
    const bool has_interpolation = std::any_of(solutions.begin(), solutions.end(), [](const Solution& solution) {
        return !solution.is_withdrawn() && solution.negative_sum == 0.0;
    });
    if (has_interpolation) {
        for (Solution& solution : solutions) {
            if (solution.negative_sum < 0.0) {
                solution.withdraw();
            }
        }
    }
    return has_interpolation;
}

void withdraw_far_extrapolations(std::vector<Solution>& solutions)
{
    double best = no_interpolation_floor;
    for (const Solution& solution : solutions) {
        if (!solution.is_withdrawn()) {
            best = std::max(best, solution.negative_sum);
        }
    }
    const double threshold = best * static_cast<double>(solutions.size()) + extrapolation_margin;
    for (Solution& solution : solutions) {
        if (solution.negative_sum < threshold) {
            solution.withdraw();
        }
    }
}

// Among three or more candidates that use master k, the one that uses it most and the one
// that uses it most negatively pull against each other; both go.
bool withdraw_opposite_pair(std::vector<Solution>& solutions, std::size_t k)
{
    int count = 0;
    double largest = 0.0;
    double lowest = 0.0;
    Solution* most = nullptr;
    Solution* least = nullptr;
    for (Solution& solution : solutions) {
        if (solution.is_withdrawn() || nearly_equal(solution.c[k], 0.0)) {
            continue;
        }
        ++count;
        if (solution.c[k] > largest) {
            largest = solution.c[k];
            most = &solution;
        } else if (solution.c[k] < lowest) {
            lowest = solution.c[k];
            least = &solution;
        }
    }
    if (count < 3 || !is_positive(largest) || !is_negative(lowest)) {
        return false;
    }
    most->withdraw();
    least->withdraw();
    return true;
}

void withdraw_opposite_pairs(std::vector<Solution>& solutions)
{
    if (solutions.front().is_withdrawn()) {
        return;
    }
    const std::size_t N = solutions.front().c.size();
    bool withdrew = true;
    while (withdrew) {
        withdrew = false;
        for (std::size_t k = 0; k < N; ++k) {
            withdrew = withdraw_opposite_pair(solutions, k) || withdrew;
        }
    }
}

// All candidates that use only the better masters survive.
void limit_to_best_masters(std::vector<Solution>& solutions, const std::vector<Ranking>& ranking)
{
    Ranking limit = INT16_MIN;
    for (const Solution& solution : solutions) {
        limit = std::max(limit, solution.worst_used_master_ranking(ranking));
    }
    for (Solution& solution : solutions) {
        solution.limit_worst_used_master_ranking(ranking, limit);
    }
}

void filter_solutions(std::vector<Solution>& solutions, const std::vector<Ranking>& ranking)
{
    if (solutions.empty()) {
        return;
    }
    if (!keep_only_interpolations(solutions)) {
        withdraw_far_extrapolations(solutions);
        withdraw_opposite_pairs(solutions);
    }
    limit_to_best_masters(solutions, ranking);
}

std::optional<std::size_t> exact_hit(const MasterPositions& masters, const std::vector<double>& target)
{
    const auto hit = std::find(masters.begin(), masters.end(), target);
    if (hit == masters.end()) {
        return std::nullopt;
    }
    return static_cast<std::size_t>(hit - masters.begin());
}

} // namespace

std::vector<double> anyCoeffs(MasterPositions masters, std::vector<double> target, bool limit_candidates)
{
    const std::size_t N = masters.size();
    if (const auto hit = exact_hit(masters, target)) {
        std::vector<double> unit(N, 0.0);
        unit[*hit] = 1.0;
        return unit;
    }
    std::vector<Ranking> ranking;
    if (!drop_constant_dimensions(target, masters, ranking)) {
        return {};
    }
    if (target.size() + 1 >= N) {
        // No master to spare: leaving one out could only lose the target.
        std::vector<Solution> solutions = make_solutions(masters, ranking);
        determine_solutions(solutions, target, limit_candidates);
        return blend_solutions(solutions, N);
    }
    MasterSelection selection{masters, target, limit_candidates, std::move(ranking)};
    selection.run_passes();
    selection.second_opinion();
    filter_solutions(selection.solutions, selection.ranking);
    return blend_solutions(selection.solutions, N);
}

bool drop_constant_dimensions(std::vector<double>& target, MasterPositions& masters, std::vector<Ranking>& ranking)
{
    if (masters.empty() || target.empty()) {
        return false;
    }
    const bool sizes_match = std::all_of(masters.begin(), masters.end(), [&](const std::vector<double>& position) {
        return position.size() == target.size();
    });
    if (!sizes_match) {
        return false;
    }
    const std::size_t first = first_active_master(ranking, masters.size());
    std::size_t d = 0;
    while (d < target.size()) {
        if (first < masters.size() && active_masters_differ(masters, ranking, first, d)) {
            ++d;
        } else {
            remove_dimension(target, masters, ranking, first, d);
        }
    }
    return !target.empty();
}

void rank_masters(const MasterPositions& masters, const std::vector<double>& target, std::vector<Ranking>& ranking,
                  const std::vector<bool>& flagged)
{
    reset_ranking(ranking, masters.size());
    for (std::size_t i = 0; i < masters.size(); ++i) {
        if (!is_active(ranking[i])) {
            continue;
        }
        ranking[i] = wrapped(ranking[i] + 10 * dimensions_on_target(masters[i], target));
        // j is tested on its current ranking, so the marks of earlier pairs count at once.
        for (std::size_t j = i + 1; j < masters.size(); ++j) {
            if (is_active(ranking[j])) {
                rank_pair(masters, target, ranking, flagged, i, j);
            }
        }
    }
}

std::vector<Solution> make_solutions(const MasterPositions& masters, const std::vector<Ranking>& ranking)
{
    std::vector<Solution> singles;
    for (std::size_t i = 0; i < masters.size(); ++i) {
        if (takes_part(ranking, i)) {
            singles.push_back(Solution::single(i, masters.size(), masters[i]));
        }
    }
    return singles;
}

bool determine_solutions(std::vector<Solution>& solutions, std::vector<double> target, bool limit_candidates)
{
    if (solutions.empty()) {
        return false;
    }
    // The later dimensions are still reduced after a failed one, so that the result is the
    // best blend there is even when it misses the target there.
    bool failed = false;
    while (!target.empty()) {
        failed = !reduce_last_dimension(solutions, target, limit_candidates) || failed;
        target.pop_back();
    }
    return !failed;
}

std::vector<double> blend_solutions(const std::vector<Solution>& solutions, std::size_t N)
{
    std::vector<double> blended(N, 0.0);
    for (const Solution& solution : solutions) {
        if (!solution.is_withdrawn()) {
            std::transform(blended.begin(), blended.end(), solution.c.begin(), blended.begin(), std::plus<>());
        }
    }
    const double total = std::accumulate(blended.begin(), blended.end(), 0.0);
    for (double& value : blended) {
        value /= total;
    }
    return blended;
}
