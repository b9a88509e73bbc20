#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <vector>

// The one tolerance of the solver: coefficients and coordinates closer than this are equal,
// and a coefficient within it of zero counts as unused.
constexpr double solver_tolerance = 1e-7;

inline bool nearly_equal(double a, double b)
{
    return std::abs(a - b) < solver_tolerance;
}

inline bool is_zero(double value)
{
    return std::abs(value) <= solver_tolerance;
}

inline bool is_positive(double value)
{
    return value > solver_tolerance;
}

inline bool is_negative(double value)
{
    return value < -solver_tolerance;
}

// The solver's invariants hold in release builds too: a broken one prints its text and ends
// the process, since carrying on would hand out coefficients for the wrong masters.
void solver_require(bool condition, const char* text);

// Merit of a master; 16 bits, and all arithmetic on it wraps (see coefficients.cpp).
using Ranking = std::int16_t;

inline Ranking wrapped(int value)
{
    return static_cast<Ranking>(value);
}

// One candidate: a blend of the masters and where that blend lies in the dimensions that
// are not reduced yet. An empty c marks a withdrawn candidate.
//
// The combining operations overwrite the receiver, a scratch record sized for the result
// (c one entry per master, coordinates one fewer than the operands where a dimension is
// reduced), which the caller then copies into its list.
struct Solution {
    std::vector<double> c;
    std::vector<double> coordinates;
    std::uint16_t used_count = 0;
    double negative_sum = 0.0;

    // One master by itself. Its counts are taken before its own coefficient is written, so
    // it uses no master and its negative sum of 1.0 is above that of every real candidate.
    static Solution single(std::size_t master, std::size_t master_count,
                         const std::vector<double>& position);

    bool is_withdrawn() const { return c.empty(); }
    void withdraw() { c.clear(); }

    bool last_is_on_target(const std::vector<double>& target) const;

    // Each of the three returns false, leaving the receiver untouched, when the pair cannot
    // make a candidate on the plane of the last target value.
    bool reduce_dimension(const Solution& other1, const Solution& other2,
                          const std::vector<double>& target);
    bool reduce_dimension_1D(const Solution& other1, const Solution& other2,
                             const std::vector<double>& target);
    bool reduce_dimension_perfect(const Solution& other1, const Solution& other2,
                                  const std::vector<double>& target);

    void equal_blend(const Solution& other1, const Solution& other2);
    void add_difference(const Solution& other_plus, const Solution& other_minus);

    Ranking worst_used_master_ranking(const std::vector<Ranking>& ranking) const;
    void limit_worst_used_master_ranking(const std::vector<Ranking>& ranking, Ranking limit);

    void add_if_new(std::vector<Solution>& list) const;

private:
    void blend_c(const Solution& other1, const Solution& other2, double f);
    void count_coefficients();
};
