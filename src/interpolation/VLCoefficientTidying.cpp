#include "interpolation/VLCoefficientTidying.h"

#include <cmath>

namespace {

constexpr double negligibleCoefficient = 0.0005;

bool isKept(double coefficient)
{
    return !(std::fabs(coefficient) < negligibleCoefficient);
}

} // namespace

void tidyCoefficients(std::vector<double>& coefficients)
{
    double removed = 0.0;
    size_t kept = 0;
    for (double c : coefficients) {
        if (isKept(c))
            ++kept;
        else
            removed += c;
    }
    if (kept == 0 || kept == coefficients.size()) return;
    double share = removed / static_cast<double>(kept);
    for (double& c : coefficients) c = isKept(c) ? c + share : 0.0;
}
