#pragma once

#include <vector>

// Coefficients below 0.0005 in magnitude are set to 0 and their sum is spread evenly over the
// others, so that a master with a trace of weight drops out while the total stays. Where every
// coefficient is that small there is nothing to spread over, and they stay as they are.
void tidyCoefficients(std::vector<double>& coefficients);
