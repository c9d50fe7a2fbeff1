#include "rfri/final_value.h"

#include "base/parallel.h"
#include "base/tolerance.h"

#include <algorithm>

namespace tessaran::rfri {
namespace {

using grid::myGrid;

constexpr int kRowsAtOnce = 32;
constexpr long kAfterSecond = 16;
constexpr long kAfterEachLater = 8;

// Works on every row of cells on all cores.
template <class Work>
void forRows(myGrid& grid, const Work& work) {
    base::parallelRanges(0, grid.nY(), kRowsAtOnce, [&](int begin, int end) {
        for (int j = begin; j < end; ++j)
            work(j, grid.row(j).first(static_cast<std::size_t>(grid.nX())));
    });
}

void take(const myGrid& from, myGrid& to) {
    to.setOrigin(from.origin().x, from.origin().y, from.origin().z);
    if (to.setupGrid(from.nX(), from.nY(), from.cellWidthX(), from.cellWidthY(), 0.0))
        std::copy(from.values().begin(), from.values().end(), to.values().begin());
}

void add(const myGrid& addend, double weight, myGrid& sum) {
    forRows(sum, [&](int j, std::span<double> row) {
        if (j >= addend.nY())
            return;
        const auto from = addend.row(j);
        const std::size_t columns = std::min(row.size(), static_cast<std::size_t>(addend.nX()));
        for (std::size_t i = 0; i < columns; ++i) {
            const bool both = base::hasValue(row[i]) && base::hasValue(from[i]);
            row[i] = both ? row[i] + weight * from[i] : base::kNoValue;
        }
    });
}

void scale(myGrid& sum, double factor) {
    forRows(sum, [&](int, std::span<double> row) {
        for (double& value : row)
            if (base::hasValue(value))
                value *= factor;
    });
}

} // namespace

void sumCategories(const CategorySource& read, const MissingSink& missing, myGrid& sum,
                   base::Progress& progress) {
    bool scaled = false;
    for (std::size_t k = 0; k < kCategories; ++k) {
        const Category& category = categories()[k];
        if (!category.scaled && !scaled) {
            scale(sum, kScale);
            scaled = true;
        }
        myGrid grid;
        if (const auto got = read(k, grid); !got)
            missing(k, got.error());
        else if (k == 0)
            take(grid, sum);
        else
            add(grid, category.weight, sum);
        if (k > 0)
            progress.setPosition(kAfterSecond + kAfterEachLater * static_cast<long>(k - 1));
    }
}

} // namespace tessaran::rfri
