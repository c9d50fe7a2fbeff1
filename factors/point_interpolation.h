#pragma once

// A factor grid from scattered points that carry a value as their height.
//
// Each cell searches in circles of one cell width, two, three ... until it has enough points or the
// limit is reached. A point found at one radius is found again at every larger one, and counts each
// time: that weights near points more, and is meant.

#include "base/progress.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <functional>
#include <vector>

namespace tessaran::factors {

enum class Interpolation { simpleAverage, inverseDistance };

struct PointSearch {
    Interpolation interpolation = Interpolation::simpleAverage;
    int minimumPoints = 0; // entries, repetitions counted, at which a cell's search ends
    double limit = 0.0;    // R, drawing units; one circle is searched in any case
};

struct PointGridResult {
    bool completed = false; // false: cancelled, the grid is partly filled
    long withoutNumber = 0; // of the nX x nY cells, those whose inverse-distance mean is 0/0
};

// Who looks on while a grid is filled; called by the calling thread.
struct PointGridWatch {
    // A cell that finds no point (column, row from 0); columns outer, rows inner.
    std::function<void(int, int)> noPoint;
    // Columns [from, to) of the grid are filled.
    std::function<void(int, int)> columnsDone;
};

// Fills the grid's cells, and the extra column and row, from the points in their given order. A
// cell that finds no point keeps its value. The progress runs over nX * nY.
PointGridResult gridPoints(const std::vector<geometry::Point3>& points, const PointSearch& search,
                           grid::myGrid& grid, const PointGridWatch& watch,
                           base::Progress& progress);

} // namespace tessaran::factors
