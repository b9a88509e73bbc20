#include "interpolation/VLCoefficientTidying.h"

#include <cmath>

namespace {

constexpr double negligibleCoefficient = 0.0005;
constexpr double smallestShare = 0.0001;
constexpr double largestShare = 100.0;

} // namespace

void tidyCoefficients(std::vector<double>& coefficients)
{
    double removed = 0.0;
    size_t kept = 0, removedCount = 0;
    for (double& c : coefficients) {
        if (std::fabs(c) >= negligibleCoefficient) {
            ++kept;
        } else if (std::fabs(c) < negligibleCoefficient) {
            removed += c;
            c = 0.0;
            ++removedCount;
        }
    }
    if (removedCount == 0 || kept == 0) return;
    double share = removed / static_cast<double>(kept);
    for (double& c : coefficients)
        if (std::fabs(c) >= negligibleCoefficient) c += share;
}

std::optional<VLFactors> VLFactorsOfCoefficients(std::vector<double> coefficients, const std::vector<std::string>& ids)
{
    VLFactors factors;
    if (coefficients.size() != ids.size()) return factors;
    tidyCoefficients(coefficients);
    for (size_t i = 0; i < coefficients.size(); ++i) {
        if (!(std::fabs(coefficients[i]) > smallestShare)) continue;
        if (std::fabs(coefficients[i]) > largestShare) return std::nullopt;
        factors.setObject_forKey(VLFactor(coefficients[i]), ids[i]);
    }
    return factors;
}
