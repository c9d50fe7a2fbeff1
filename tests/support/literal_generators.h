#pragma once

// Points, linear features and the horizontal stress as they are defined, every cell against every
// object of its box: the plain references of tests and benchmarks.

#include "factors/horizontal_stress.h"
#include "factors/linear_feature.h"
#include "factors/point_interpolation.h"
#include "geometry/curve.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::test {

// One cell's search, the whole list scanned at every radius; nothing when it finds no point.
inline std::optional<double> literalPointValue(const std::vector<geometry::Point3>& points,
                                               const factors::PointSearch& search, double cellWidth,
                                               geometry::Point2 c) {
    std::vector<std::size_t> list;
    double r = cellWidth;
    do {
        for (std::size_t k = 0; k < points.size(); ++k)
            if (geometry::distance(points[k].plan(), c) <= r)
                list.push_back(k);
        r = r + cellWidth;
    } while (static_cast<int>(list.size()) < search.minimumPoints && r < search.limit);
    if (list.empty())
        return std::nullopt;
    if (list.size() == 1)
        return points[list[0]].z;
    double sum = 0.0;
    double weights = 0.0;
    if (search.interpolation == factors::Interpolation::inverseDistance) {
        for (const std::size_t k : list) {
            const double d = geometry::distance(points[k].plan(), c);
            if (d < 1e-10)
                break;
            weights += 1.0 / d;
            sum += 1.0 / d * points[k].z;
        }
        return sum / weights;
    }
    for (const std::size_t k : list)
        sum += points[k].z;
    return sum / static_cast<double>(list.size());
}

// Calls visit(i, j, centre) for the cells of the box, of a grid that is not turned.
inline void forEachCellOf(const geometry::Box2& box, const grid::myGrid& grid, const auto& visit) {
    const auto [i0, j0] = grid.pointToCellClamped(box.low);
    const auto [i1, j1] = grid.pointToCellClamped(box.high);
    for (int i = i0; i <= i1; ++i)
        for (int j = j0; j <= j1; ++j)
            visit(i, j, grid.cellCenter(i, j)->plan());
}

inline void literalLinearFeatures(std::span<const geometry::Curve> features,
                                  const factors::LinearInfluence& influence, grid::myGrid& grid) {
    grid.fillValue(0.0);
    for (const geometry::Curve& feature : features)
        forEachCellOf(feature.extents().enlarged(influence.distance), grid,
                      [&](int i, int j, geometry::Point2 centre) {
                          const double d = feature.closestTo(centre)->distance;
                          if (d > influence.distance)
                              return;
                          const double f = (influence.distance - d) * 100.0 / influence.distance;
                          const double value = grid.getValue(i, j);
                          grid.setValue(i, j,
                                        influence.accumulate ? std::min(100.0, f + value)
                                                             : std::max(f, value));
                      });
}

inline void literalHorizontalStress(std::span<const std::vector<geometry::Point2>> lines,
                                    const factors::HorizontalStress& stress, grid::myGrid& grid) {
    grid.fillValue(0.0);
    const double half = 0.5 * stress.entryWidth;
    for (const std::vector<geometry::Point2>& line : lines)
        for (std::size_t k = 1; k < line.size(); ++k) {
            const geometry::Point2 a = line[k - 1];
            const geometry::Point2 b = line[k];
            const double rating = factors::horizontalStressRating(a, b, stress.orientation);
            const geometry::Curve segment = geometry::Curve::line({a.x, a.y, 0.0}, {b.x, b.y, 0.0});
            forEachCellOf(
                segment.extents().enlarged(half), grid, [&](int i, int j, geometry::Point2 centre) {
                    if (segment.closestTo(centre)->distance <= half && grid.getValue(i, j) < rating)
                        grid.setValue(i, j, rating);
                });
        }
}

} // namespace tessaran::test
