#pragma once

#include "model/VLFactors.h"

#include <optional>
#include <string>
#include <vector>

// Coefficients below 0.0005 in magnitude are noise of the solver: they are set to 0 and their sum
// is spread evenly over the others, so that a master with a trace of weight drops out while the
// total stays. Not-a-number is neither kept nor removed.
void tidyCoefficients(std::vector<double>& coefficients);

// The tidied coefficients as shares under the ids of their masters, in order; those up to 0.0001
// take no part. Nothing at all where one passes 100, which is no blend but a wild extrapolation;
// the empty dictionary where the counts differ.
std::optional<VLFactors> VLFactorsOfCoefficients(std::vector<double> coefficients, const std::vector<std::string>& ids);
