#pragma once

// Which cells of a grid have their centres within a distance of a segment, row by row: what the
// grids from lines share. Everything is counted in the grid's own frame,
// so turned grids are as exact as others.

#include "geometry/curve.h"
#include "geometry/point.h"
#include "grid/my_grid.h"

#include <vector>

namespace tessaran::grid {

using geometry::Box2;
using geometry::Point2;

// The grid's own frame: the origin at (0, 0), columns along X, rows along Y, drawing units.
class GridFrame {
  public:
    explicit GridFrame(const myGrid& grid);

    Point2 fromWorld(Point2 p) const;
    Point2 centre(int i, int j) const { return {(i + 0.5) * width_, (j + 0.5) * height_}; }
    double centreX(int i) const { return (i + 0.5) * width_; }
    double centreY(int j) const { return (j + 0.5) * height_; }

    // Columns or rows [from, to) whose centres lie in [low, high], held within the grid.
    struct Range {
        int from = 0;
        int to = 0;
    };
    Range columns(double low, double high) const { return range(low, high, width_, nX_); }
    Range rows(double low, double high) const { return range(low, high, height_, nY_); }

    int nX() const { return nX_; }
    int nY() const { return nY_; }

  private:
    static Range range(double low, double high, double size, int count);

    Point2 origin_;
    double cosine_;
    double sine_;
    double width_;
    double height_;
    int nX_;
    int nY_;
};

// A straight or arc segment in the grid's frame, ready for many distances.
class NearSegment {
  public:
    NearSegment(Point2 start, Point2 end, double bulge = 0.0);

    const Box2& extents() const { return extents_; }
    // The square of the plan distance to the closest point.
    double distanceSquared(Point2 p) const { return radius_ == 0.0 ? fromChord(p) : fromArc(p); }
    // An interval of x that holds all points of height y within `distance`; empty (high < low) when
    // there are none.
    struct Interval {
        double low = 1.0;
        double high = 0.0;
    };
    Interval reach(double y, double distance) const;

  private:
    double fromChord(Point2 p) const;
    double fromArc(Point2 p) const;

    Point2 start_;
    Point2 along_; // end - start
    Point2 end_;
    double square_;            // of the chord's length
    Point2 centre_;            // arcs
    double radius_ = 0.0;      // arcs; 0 for straight segments
    bool leftOfChord_ = false; // whether the arc bows to the left of start -> end
    Box2 extents_;
};

// A curve's segments in the grid's frame; a lone vertex gives one segment without length.
std::vector<NearSegment> segmentsOf(const geometry::Curve& curve, const GridFrame& frame);

// Calls visit(i, j, distanceSquared) for every cell of rows [rowFrom, rowTo) that may lie within
// `distance` of the segment; cells a little farther may be visited too.
template <class Visit>
void forEachCellNear(const NearSegment& segment, double distance, const GridFrame& frame,
                     int rowFrom, int rowTo, Visit&& visit) {
    const GridFrame::Range rows =
        frame.rows(segment.extents().low.y - distance, segment.extents().high.y + distance);
    for (int j = std::max(rows.from, rowFrom); j < std::min(rows.to, rowTo); ++j) {
        const double y = frame.centreY(j);
        const NearSegment::Interval reach = segment.reach(y, distance);
        if (reach.high < reach.low)
            continue;
        const GridFrame::Range columns = frame.columns(reach.low, reach.high);
        for (int i = columns.from; i < columns.to; ++i)
            visit(i, j, segment.distanceSquared({frame.centreX(i), y}));
    }
}

} // namespace tessaran::grid
