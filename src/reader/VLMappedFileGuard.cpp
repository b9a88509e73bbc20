#include "reader/VLMappedFileGuard.h"

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <mutex>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace {

// A slot is free while its begin is 0 and guards only while its end is set. The handler reads
// the slots without a lock, so a slot is claimed by its begin before its end is set, and its end
// is cleared before its begin frees it.
struct GuardedRange {
    std::atomic<uintptr_t> begin{0};
    std::atomic<uintptr_t> end{0};
};

std::array<GuardedRange, VLMappedFileGuardSlots> ranges;
std::atomic<uint64_t> cuts{0};
struct sigaction previousAction;
uintptr_t pageSize = 0;

// Zero pages from the faulting one to the end of the guarded range it lies in; false when it lies
// in none. Only async-signal-safe calls: the mapping goes through the system call itself.
bool repair(uintptr_t address)
{
    for (const GuardedRange& range : ranges) {
        uintptr_t begin = range.begin.load(std::memory_order_acquire);
        uintptr_t end = range.end.load(std::memory_order_acquire);
        if (begin == 0 || address < begin || address >= end) continue;
        uintptr_t page = address & ~(pageSize - 1);
        long zeros = syscall(SYS_mmap, page, end - page, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS | MAP_FIXED, -1, 0);
        if (zeros != static_cast<long>(page)) return false;
        cuts.fetch_add(1, std::memory_order_relaxed);
        return true;
    }
    return false;
}

void onBusError(int signal, siginfo_t* info, void*)
{
    int savedErrno = errno;
    // A fault of the hardware has a positive code; a signal sent by a process is not ours to mend.
    if (info->si_code <= 0 || !repair(reinterpret_cast<uintptr_t>(info->si_addr))) {
        // The fault happens again on return, under the disposition SIGBUS had before; a sent
        // signal is sent again.
        sigaction(signal, &previousAction, nullptr);
        if (info->si_code <= 0) raise(signal);
    }
    errno = savedErrno;
}

void installHandler()
{
    pageSize = static_cast<uintptr_t>(sysconf(_SC_PAGESIZE));
    struct sigaction action = {};
    action.sa_sigaction = onBusError;
    action.sa_flags = SA_SIGINFO;
    sigemptyset(&action.sa_mask);
    sigaction(SIGBUS, &action, &previousAction);
}

} // namespace

bool guardMappedFile(const uint8_t* begin, size_t length)
{
    static std::once_flag installed;
    std::call_once(installed, installHandler);
    uintptr_t first = reinterpret_cast<uintptr_t>(begin);
    uintptr_t last = (first + length + pageSize - 1) & ~(pageSize - 1);
    for (GuardedRange& range : ranges) {
        uintptr_t expected = 0;
        if (!range.begin.compare_exchange_strong(expected, first, std::memory_order_acq_rel)) continue;
        range.end.store(last, std::memory_order_release);
        return true;
    }
    return false;
}

void unguardMappedFile(const uint8_t* begin)
{
    uintptr_t first = reinterpret_cast<uintptr_t>(begin);
    for (GuardedRange& range : ranges) {
        if (range.begin.load(std::memory_order_acquire) != first) continue;
        range.end.store(0, std::memory_order_release);
        range.begin.store(0, std::memory_order_release);
        return;
    }
}

uint64_t countOfCutMappedFiles()
{
    return cuts.load(std::memory_order_relaxed);
}
