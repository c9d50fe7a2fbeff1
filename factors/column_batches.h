#pragma once

// Grids filled column by column on all cores, a batch of columns at a time; between batches the
// progress is told and the user may end the work.

#include "base/parallel.h"
#include "base/progress.h"

#include <algorithm>

namespace tessaran::factors {

// Calls work(begin, end) for disjoint ranges of the columns, on many threads at once, and then
// done(first, last) for each batch, in order, on the calling thread. The progress goes up by
// `positions` a column. False when it was cancelled.
template <class Work, class Done>
bool inColumnBatches(int columns, long positions, base::Progress& progress, const Work& work,
                     const Done& done) {
    constexpr int kBatch = 16;
    for (int first = 0; first < columns; first += kBatch) {
        progress.setPosition(first * positions);
        if (progress.cancelled())
            return false;
        const int last = std::min(columns, first + kBatch);
        base::parallelRanges(first, last, 1, work);
        done(first, last);
    }
    return true;
}

} // namespace tessaran::factors
