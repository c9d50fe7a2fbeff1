#pragma once

// The cells whose centres lie within reach of curves, with their distances: what grids from linear
// features and from defects are made of. Distances are in plan and to the true curves; turned grids
// are as exact as others.

#include "base/parallel.h"
#include "base/progress.h"
#include "base/tolerance.h"
#include "geometry/curve.h"
#include "grid/cells_near.h"
#include "grid/my_grid.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>
#include <vector>

namespace tessaran::grid {

struct ReachingCurve {
    const geometry::Curve* curve = nullptr;
    double reach = 0.0; // drawing units; below 1e-10 only centres on the curve itself count
};

// A curve's segments in the grid's frame.
struct ReachingSegments {
    std::vector<NearSegment> segments;
    Box2 extents; // enlarged by the reach
    double reach = 0.0;
    double search = 0.0; // the reach, 1e-10 at least

    ReachingSegments(const ReachingCurve& curve, const GridFrame& frame);

    bool holds(double distance) const {
        return reach < base::kTolerance ? distance < base::kTolerance : distance <= reach;
    }
};

// The nearest segment's distance for the cells of one band of rows, one curve at a time.
class ReachBand {
  public:
    ReachBand(const GridFrame& frame, int rowFrom, int rowTo);

    // Calls store(distance, value) for each cell of the band within reach.
    template <class Store>
    void add(const ReachingSegments& curve, myGrid& grid, const Store& store) {
        const GridFrame::Range rows = frame_.rows(curve.extents.low.y, curve.extents.high.y);
        const int from = std::max(rows.from, from_);
        const int to = std::min(rows.to, to_);
        if (from >= to)
            return;
        for (const NearSegment& segment : curve.segments)
            forEachCellNear(segment, curve.search, frame_, from, to,
                            [this](int i, int j, double square) {
                                double& nearest = at(i, j);
                                nearest = std::min(nearest, square);
                            });
        const GridFrame::Range columns = frame_.columns(curve.extents.low.x, curve.extents.high.x);
        for (int j = from; j < to; ++j)
            for (int i = columns.from; i < columns.to; ++i)
                if (const double d = takeDistance(i, j); curve.holds(d))
                    store(d, grid.row(j)[static_cast<std::size_t>(i)]);
    }

  private:
    static constexpr double kFar = std::numeric_limits<double>::infinity();

    double& at(int i, int j) {
        return nearest_[static_cast<std::size_t>(j - from_) *
                            static_cast<std::size_t>(frame_.nX()) +
                        static_cast<std::size_t>(i)];
    }
    // And forgets it.
    double takeDistance(int i, int j) {
        double& nearest = at(i, j);
        if (nearest == kFar)
            return kFar;
        const double d = std::sqrt(nearest);
        nearest = kFar;
        return d;
    }

    const GridFrame& frame_;
    int from_;
    int to_;
    std::vector<double> nearest_; // squares
};

// The end of the curves from `first` on that are gone through before the next look at the user
// break: at least one, and about so many that a second is not exceeded.
std::size_t endOfBatch(std::span<const ReachingSegments> curves, std::size_t first,
                       const GridFrame& frame);

// Calls store(k, distance, value) for every curve k and every cell within its reach; `value` is the
// cell's, to be changed. For one cell the calls come in the order of the curves, so that sums do
// not depend on the number of threads: bands of rows share nothing. The progress runs over the
// curves, from 1 to their count. False when it was cancelled.
template <class Store>
bool forCellsWithin(std::span<const ReachingCurve> curves, myGrid& grid, base::Progress& progress,
                    const Store& store) {
    constexpr int kRowsOfABand = 32;
    const GridFrame frame(grid);
    std::vector<ReachingSegments> all;
    all.reserve(curves.size());
    for (const ReachingCurve& curve : curves)
        all.emplace_back(curve, frame);
    const int bands = (frame.nY() + kRowsOfABand - 1) / kRowsOfABand;
    for (std::size_t first = 0, last = 0; first < all.size(); first = last) {
        progress.setPosition(static_cast<long>(first) + 1);
        if (progress.cancelled())
            return false;
        last = endOfBatch(all, first, frame);
        base::parallelRanges(0, bands, 1, [&](int begin, int end) {
            for (int b = begin; b < end; ++b) {
                ReachBand band(frame, b * kRowsOfABand,
                               std::min(frame.nY(), (b + 1) * kRowsOfABand));
                for (std::size_t k = first; k < last; ++k)
                    if (!all[k].extents.empty())
                        band.add(all[k], grid, [&](double distance, double& value) {
                            store(k, distance, value);
                        });
            }
        });
    }
    progress.setPosition(static_cast<long>(all.size()));
    return true;
}

} // namespace tessaran::grid
