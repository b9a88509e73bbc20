#include "proof/ProofProgress.h"

#include <cstdio>
#include <unistd.h>

namespace {

// Work shorter than this many steps ends before a line would be worth reading.
constexpr size_t shortWork = 200;
constexpr size_t stepsPerLine = 100;

} // namespace

ProofProgress::ProofProgress(std::string what, size_t total)
    : _what(std::move(what)), _total(total), _shown(total >= shortWork && isatty(STDERR_FILENO))
{
}

ProofProgress::~ProofProgress()
{
    if (_shown) std::fputs("\r\033[K", stderr);
}

void ProofProgress::step(size_t done)
{
    if (!_shown || done % stepsPerLine != 0) return;
    std::fprintf(stderr, "\rvelmor-proof: %s %zu of %zu", _what.c_str(), done, _total);
    std::fflush(stderr);
}
