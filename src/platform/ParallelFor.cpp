#include "platform/ParallelFor.h"

#include <algorithm>
#include <atomic>
#include <exception>
#include <mutex>
#include <system_error>
#include <thread>
#include <vector>

void ParallelFor(size_t count, const std::function<void(size_t index, bool& stop)>& body)
{
    if (count == 0) return;
    size_t threads = std::min<size_t>(std::max(1u, std::thread::hardware_concurrency()), count);
    // Small chunks keep the threads balanced when items differ in cost, as glyph files do.
    size_t chunk = std::max<size_t>(1, count / (threads * 8));
    std::atomic<size_t> next{0};
    std::atomic<bool> stopped{false};
    // An exception escaping a thread would end the process; the first one stops the loop and is
    // thrown again on the calling thread, so that memory running out fails only the request.
    std::exception_ptr failure;
    std::mutex failureLock;

    auto work = [&] {
        while (!stopped.load(std::memory_order_relaxed)) {
            size_t start = next.fetch_add(chunk);
            if (start >= count) return;
            size_t end = std::min(count, start + chunk);
            for (size_t i = start; i < end && !stopped.load(std::memory_order_relaxed); ++i) {
                bool stop = false;
                body(i, stop);
                if (stop) stopped.store(true);
            }
        }
    };
    auto worker = [&] {
        try {
            work();
        } catch (...) {
            std::lock_guard lock(failureLock);
            if (!failure) failure = std::current_exception();
            stopped.store(true);
        }
    };

    std::vector<std::thread> pool;
    pool.reserve(threads - 1);
    for (size_t t = 1; t < threads; ++t) {
        // A sandbox may refuse further threads; the ones there are do the work.
        try {
            pool.emplace_back(worker);
        } catch (const std::system_error&) {
            break;
        }
    }
    worker();
    for (auto& thread : pool) thread.join();
    if (failure) std::rethrow_exception(failure);
}
