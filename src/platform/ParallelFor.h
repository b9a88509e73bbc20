#pragma once

#include <cstddef>
#include <functional>

// Runs body(index, stop) for every index below count on one thread per core, handing out
// indexes in chunks. Setting stop makes the loop hand out no further work; bodies already
// running finish. Returns when every started body has returned.
void ParallelFor(size_t count, const std::function<void(size_t index, bool& stop)>& body);
