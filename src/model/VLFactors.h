#pragma once

#include "model/VLOrderedDictionary.h"

#include <cmath>

// A layer's share in an interpolation, with separate shares for x and y: a plain number gives
// both. Shares in a factor dictionary are keyed by layer id or master id, in the order the
// layers are summed.
struct VLFactor {
    double x = 0.0;
    double y = 0.0;

    VLFactor() = default;
    VLFactor(double both) : x(both), y(both) {}
    VLFactor(double x, double y) : x(x), y(y) {}

    // Shares this small take no part.
    bool isNegligible() const { return std::fabs(x) < 0.0001 && std::fabs(y) < 0.0001; }
};

using VLFactors = VLOrderedDictionary<VLFactor>;
