#pragma once

// The grid's own frame: cell (i, j) is the unit square from (i, j) to (i + 1, j + 1), whatever the
// grid's origin, rotation and cell widths. Cell walks and overlays work in it, since its cell sides
// are whole numbers and its coordinates small, for plans with coordinates in the millions too.

#include "base/tolerance.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <cmath>
#include <span>

namespace tessaran::grid {

class CellFrame {
  public:
    // The grid must be defined.
    explicit CellFrame(const myGrid& grid)
        : origin_(grid.origin().plan()), xStep_(grid.xStep().plan()), yStep_(grid.yStep().plan()),
          alongX_((1.0 / geometry::dot(xStep_, xStep_)) * xStep_),
          alongY_((1.0 / geometry::dot(yStep_, yStep_)) * yStep_),
          cellArea_(grid.cellWidthX() * grid.cellWidthY()) {}

    double cellArea() const { return cellArea_; } // square drawing units

    Point2 toWorld(Point2 cells) const { return origin_ + (cells.x * xStep_ + cells.y * yStep_); }

    // Coordinates within 1e-9 of a cell side are put on it, so that outlines drawn along cell sides
    // lie on them in spite of the rounding of world coordinates.
    Point2 toCells(Point2 world) const {
        const geometry::Vector2 d = world - origin_;
        return {onSide(geometry::dot(d, alongX_)), onSide(geometry::dot(d, alongY_))};
    }

    geometry::Polygon toCells(std::span<const Point2> world) const {
        geometry::Polygon cells;
        cells.reserve(world.size());
        for (const Point2 p : world)
            cells.push_back(toCells(p));
        return cells;
    }

    geometry::Polygon toWorld(std::span<const Point2> cells) const {
        geometry::Polygon world;
        world.reserve(cells.size());
        for (const Point2 p : cells)
            world.push_back(toWorld(p));
        return world;
    }

    // A coordinate in cell units, put on the cell side that it is closer than 1e-9 to.
    static double onSide(double at) {
        const double side = std::round(at);
        return std::abs(at - side) <= kOnSide ? side : at;
    }

  private:
    static constexpr double kOnSide = 1e-9; // cell widths

    Point2 origin_;
    geometry::Vector2 xStep_;
    geometry::Vector2 yStep_;
    geometry::Vector2 alongX_; // world vector to cell widths along X
    geometry::Vector2 alongY_;
    double cellArea_;
};

} // namespace tessaran::grid
