#pragma once

#include <cstddef>
#include <string>

// A line on standard error that counts through long work, shown only when standard error is a
// terminal, and cleared when the work ends.
class ProofProgress {
public:
    ProofProgress(std::string what, size_t total);
    ~ProofProgress();
    ProofProgress(const ProofProgress&) = delete;
    ProofProgress& operator=(const ProofProgress&) = delete;

    void step(size_t done);

private:
    std::string _what;
    size_t _total;
    bool _shown;
};
