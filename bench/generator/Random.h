#pragma once

#include <cstdint>
#include <random>

namespace velmor::generator {

// The standard distributions differ between library versions; these helpers don't, so a variant
// gives the same document everywhere.
class Random {
public:
    explicit Random(std::uint64_t variant) : engine_(variant) {}

    std::uint64_t next() { return engine_(); }

    // An integer in [low, high], both included.
    int between(int low, int high) {
        return low + static_cast<int>(engine_() % static_cast<std::uint64_t>(high - low + 1));
    }

    // A real number in [low, high).
    double real(double low, double high) {
        return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1.0p-53;
    }

    bool chance(double probability) { return real(0.0, 1.0) < probability; }

private:
    std::mt19937_64 engine_;
};

// Derives independent streams from one variant, so that each glyph comes out the same whatever
// else the document holds.
inline std::uint64_t mixVariant(std::uint64_t variant, std::uint64_t stream) {
    std::uint64_t z = variant + 0x9E3779B97F4A7C15ULL * (stream + 1);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9ULL;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBULL;
    return z ^ (z >> 31);
}

} // namespace velmor::generator
