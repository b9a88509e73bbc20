#pragma once

#include "interpolation/coefficients.h"

#include <cstddef>
#include <vector>

// The solver's answers for instances, kept for the life of the process: a font of thousands of
// glyphs asks the same masters and target for each of them. Answers depend only on the numbers,
// so they hold across documents, and the keys hold the numbers themselves, so a collision of
// hashes never gives wrong coefficients. Safe to use from several threads.
class VLCoefficientCache {
public:
    // The coefficients of anyCoeffs, without limiting candidates; an empty answer is kept as well.
    // A set of masters keeps at most 1000 targets and the cache at most 5000 sets of masters:
    // past that they start again.
    static std::vector<double> coefficientsForMasters_target(const MasterPositions& masters,
                                                             const std::vector<double>& target);
    // How many times the solver was asked, over the life of the process.
    static size_t solveCount();
    static void removeAllEntries();
};
