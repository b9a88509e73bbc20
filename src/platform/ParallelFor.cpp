#include "platform/ParallelFor.h"

#include <algorithm>
#include <atomic>
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

    auto worker = [&] {
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

    std::vector<std::thread> pool;
    for (size_t t = 1; t < threads; ++t) pool.emplace_back(worker);
    worker();
    for (auto& thread : pool) thread.join();
}
