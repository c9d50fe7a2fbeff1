#include "index/index_mapping.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "geometry/cell_coverage.h"
#include "geometry/polygon.h"
#include "index/cell_cut.h"
#include "index/open_areas.h"
#include "index/planar_parts.h"

#include <algorithm>

namespace tessaran::index {

namespace {

using base::Result;
using geometry::Box2;
using geometry::CellRange;
using geometry::PlanarRegion;
using geometry::Point2;
using geometry::Polygon;

constexpr int kRowsAtOnce = 1; // rows a thread takes

bool passes(double value, ValueFilter filter, double threshold) {
    switch (filter) {
    case ValueFilter::largerThan:
        return value > threshold;
    case ValueFilter::smallThan:
        return value < threshold;
    case ValueFilter::all:
        break;
    }
    return true;
}

// Whether another side of the outline meets this one elsewhere than at their common corner is left
// to the kernel; triangles cannot.
Result<PlanarRegion> simpleLoops(Polygon outline) {
    if (outline.size() < 3)
        return PlanarRegion{};
    return geometry::cleaned(geometry::regionOf(std::move(outline)));
}

int held(double at, int highest) {
    return static_cast<int>(std::clamp(std::floor(at), 0.0, static_cast<double>(highest)));
}

// The cells that the box meets; upper ends held at the lattice.
CellRange cellsOf(const Box2& box, int nX, int nY) {
    if (box.empty() || box.high.x < 0.0 || box.high.y < 0.0 || box.low.x > nX || box.low.y > nY)
        return {};
    return {held(box.low.x, nX), held(box.high.x + 1.0, nX), held(box.low.y, nY),
            held(box.high.y + 1.0, nY)};
}

// Calls visit(i, j, share) for every cell that the area covers a part of. Outer loops add, holes
// take away.
template <class Visit>
void forEachCovered(const PlanarRegion& area, const CellRange& range, const Visit& visit) {
    geometry::CellWalker walker;
    if (area.loops.size() == 1) {
        for (const geometry::CoverageRun& run : walker.coverage(area.loops[0], range))
            for (int i = run.columnBegin; i < run.columnEnd; ++i)
                visit(i, run.row, run.covered);
        return;
    }
    const auto rows = static_cast<std::size_t>(range.rowEnd - range.rowBegin);
    const auto columns = static_cast<std::size_t>(range.columnEnd - range.columnBegin);
    std::vector<double> shares(rows * columns, 0.0);
    for (const Polygon& loop : area.loops) {
        const double sign = geometry::signedArea(loop) < 0.0 ? -1.0 : 1.0;
        for (const geometry::CoverageRun& run : walker.coverage(loop, range)) {
            const auto row = static_cast<std::size_t>(run.row - range.rowBegin) * columns;
            for (int i = run.columnBegin; i < run.columnEnd; ++i)
                shares[row + static_cast<std::size_t>(i - range.columnBegin)] += sign * run.covered;
        }
    }
    std::size_t k = 0;
    for (int j = range.rowBegin; j < range.rowEnd; ++j)
        for (int i = range.columnBegin; i < range.columnEnd; ++i, ++k)
            if (shares[k] > 0.0)
                visit(i, j, shares[k]);
}

} // namespace

IndexMapping::IndexMapping(const grid::myGrid& indexGrid,
                           std::vector<grid::ColourBreak> colourTable)
    : grid_(indexGrid), frame_(indexGrid), colours_(std::move(colourTable)),
      labels_(indexGrid.nX(), indexGrid.nY()) {}

std::size_t IndexMapping::filterCells(ValueFilter filter, double threshold) {
    std::size_t withoutValue = 0;
    for (int j = 0; j < labels_.nY(); ++j) {
        for (int i = 0; i < labels_.nX(); ++i) {
            const double value = grid_.getValue(i, j);
            if (!base::hasValue(value))
                ++withoutValue;
            if (!base::hasValue(value) || !passes(value, filter, threshold))
                labels_.drop(i, j);
        }
    }
    return withoutValue;
}

Result<void> IndexMapping::addPillar(long identifier, std::span<const Point2> outline) {
    auto pillar = simpleLoops(frame_.toCells(geometry::withoutClosingVertex(outline)));
    if (!pillar)
        return pillar.error();
    const CellRange range = cellsOf(boxOf(*pillar), labels_.nX(), labels_.nY());
    const int number = static_cast<int>(pillars_.size());
    if (!range.empty())
        forEachCovered(*pillar, range,
                       [&](int i, int j, double covered) { markCell(i, j, covered, number); });
    pillars_.push_back(std::move(*pillar));
    identifiers_.push_back(identifier);
    return {};
}

// Covered wholly, a cell is dropped whatever the rounding of the share.
void IndexMapping::markCell(int i, int j, double covered, int number) {
    if (labels_.isDropped(i, j))
        return;
    if (covered >= 1.0 - geometry::kWholeCellTolerance)
        labels_.drop(i, j);
    else if (covered * frame_.cellArea() > base::kTolerance)
        labels_.addPillar(i, j, number);
}

int IndexMapping::colourOf(int i, int j) const {
    return grid::colourOfValue(colours_, grid_.getValue(i, j));
}

Result<PlanarRegion> IndexMapping::openPart(int i, int j) const {
    const double x = i;
    const double y = j;
    PlanarRegion cell =
        geometry::regionOf({{x, y}, {x + 1.0, y}, {x + 1.0, y + 1.0}, {x, y + 1.0}});
    if (!labels_.isCut(i, j))
        return cell;
    const std::vector<int> pillars = labels_.pillars(i, j);
    if (pillars.size() == 1)
        if (auto open = cellLessPillar(i, j, pillars_[static_cast<std::size_t>(pillars[0])]))
            return *std::move(open);
    const Box2 around = Box2{{x, y}, {x + 1.0, y + 1.0}}.enlarged(0.5);
    std::vector<PlanarRegion> cutting;
    for (const int pillar : pillars)
        cutting.push_back(partNear(pillars_[static_cast<std::size_t>(pillar)], around));
    auto open = geometry::subtract(cell, cutting);
    if (open && orientedArea(*open) * frame_.cellArea() <= base::kTolerance)
        return PlanarRegion{};
    return open;
}

PlanarRegion IndexMapping::toWorld(const PlanarRegion& cells) const {
    PlanarRegion world;
    world.loops.reserve(cells.loops.size());
    for (const Polygon& loop : cells.loops)
        world.loops.push_back(frame_.toWorld(loop));
    return world;
}

Result<std::vector<ColouredRegion>> IndexMapping::rowRegions(int j) const {
    std::vector<ColouredRegion> regions;
    for (int i = 0; i < labels_.nX(); ++i) {
        if (labels_.isDropped(i, j))
            continue;
        auto open = openPart(i, j);
        if (!open)
            return open.error();
        if (!open->empty())
            regions.push_back({colourOf(i, j), toWorld(*open)});
    }
    return regions;
}

Result<std::vector<ColouredRegion>> IndexMapping::cellRegions(int rowBegin, int rowEnd) const {
    std::vector<Result<std::vector<ColouredRegion>>> rows(
        static_cast<std::size_t>(std::max(0, rowEnd - rowBegin)), std::vector<ColouredRegion>{});
    base::parallelRanges(rowBegin, rowEnd, kRowsAtOnce, [&](int begin, int end) {
        for (int j = begin; j < end; ++j)
            rows[static_cast<std::size_t>(j - rowBegin)] = rowRegions(j);
    });
    std::vector<ColouredRegion> regions;
    for (auto& row : rows) {
        if (!row)
            return row.error();
        std::move(row->begin(), row->end(), std::back_inserter(regions));
    }
    return regions;
}

// One pillar that does not cover the cell wholly always leaves some of it.
Result<std::size_t> IndexMapping::countCellRegions(int rowBegin, int rowEnd) const {
    std::size_t count = 0;
    for (int j = rowBegin; j < rowEnd; ++j) {
        for (int i = 0; i < labels_.nX(); ++i) {
            if (labels_.isDropped(i, j))
                continue;
            if (labels_.isCut(i, j) && labels_.pillars(i, j).size() > 1) {
                const auto open = openPart(i, j);
                if (!open)
                    return open.error();
                if (open->empty())
                    continue;
            }
            ++count;
        }
    }
    return count;
}

Result<std::vector<ColouredRegion>> IndexMapping::combinedRegions() const {
    std::vector<std::int16_t> colours(static_cast<std::size_t>(labels_.nX()) *
                                      static_cast<std::size_t>(labels_.nY()));
    std::size_t k = 0;
    for (int j = 0; j < labels_.nY(); ++j)
        for (int i = 0; i < labels_.nX(); ++i, ++k)
            if (!labels_.isDropped(i, j))
                colours[k] = static_cast<std::int16_t>(colourOf(i, j));
    auto areas = openAreas({labels_.nX(), labels_.nY(), colours}, labels_, pillars_,
                           base::kTolerance / frame_.cellArea());
    if (!areas)
        return areas.error();
    std::vector<ColouredRegion> regions;
    for (const OpenArea& area : *areas)
        regions.push_back({area.label, toWorld(area.area)});
    return regions;
}

} // namespace tessaran::index
