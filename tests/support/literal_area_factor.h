#pragma once

// The area factor cell by cell, as it is defined: every cell of a boundary's box is clipped, or
// tested, by itself in drawing coordinates. The plain reference of tests and benchmarks.

#include "factors/area_factor.h"
#include "geometry/polygon.h"

namespace tessaran::test {

inline void literalAreaFactor(grid::myGrid& grid, std::span<const geometry::Polygon> boundaries,
                              const factors::AreaFactorOptions& options) {
    using geometry::Box2;
    using geometry::Point2;
    const bool byMiddle = options.algorithm == factors::AreaAlgorithm::middlePoint;
    const double cellArea = grid.cellWidthX() * grid.cellWidthY();
    const double threshold =
        byMiddle ? 0.5 : options.minimumAreaPercent * cellArea * 0.01 - 1e-9 * cellArea;
    const Point2 origin = grid.origin().plan();
    grid.fillValue(0.0);
    for (const geometry::Polygon& boundary : boundaries) {
        Box2 box;
        for (const Point2 p : boundary)
            box.add(rotated(p, origin, -grid.rotation()));
        const auto [i0, j0] = grid.pointToCellClamped(rotated(box.low, origin, grid.rotation()));
        const auto [i1, j1] = grid.pointToCellClamped(rotated(box.high, origin, grid.rotation()));
        if (i0 >= i1 || j0 >= j1)
            continue;
        for (int j = j0; j <= j1; ++j)
            for (int i = i0; i <= i1; ++i) {
                const double value = grid.getValue(i, j);
                if (value >= threshold)
                    continue;
                if (!byMiddle)
                    grid.setValue(
                        i, j,
                        value + geometry::intersectionArea(*grid.cellCorners(i, j), boundary));
                else if (geometry::pointInPolygon(grid.cellCenter(i, j)->plan(), boundary))
                    grid.setValue(i, j, 1.0);
            }
    }
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = 0; i < grid.nX(); ++i)
            grid.setValue(i, j,
                          grid.getValue(i, j) >= threshold ? options.insideFactor
                                                           : options.outsideFactor);
}

} // namespace tessaran::test
