#include "grid/grid_arithmetic.h"

#include "base/check.h"
#include "base/parallel.h"
#include "base/text.h"
#include "grid/centre_cells.h"

#include <cmath>
#include <limits>
#include <mutex>
#include <span>

namespace tessaran::grid {
namespace {

using base::hasValue;

constexpr int kRowsATask = 32;

bool canBeStored(double result) {
    return hasValue(result) && result <= std::numeric_limits<double>::max();
}

CellCounts& operator+=(CellCounts& sum, const CellCounts& counts) {
    sum.changed += counts.changed;
    sum.withoutValue += counts.withoutValue;
    sum.outside += counts.outside;
    sum.zeroDivisor += counts.zeroDivisor;
    sum.outOfRange += counts.outOfRange;
    return sum;
}

// body(begin, end) -> CellCounts over bands of rows; their sum.
template <class Body>
CellCounts overRows(const myGrid& grid, const Body& body) {
    CellCounts counts;
    std::mutex adding;
    base::parallelRanges(0, grid.nY(), kRowsATask, [&](int begin, int end) {
        const CellCounts here = body(begin, end);
        const std::lock_guard lock(adding);
        counts += here;
    });
    return counts;
}

std::span<double> cellsOfRow(myGrid& grid, int j) {
    return grid.row(j).first(static_cast<std::size_t>(grid.nX()));
}

template <class Result>
CellCounts applyToAll(myGrid& grid, const Result& result) {
    return overRows(grid, [&](int begin, int end) {
        CellCounts counts;
        for (int j = begin; j < end; ++j)
            for (double& value : cellsOfRow(grid, j)) {
                const double now = result(value);
                const bool given = hasValue(value);
                const bool stored = given && canBeStored(now);
                value = stored ? now : value;
                counts.changed += stored ? 1U : 0U;
                counts.withoutValue += given ? 0U : 1U;
                counts.outOfRange += given && !stored ? 1U : 0U;
            }
        return counts;
    });
}

// One cell with the value of the other grid.
template <class Result>
void applyToCell(double& value, double other, bool divides, const Result& result,
                 CellCounts& counts) {
    if (!hasValue(value) || !hasValue(other)) {
        ++counts.withoutValue;
        return;
    }
    if (divides && !(std::abs(other) > base::kTolerance)) {
        ++counts.zeroDivisor;
        return;
    }
    const double now = result(value, other);
    ++(canBeStored(now) ? counts.changed : counts.outOfRange);
    value = canBeStored(now) ? now : value;
}

template <class Result>
CellCounts applySampled(myGrid& grid, const myGrid& other, bool divides, const Result& result) {
    const CentreCells centres(grid, other);
    return overRows(grid, [&](int begin, int end) {
        CellCounts counts;
        for (int j = begin; j < end; ++j) {
            const std::span<double> values = cellsOfRow(grid, j);
            centres.forEachIn(j, [&](std::size_t i, double sample) {
                applyToCell(values[i], sample, divides, result, counts);
            });
        }
        const auto cells =
            static_cast<std::size_t>(end - begin) * static_cast<std::size_t>(grid.nX());
        counts.outside =
            cells - counts.changed - counts.withoutValue - counts.zeroDivisor - counts.outOfRange;
        return counts;
    });
}

} // namespace

std::optional<GridOperation> operationNamed(std::string_view name) {
    for (std::size_t k = 0; k < kOperationNames.size(); ++k)
        if (base::equalsIgnoringCase(base::trimmed(name), kOperationNames[k]))
            return static_cast<GridOperation>(k);
    return std::nullopt;
}

const char* nameOf(GridOperation operation) {
    return kOperationNames[static_cast<std::size_t>(operation)];
}

CellCounts applyValue(myGrid& grid, GridOperation operation, double operand) {
    if (!grid.isDefined())
        return {};
    const double c = operand;
    switch (operation) {
    case GridOperation::add:
        return applyToAll(grid, [c](double v) { return v + c; });
    case GridOperation::subtract:
        return applyToAll(grid, [c](double v) { return v - c; });
    case GridOperation::multiply:
        return applyToAll(grid, [c](double v) { return v * c; });
    case GridOperation::divide:
        return applyToAll(grid, [c](double v) { return v / c; });
    case GridOperation::square:
        return applyToAll(grid, [](double v) { return v * v; });
    case GridOperation::squareRoot:
        break;
    }
    return applyToAll(grid, [](double v) { return std::sqrt(v); });
}

CellCounts applyGrid(myGrid& grid, GridOperation operation, const myGrid& other) {
    if (!grid.isDefined() || !other.isDefined())
        return {};
    switch (operation) {
    case GridOperation::add:
        return applySampled(grid, other, false, [](double v, double w) { return v + w; });
    case GridOperation::subtract:
        return applySampled(grid, other, false, [](double v, double w) { return v - w; });
    case GridOperation::multiply:
        return applySampled(grid, other, false, [](double v, double w) { return v * w; });
    default:
        break;
    }
    TESSARAN_CHECK(operation == GridOperation::divide);
    return applySampled(grid, other, true, [](double v, double w) { return v / w; });
}

void takeValues(myGrid& grid, const myGrid& other) {
    if (!grid.isDefined() || !other.isDefined())
        return;
    const CentreCells centres(grid, other);
    base::parallelRanges(0, grid.nY(), kRowsATask, [&](int begin, int end) {
        for (int j = begin; j < end; ++j)
            for (int i = 0; i < grid.nX(); ++i) {
                const CellIndex nearest = other.held(centres.cellAround(i, j));
                grid.setValue(i, j, other.getValue(nearest.column, nearest.row));
            }
    });
}

} // namespace tessaran::grid
