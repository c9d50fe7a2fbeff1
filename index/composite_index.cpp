#include "index/composite_index.h"

#include "base/check.h"
#include "base/parallel.h"
#include "base/tolerance.h"
#include "grid/centre_cells.h"

#include <atomic>
#include <cmath>
#include <span>

namespace tessaran::index {
namespace {

using grid::myGrid;

constexpr int kRowsATask = 32;

} // namespace

std::size_t addSampled(myGrid& sum, const myGrid& other, double weight) {
    const grid::CentreCells centres(sum, other);
    std::atomic<std::size_t> without{0};
    base::parallelRanges(0, sum.nY(), kRowsATask, [&](int begin, int end) {
        std::size_t here = 0;
        for (int j = begin; j < end; ++j) {
            const std::span<double> row = sum.row(j);
            centres.forEachIn(j, [&](std::size_t i, double sample) {
                const bool given = base::hasValue(sample);
                here += given ? 0U : 1U;
                if (given && base::hasValue(row[i]))
                    row[i] += sample * weight;
            });
        }
        without += here;
    });
    return without;
}

bool hasWeight(double totalWeight) {
    return std::isfinite(totalWeight) && std::abs(totalWeight) > base::kTolerance;
}

grid::MinMax finishComposite(myGrid& sum, double totalWeight) {
    TESSARAN_CHECK(hasWeight(totalWeight));
    sum.scaleValues(1.0 / totalWeight);
    const grid::MinMax range = sum.getMinMax().value_or(grid::MinMax{});
    sum.rescaleValues(0.0, 100.0);
    return range;
}

} // namespace tessaran::index
