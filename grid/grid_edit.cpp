#include "grid/grid_edit.h"

#include "base/tolerance.h"
#include "geometry/polygon.h"
#include "grid/cell_frame.h"

#include <algorithm>
#include <cmath>
#include <tuple>
#include <utility>

// All shapes are worked out in cell units, where a cell is a unit square, row by row.

namespace tessaran::grid {
namespace {

using geometry::Box2;
using geometry::CellRange;
using geometry::CellWalker;
using geometry::Polygon;
using Run = geometry::CellRun;

enum class Contact {
    inside, // runs through the inside of a cell
    touch,  // or has a point in common with its sides
};

struct Stretch { // cells [begin, end) along one axis
    int begin = 0;
    int end = 0;
};

// The cells along one axis that the stretch from `low` to `high` meets, held within [begin, end].
Stretch cellsBetween(double low, double high, Contact contact, int begin, int end) {
    const double first = contact == Contact::touch ? std::ceil(low) - 1.0 : std::floor(low);
    const double behind = contact == Contact::touch ? std::floor(high) + 1.0 : std::ceil(high);
    const auto held = [&](double at) {
        return static_cast<int>(
            std::clamp(at, static_cast<double>(begin), static_cast<double>(end)));
    };
    return {held(first), held(behind)};
}

int heldCell(double at, int count) {
    return static_cast<int>(std::clamp(std::floor(at), 0.0, count - 1.0));
}

// The cells between those around the lowest and the highest corner of the shape's extents.
CellRange cellsAround(const myGrid& grid, std::span<const Point2> shape) {
    const Box2 box = geometry::boxOf(shape);
    return {heldCell(box.low.x, grid.nX()), heldCell(box.high.x, grid.nX()) + 1,
            heldCell(box.low.y, grid.nY()), heldCell(box.high.y, grid.nY()) + 1};
}

double xAt(Point2 low, Point2 high, double y) {
    if (y <= low.y)
        return low.x;
    if (y >= high.y)
        return high.x;
    return CellFrame::onSide(low.x + (y - low.y) / (high.y - low.y) * (high.x - low.x));
}

void addSegment(CellRuns& runs, Point2 low, Point2 high, Contact contact, const CellRange& range) {
    if (low.y > high.y)
        std::swap(low, high);
    const Stretch rows = cellsBetween(low.y, high.y, contact, range.rowBegin, range.rowEnd);
    for (int row = rows.begin; row < rows.end; ++row) {
        const bool level = low.y == high.y; // exact: as drawn
        const double x0 = level ? low.x : xAt(low, high, row);
        const double x1 = level ? high.x : xAt(low, high, row + 1.0);
        const Stretch columns = cellsBetween(std::min(x0, x1), std::max(x0, x1), contact,
                                             range.columnBegin, range.columnEnd);
        if (columns.begin < columns.end)
            runs.push_back({row, columns.begin, columns.end});
    }
}

CellRuns alongChain(std::span<const Point2> chain, Contact contact, const CellRange& range) {
    CellRuns runs;
    for (std::size_t k = 1; k < chain.size(); ++k)
        addSegment(runs, chain[k - 1], chain[k], contact, range);
    return runs;
}

CellRuns alongOutline(std::span<const Point2> polygon, Contact contact, const CellRange& range) {
    CellRuns runs = alongChain(polygon, contact, range);
    if (!polygon.empty())
        addSegment(runs, polygon.back(), polygon.front(), contact, range);
    return runs;
}

// In order, runs that overlap or touch made one.
void tidy(CellRuns& runs) {
    std::ranges::sort(runs, {}, [](const Run& run) { return std::pair(run.row, run.columnBegin); });
    std::size_t kept = 0;
    for (const Run& run : runs) {
        Run* last = kept > 0 ? &runs[kept - 1] : nullptr;
        if (last != nullptr && last->row == run.row && run.columnBegin <= last->columnEnd)
            last->columnEnd = std::max(last->columnEnd, run.columnEnd);
        else
            runs[kept++] = run;
    }
    runs.resize(kept);
}

// What is left of tidy runs without other tidy runs.
CellRuns without(const CellRuns& runs, const CellRuns& others) {
    CellRuns left;
    std::size_t at = 0;
    for (Run run : runs) {
        const auto isBefore = [&](const Run& other) {
            return std::pair(other.row, other.columnEnd) <= std::pair(run.row, run.columnBegin);
        };
        while (at < others.size() && isBefore(others[at]))
            ++at;
        for (std::size_t k = at;
             k < others.size() && others[k].row == run.row && others[k].columnBegin < run.columnEnd;
             ++k) {
            if (run.columnBegin < others[k].columnBegin)
                left.push_back({run.row, run.columnBegin, others[k].columnBegin});
            run.columnBegin = std::min(others[k].columnEnd, run.columnEnd);
        }
        if (run.columnBegin < run.columnEnd)
            left.push_back(run);
    }
    return left;
}

CellRuns centresInside(std::span<const Point2> polygon, const CellRange& range) {
    CellWalker walker;
    const auto runs = walker.centresInside(polygon, range);
    return {runs.begin(), runs.end()};
}

// body(shape in cell units, cells to look at); nothing for grids and shapes that are none.
template <class Body>
CellRuns inCellUnits(const myGrid& grid, std::span<const Point2> shape, const Body& body) {
    if (!grid.isDefined() || shape.empty() || !geometry::isUsable(shape))
        return {};
    const Polygon cells = CellFrame(grid).toCells(shape);
    if (!geometry::isUsable(cells))
        return {};
    CellRuns runs = body(cells, cellsAround(grid, cells));
    tidy(runs);
    return runs;
}

} // namespace

// --- shapes -------------------------------------------------------------------------------------

CellRuns allCells(const myGrid& grid) {
    CellRuns runs;
    if (grid.isDefined())
        for (int j = 0; j < grid.nY(); ++j)
            runs.push_back({j, 0, grid.nX()});
    return runs;
}

// A cell that no side runs through lies wholly inside when its centre does.
CellRuns cellsInside(const myGrid& grid, std::span<const Point2> polygon) {
    return inCellUnits(grid, polygon, [](const Polygon& cells, const CellRange& range) {
        CellRuns inside = centresInside(cells, range);
        CellRuns cut = alongOutline(cells, Contact::inside, range);
        tidy(inside);
        tidy(cut);
        return without(inside, cut);
    });
}

// A cell that no side touches is inside when its centre is.
CellRuns cellsTouched(const myGrid& grid, std::span<const Point2> polygon) {
    return inCellUnits(grid, polygon, [](const Polygon& cells, const CellRange& range) {
        CellRuns runs = alongOutline(cells, Contact::touch, range);
        const CellRuns inside = centresInside(cells, range);
        runs.insert(runs.end(), inside.begin(), inside.end());
        return runs;
    });
}

CellRuns cellsCrossed(const myGrid& grid, std::span<const Point2> chain) {
    return inCellUnits(grid, chain, [](const Polygon& cells, const CellRange& range) {
        return alongChain(cells, Contact::inside, range);
    });
}

// --- selections ---------------------------------------------------------------------------------

CellSelection::CellSelection(int nX, int nY)
    : columns_(static_cast<std::size_t>(nX)), cells_(columns_ * static_cast<std::size_t>(nY)) {}

std::span<const std::uint8_t> CellSelection::row(int j) const {
    return std::span(cells_).subspan(static_cast<std::size_t>(j) * columns_, columns_);
}

bool CellSelection::has(CellIndex cell) const {
    const auto rows = static_cast<int>(columns_ > 0 ? cells_.size() / columns_ : 0);
    return cell.column >= 0 && cell.column < static_cast<int>(columns_) && cell.row >= 0 &&
           cell.row < rows && row(cell.row)[static_cast<std::size_t>(cell.column)] != 0;
}

std::size_t CellSelection::put(std::span<const Run> runs, std::uint8_t selected) {
    std::size_t changed = 0;
    for (const Run& run : runs) {
        const std::size_t begin = static_cast<std::size_t>(run.row) * columns_ +
                                  static_cast<std::size_t>(run.columnBegin);
        const auto length = static_cast<std::size_t>(run.columnEnd - run.columnBegin);
        const std::span<std::uint8_t> cells = std::span(cells_).subspan(begin, length);
        changed += length - static_cast<std::size_t>(std::ranges::count(cells, selected));
        std::ranges::fill(cells, selected);
    }
    size_ = selected != 0 ? size_ + changed : size_ - changed;
    return changed;
}

void CellSelection::clear() {
    std::ranges::fill(cells_, std::uint8_t{0});
    size_ = 0;
}

// --- values -------------------------------------------------------------------------------------

SelectedMean meanOfSelected(const myGrid& grid, const CellSelection& selection) {
    SelectedMean found;
    double sum = 0.0;
    for (int j = 0; j < grid.nY(); ++j) {
        const auto selected = selection.row(j);
        const auto values = grid.row(j);
        for (std::size_t i = 0; i < selected.size(); ++i)
            if (selected[i] != 0 && base::hasValue(values[i])) {
                sum += values[i];
                ++found.withValue;
            }
    }
    if (found.withValue > 0)
        found.mean = sum / static_cast<double>(found.withValue);
    return found;
}

void assignSelected(myGrid& grid, const CellSelection& selection, double value) {
    for (int j = 0; j < grid.nY(); ++j) {
        const auto selected = selection.row(j);
        const auto values = grid.row(j);
        for (std::size_t i = 0; i < selected.size(); ++i)
            values[i] = selected[i] != 0 ? value : values[i];
    }
}

} // namespace tessaran::grid
