#include "index/composite_index.h"

#include "base/check.h"
#include "base/parallel.h"
#include "base/tolerance.h"

#include <atomic>
#include <cmath>
#include <span>
#include <vector>

namespace tessaran::index {
namespace {

using grid::CellIndex;
using grid::myGrid;
using grid::Point2;

constexpr int kRowsATask = 32;

Point2 centreOf(const myGrid& grid, int i, int j) {
    return (grid.origin() + (i + 0.5) * grid.xStep() + (j + 0.5) * grid.yStep()).plan();
}

// Adds one sample. Whether it had a value.
bool addSample(double& sum, double sample, double weight) {
    if (!base::hasValue(sample))
        return false;
    if (base::hasValue(sum))
        sum += sample * weight;
    return true;
}

// Between grids that are both unrotated a column of centres falls into one column of the other and
// a row into one row, so that two small tables replace a point location a cell.
class AlignedSampler {
  public:
    AlignedSampler(const myGrid& sum, const myGrid& other) : other_(other) {
        for (int i = 0; i < sum.nX(); ++i)
            columns_.push_back(other.pointToCell(centreOf(sum, i, 0)).column);
        for (int j = 0; j < sum.nY(); ++j)
            rows_.push_back(other.pointToCell(centreOf(sum, 0, j)).row);
    }

    std::size_t addRow(std::span<double> sum, int j, double weight) const {
        const int row = rows_[static_cast<std::size_t>(j)];
        if (row < 0)
            return 0;
        const std::span<const double> samples = other_.row(row);
        std::size_t without = 0;
        for (std::size_t i = 0; i < columns_.size(); ++i)
            if (columns_[i] >= 0 &&
                !addSample(sum[i], samples[static_cast<std::size_t>(columns_[i])], weight))
                ++without;
        return without;
    }

  private:
    const myGrid& other_;
    std::vector<int> columns_; // of the other grid; below 0: outside
    std::vector<int> rows_;
};

// Any two grids: every centre is located by itself.
class PointSampler {
  public:
    PointSampler(const myGrid& sum, const myGrid& other) : sum_(sum), other_(other) {}

    std::size_t addRow(std::span<double> sum, int j, double weight) const {
        std::size_t without = 0;
        for (int i = 0; i < sum_.nX(); ++i) {
            const CellIndex cell = other_.pointToCell(centreOf(sum_, i, j));
            if (cell.column >= 0 && cell.row >= 0 &&
                !addSample(sum[static_cast<std::size_t>(i)], other_.getValue(cell.column, cell.row),
                           weight))
                ++without;
        }
        return without;
    }

  private:
    const myGrid& sum_;
    const myGrid& other_;
};

template <class Sampler>
std::size_t addRows(myGrid& sum, double weight, const Sampler& sampler) {
    std::atomic<std::size_t> without{0};
    base::parallelRanges(0, sum.nY(), kRowsATask, [&](int begin, int end) {
        std::size_t here = 0;
        for (int j = begin; j < end; ++j)
            here += sampler.addRow(sum.row(j), j, weight);
        without += here;
    });
    return without;
}

// Exactly: along the axes, nothing of one step leaks into the other coordinate.
bool unrotated(const myGrid& grid) {
    return grid.xStep().y == 0.0 && grid.yStep().x == 0.0;
}

} // namespace

std::size_t addSampled(myGrid& sum, const myGrid& other, double weight) {
    if (unrotated(sum) && unrotated(other))
        return addRows(sum, weight, AlignedSampler(sum, other));
    return addRows(sum, weight, PointSampler(sum, other));
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
