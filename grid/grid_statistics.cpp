#include "grid/grid_statistics.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "grid/centre_cells.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <span>

namespace tessaran::grid {
namespace {

using base::hasValue;

constexpr int kRowsATask = 16;

// One part a row, made on all cores; the caller folds them in order.
template <class Part, class OfRow>
std::vector<Part> rowParts(const myGrid& grid, const OfRow& ofRow) {
    std::vector<Part> parts(static_cast<std::size_t>(grid.nY()));
    base::parallelRanges(0, grid.nY(), kRowsATask, [&](int begin, int end) {
        for (int j = begin; j < end; ++j)
            parts[static_cast<std::size_t>(j)] = ofRow(j);
    });
    return parts;
}

struct First { // pass: count, sum and extremes
    std::size_t samples = 0;
    std::size_t withoutValue = 0;
    double sum = 0.0;
    double min = HUGE_VAL;
    double max = -HUGE_VAL;
};

struct Second { // pass: about the mean and the extremes
    double squares = 0.0;
    std::size_t atMin = 0;
    std::size_t atMax = 0;
};

// visit(value) for the cells of row j; `only` null: all of them.
template <class Visit>
void forEachCell(const myGrid& grid, const CellSelection* only, int j, const Visit& visit) {
    const auto values = grid.row(j).first(static_cast<std::size_t>(grid.nX()));
    if (only == nullptr) {
        std::ranges::for_each(values, visit);
        return;
    }
    const auto selected = only->row(j);
    for (std::size_t i = 0; i < values.size(); ++i)
        if (selected[i] != 0)
            visit(values[i]);
}

First firstPass(const myGrid& grid, const CellSelection* only) {
    First all;
    for (const First& row : rowParts<First>(grid, [&](int j) {
             First part;
             forEachCell(grid, only, j, [&](double value) {
                 if (!hasValue(value)) {
                     ++part.withoutValue;
                     return;
                 }
                 ++part.samples;
                 part.sum += value;
                 part.min = std::min(part.min, value);
                 part.max = std::max(part.max, value);
             });
             return part;
         })) {
        all.samples += row.samples;
        all.withoutValue += row.withoutValue;
        all.sum += row.sum;
        all.min = std::min(all.min, row.min);
        all.max = std::max(all.max, row.max);
    }
    return all;
}

Second secondPass(const myGrid& grid, const CellSelection* only, const GridStatistics& known) {
    Second all;
    for (const Second& row : rowParts<Second>(grid, [&](int j) {
             Second part;
             forEachCell(grid, only, j, [&](double value) {
                 if (!hasValue(value))
                     return;
                 const double off = value - known.mean;
                 part.squares += off * off;
                 part.atMin += value - known.min <= base::kTolerance ? 1U : 0U;
                 part.atMax += known.max - value <= base::kTolerance ? 1U : 0U;
             });
             return part;
         })) {
        all.squares += row.squares;
        all.atMin += row.atMin;
        all.atMax += row.atMax;
    }
    return all;
}

GridStatistics statisticsOver(const myGrid& grid, const CellSelection* only) {
    GridStatistics found;
    if (!grid.isDefined())
        return found;
    const First first = firstPass(grid, only);
    found.samples = first.samples;
    found.withoutValue = first.withoutValue;
    if (found.samples == 0)
        return found;
    found.mean = first.sum / static_cast<double>(found.samples);
    found.min = first.min;
    found.max = first.max;
    const Second second = secondPass(grid, only, found);
    found.atMin = second.atMin;
    found.atMax = second.atMax;
    if (found.samples > 1)
        found.deviation = std::sqrt(second.squares / static_cast<double>(found.samples - 1));
    return found;
}

// --- correlation --------------------------------------------------------------------------------

struct PairSums {
    std::size_t pairs = 0;
    double x = 0.0;
    double y = 0.0;
    double xx = 0.0;
    double yy = 0.0;
    double xy = 0.0;
};

// Sums over the pairs of values, less `meanX` and `meanY`.
PairSums pairSums(const myGrid& grid, const myGrid& other, double meanX, double meanY) {
    const CentreCells centres(grid, other);
    const auto ofRow = [&](int j) {
        const std::span<const double> values = grid.row(j);
        PairSums part;
        centres.forEachIn(j, [&](std::size_t i, double sample) {
            if (!hasValue(values[i]) || !hasValue(sample))
                return;
            const double x = values[i] - meanX;
            const double y = sample - meanY;
            ++part.pairs;
            part.x += x;
            part.y += y;
            part.xx += x * x;
            part.yy += y * y;
            part.xy += x * y;
        });
        return part;
    };
    PairSums all;
    for (const PairSums& row : rowParts<PairSums>(grid, ofRow)) {
        all.pairs += row.pairs;
        all.x += row.x;
        all.y += row.y;
        all.xx += row.xx;
        all.yy += row.yy;
        all.xy += row.xy;
    }
    return all;
}

} // namespace

GridStatistics statisticsOf(const myGrid& grid) {
    return statisticsOver(grid, nullptr);
}

GridStatistics statisticsOf(const myGrid& grid, const CellSelection& cells) {
    return statisticsOver(grid, &cells);
}

std::string statisticsText(const GridStatistics& s) {
    std::string text = fmt::format("Total Sample: {}", s.samples);
    if (s.samples > 0)
        text += fmt::format("\nMean: {:f}\nStandard Deviation: {:f}\nMinimum Value: {:f} ({} "
                            "samples)\nMaximum Value: {:f} ({} samples)",
                            s.mean, s.deviation, s.min, s.atMin, s.max, s.atMax);
    if (s.withoutValue > 0)
        text += fmt::format("\nCells without Value: {}", s.withoutValue);
    return text;
}

Correlation correlation(const myGrid& grid, const myGrid& other) {
    if (!grid.isDefined() || !other.isDefined())
        return {};
    const PairSums plain = pairSums(grid, other, 0.0, 0.0);
    Correlation found{plain.pairs, std::nullopt};
    if (plain.pairs < 2)
        return found;
    const auto n = static_cast<double>(plain.pairs);
    const PairSums about = pairSums(grid, other, plain.x / n, plain.y / n);
    // Spread that is no more than the rounding of the mean is none.
    const auto spread = [n](double squares, double sum) {
        const double rounding = 1e-14 * std::abs(sum / n);
        return squares > n * rounding * rounding;
    };
    const double scale = std::sqrt(about.xx) * std::sqrt(about.yy);
    if (spread(about.xx, plain.x) && spread(about.yy, plain.y) && std::isfinite(scale))
        found.coefficient = std::clamp(about.xy / scale, -1.0, 1.0);
    return found;
}

std::string correlationText(const Correlation& correlation) {
    if (correlation.coefficient)
        return fmt::format("Correlation Coefficent: {:f}", *correlation.coefficient);
    return fmt::format("Correlation Coefficent: not defined ({} samples)", correlation.pairs);
}

std::vector<BandShare> bandShares(const myGrid& grid, const std::vector<ColourBreak>& table) {
    if (table.size() < 2 || !grid.isDefined())
        return {};
    using Counts = std::vector<std::size_t>;
    Counts counts(table.size() - 1);
    for (const Counts& row : rowParts<Counts>(grid, [&](int j) {
             Counts part(table.size() - 1);
             forEachCell(grid, nullptr, j, [&](double value) {
                 if (hasValue(value))
                     ++part[static_cast<std::size_t>(bandOfValue(table, value))];
             });
             return part;
         }))
        for (std::size_t k = 0; k < counts.size(); ++k)
            counts[k] += row[k];
    std::size_t total = 0;
    for (const std::size_t count : counts)
        total += count;
    std::vector<BandShare> shares;
    for (std::size_t k = 0; k < counts.size(); ++k) {
        const auto cells = static_cast<double>(counts[k]);
        shares.push_back({bandLabel(table[k].value, table[k + 1].value), table[k].colour, counts[k],
                          total > 0 ? 100.0 * cells / static_cast<double>(total) : 0.0,
                          cells * grid.cellWidthX() * grid.cellWidthY()});
    }
    return shares;
}

} // namespace tessaran::grid
