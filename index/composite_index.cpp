#include "index/composite_index.h"

#include "base/check.h"
#include "base/parallel.h"
#include "base/tolerance.h"
#include "grid/centre_cells.h"

#include <atomic>
#include <cmath>
#include <span>
#include <vector>

namespace tessaran::index {
namespace {

using grid::CellIndex;
using grid::myGrid;

constexpr int kRowsATask = 32;

// Adds the samples of one row. How many of them had no value.
std::size_t addRow(std::span<double> sum, std::span<const CellIndex> cells, const myGrid& other,
                   double weight) {
    std::size_t without = 0;
    for (std::size_t i = 0; i < cells.size(); ++i) {
        if (cells[i].column < 0 || cells[i].row < 0)
            continue;
        const double sample = other.row(cells[i].row)[static_cast<std::size_t>(cells[i].column)];
        if (!base::hasValue(sample))
            ++without;
        else if (base::hasValue(sum[i]))
            sum[i] += sample * weight;
    }
    return without;
}

} // namespace

std::size_t addSampled(myGrid& sum, const myGrid& other, double weight) {
    const grid::CentreCells centres(sum, other);
    std::atomic<std::size_t> without{0};
    base::parallelRanges(0, sum.nY(), kRowsATask, [&](int begin, int end) {
        std::vector<CellIndex> cells(static_cast<std::size_t>(sum.nX()));
        std::size_t here = 0;
        for (int j = begin; j < end; ++j) {
            centres.locate(j, cells);
            here += addRow(sum.row(j), cells, other, weight);
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
