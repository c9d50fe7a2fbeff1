#pragma once

// Loops over cells on all cores. Bodies must not depend on the order or on the number of threads.

#include <tbb/blocked_range.h>
#include <tbb/parallel_for.h>

namespace tessaran::base {

// Calls body(begin, end) for disjoint ranges that cover [begin, end).
template <class Body>
void parallelRanges(int begin, int end, int grain, const Body& body) {
    tbb::parallel_for(tbb::blocked_range<int>(begin, end, static_cast<std::size_t>(grain)),
                      [&](const tbb::blocked_range<int>& r) { body(r.begin(), r.end()); });
}

} // namespace tessaran::base
