#include "reader/VLPlistSkippersPath.h"

#include <atomic>

namespace {

VLPlistSkipPath fastestPath()
{
    for (VLPlistSkipPath path : {VLPlistSkipPath::avx512, VLPlistSkipPath::avx2, VLPlistSkipPath::sse2})
        if (plistSkipPathSupported(path)) return path;
    return VLPlistSkipPath::scalar;
}

std::atomic<VLPlistSkipPath>& currentPath()
{
    static std::atomic<VLPlistSkipPath> path{fastestPath()};
    return path;
}

} // namespace

bool plistSkipPathSupported(VLPlistSkipPath path)
{
    switch (path) {
    case VLPlistSkipPath::scalar: return true;
#ifdef __x86_64__
    case VLPlistSkipPath::sse2: return true;
    case VLPlistSkipPath::avx2:
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx2") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt");
    case VLPlistSkipPath::avx512:
        __builtin_cpu_init();
        return __builtin_cpu_supports("avx512bw") && __builtin_cpu_supports("bmi") && __builtin_cpu_supports("popcnt");
#endif
    default: return false;
    }
}

VLPlistSkipPath plistSkipPath()
{
    return currentPath().load(std::memory_order_relaxed);
}

bool setPlistSkipPath(VLPlistSkipPath path)
{
    if (!plistSkipPathSupported(path)) return false;
    currentPath().store(path, std::memory_order_relaxed);
    return true;
}

VLPlistStructureScan plistStructureScan()
{
    switch (plistSkipPath()) {
#ifdef __x86_64__
    case VLPlistSkipPath::sse2: return scanPlistStructureSSE2;
    case VLPlistSkipPath::avx2: return scanPlistStructureAVX2;
    case VLPlistSkipPath::avx512: return scanPlistStructureAVX512;
#endif
    default: return nullptr;
    }
}
