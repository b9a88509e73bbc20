#include "interpolation/Solution.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>

void solver_require(bool condition, const char* text)
{
    if (!condition) [[unlikely]] {
        std::fprintf(stderr, "Assertion failed: %s\n", text);
        std::abort();
    }
}

namespace {

// Writes a + f * (b - a) into as many entries as `out` holds.
void blend_values(std::vector<double>& out, const std::vector<double>& a,
                  const std::vector<double>& b, double f)
{
    for (std::size_t i = 0; i < out.size(); ++i) {
        out[i] = a[i] + f * (b[i] - a[i]);
    }
}

void require_finite(const std::vector<double>& values, const char* text)
{
    for (double value : values) {
        solver_require(std::isfinite(value), text);
    }
}

double last_factor(const Solution& other1, const Solution& other2, const std::vector<double>& target)
{
    const double x1 = other1.coordinates.back();
    return (target.back() - x1) / (other2.coordinates.back() - x1);
}

bool all_nearly_equal(const std::vector<double>& a, const std::vector<double>& b, std::size_t count)
{
    return std::equal(a.begin(), a.begin() + static_cast<std::ptrdiff_t>(count), b.begin(), nearly_equal);
}

} // namespace

Solution Solution::single(std::size_t master, std::size_t master_count, const std::vector<double>& position)
{
    Solution solution{std::vector<double>(master_count, 0.0), position, 0, 1.0};
    solution.c[master] = 1.0;
    return solution;
}

bool Solution::last_is_on_target(const std::vector<double>& target) const
{
    solver_require(coordinates.size() == target.size(), "coordinates.size() == target.size()");
    return nearly_equal(coordinates.back(), target.back());
}

bool Solution::reduce_dimension(const Solution& other1, const Solution& other2,
                                const std::vector<double>& target)
{
    solver_require(other1.coordinates.size() == other2.coordinates.size(),
                   "other1.coordinates.size() == other2.coordinates.size()");
    solver_require(coordinates.size() == other2.coordinates.size() - 1,
                   "coordinates.size() == other2.coordinates.size() - 1");
    const double x1 = other1.coordinates.back();
    const double x2 = other2.coordinates.back();
    if (nearly_equal(x1, target.back()) || nearly_equal(x2, target.back()) || nearly_equal(x1, x2)) {
        return false;
    }
    // The target need not lie between the two: a pair on one side extrapolates, and the
    // negative coefficients that result are what ranks such a candidate down later.
    const double f = last_factor(other1, other2, target);
    blend_c(other1, other2, f);
    blend_values(coordinates, other1.coordinates, other2.coordinates, f);
    require_finite(c, "isfinite( c[i] )");
    require_finite(coordinates, "isfinite( coordinates[i] )");
    return true;
}

bool Solution::reduce_dimension_1D(const Solution& other1, const Solution& other2,
                                   const std::vector<double>& target)
{
    solver_require(other1.coordinates.size() == 1, "other1.coordinates.size() == 1");
    solver_require(other2.coordinates.size() == 1, "other2.coordinates.size() == 1");
    solver_require(coordinates.empty(), "coordinates.empty()");
    if (nearly_equal(other1.coordinates.back(), other2.coordinates.back())) {
        return false;
    }
    blend_c(other1, other2, last_factor(other1, other2, target));
    return true;
}

bool Solution::reduce_dimension_perfect(const Solution& other1, const Solution& other2,
                                        const std::vector<double>& target)
{
    solver_require(other1.coordinates.size() == other2.coordinates.size(),
                   "other1.coordinates.size() == other2.coordinates.size()");
    solver_require(coordinates.size() == other1.coordinates.size() - 1,
                   "coordinates.size() == other1.coordinates.size() - 1");
    if (other1.used_count != other2.used_count
        || nearly_equal(other1.coordinates.back(), other2.coordinates.back())
        || !all_nearly_equal(other1.coordinates, other2.coordinates, coordinates.size())) {
        return false;
    }
    blend_c(other1, other2, last_factor(other1, other2, target));
    std::copy_n(other1.coordinates.begin(), coordinates.size(), coordinates.begin());
    return true;
}

void Solution::equal_blend(const Solution& other1, const Solution& other2)
{
    solver_require(other1.coordinates.size() == other2.coordinates.size(),
                   "other1.coordinates.size() == other2.coordinates.size()");
    blend_c(other1, other2, 0.5);
    blend_values(coordinates, other1.coordinates, other2.coordinates, 0.5);
    require_finite(c, "isfinite( c[i] )");
    require_finite(coordinates, "isfinite( coordinates[i] )");
}

void Solution::add_difference(const Solution& other_plus, const Solution& other_minus)
{
    solver_require((other_plus.coordinates.size() == coordinates.size()
                    && other_minus.coordinates.size() == coordinates.size())
                       || nearly_equal(other_plus.coordinates.back(), other_minus.coordinates.back()),
                   "( other_plus.coordinates.size() == coordinates.size() && "
                   "other_minus.coordinates.size() == coordinates.size() ) || "
                   "nearly_equal( other_plus.coordinates.back(), other_minus.coordinates.back() )");
    for (std::size_t i = 0; i < c.size(); ++i) {
        c[i] += other_plus.c[i] - other_minus.c[i];
    }
    for (std::size_t i = 0; i < coordinates.size(); ++i) {
        coordinates[i] += other_plus.coordinates[i] - other_minus.coordinates[i];
    }
    count_coefficients();
}

Ranking Solution::worst_used_master_ranking(const std::vector<Ranking>& ranking) const
{
    if (is_withdrawn()) {
        return INT16_MIN;
    }
    solver_require(ranking.size() == c.size(), "ranking.size() == c.size()");
    Ranking worst = INT16_MAX;
    for (std::size_t i = 0; i < c.size(); ++i) {
        if (!is_zero(c[i])) {
            worst = std::min(worst, ranking[i]);
        }
    }
    return worst;
}

void Solution::limit_worst_used_master_ranking(const std::vector<Ranking>& ranking, Ranking limit)
{
    solver_require(c.empty() || ranking.size() == c.size(), "c.empty() || ranking.size() == c.size()");
    if (!is_withdrawn() && worst_used_master_ranking(ranking) < limit) {
        withdraw();
    }
}

void Solution::add_if_new(std::vector<Solution>& list) const
{
    if (is_withdrawn()) {
        return;
    }
    const bool known = std::any_of(list.begin(), list.end(), [this](const Solution& member) {
        return member.c.size() == c.size() && all_nearly_equal(member.c, c, c.size());
    });
    if (!known) {
        list.push_back(*this);
    }
}

void Solution::blend_c(const Solution& other1, const Solution& other2, double f)
{
    solver_require(c.size() == other1.c.size(), "c.size() == other1.c.size()");
    blend_values(c, other1.c, other2.c, f);
    count_coefficients();
}

void Solution::count_coefficients()
{
    used_count = 0;
    negative_sum = 0.0;
    for (double coefficient : c) {
        used_count += is_zero(coefficient) ? 0 : 1;
        if (is_negative(coefficient)) {
            negative_sum += coefficient;
        }
    }
}
