#pragma once

// Contour lines in a grid's own frame, with indexes over whole lines and over short runs of them.

#include "geometry/box_index.h"
#include "geometry/curve.h"
#include "geometry/point.h"
#include "grid/cells_near.h"

#include <cstdint>
#include <limits>
#include <span>
#include <vector>

namespace tessaran::factors {

using geometry::Box2;
using geometry::Point2;
using grid::GridFrame;

inline constexpr double kFar = std::numeric_limits<double>::infinity();
// On squared distances, as extents may be rounded away from what they hold.
inline constexpr double kBoundSlack = 1.0 + 1e-12;

// Where a line comes closest to a place.
struct ContourPoint {
    geometry::Point3 at;
    double squared = 0.0; // of the plan distance
    std::uint32_t line = 0;
    std::uint32_t segment = 0; // counted over all lines

    // By distance, equally near ones in the lines' order.
    bool before(const ContourPoint& other) const {
        return squared != other.squared ? squared < other.squared : segment < other.segment;
    }
};

class ContourLines {
  public:
    ContourLines(std::span<const geometry::Curve> contours, const GridFrame& frame);

    std::size_t size() const { return lines_.size(); }
    const Box2& extents(std::size_t line) const { return lines_[line].extents; }
    const geometry::BoxIndex& extentsIndex() const { return extentsIndex_; }

    // Runs of a few segments of one line each.
    const geometry::BoxIndex& runIndex() const { return runIndex_; }
    const Box2& runExtents(std::size_t run) const { return runs_[run].extents; }
    std::uint32_t lineOfRun(std::size_t run) const { return runs_[run].line; }
    // Makes `best` the run's closest point to p where that is nearer.
    void nearestOfRun(std::size_t run, Point2 p, ContourPoint& best) const;
    // The whole line's closest point; soonest found where it is near the `guess`, a segment of any
    // line.
    ContourPoint closestOfLine(std::uint32_t line, Point2 p, std::uint32_t guess = 0) const;

  private:
    struct Line {
        std::uint32_t firstRun = 0;
        std::uint32_t endRun = 0;
        Box2 extents;
    };
    struct Run {
        std::uint32_t firstVertex = 0;
        std::uint32_t segments = 0;
        std::uint32_t line = 0;
        Box2 extents;
    };
    struct Vertex {
        double x, y, z, bulge;
    };

    void addLine(const geometry::Curve& curve, const GridFrame& frame);
    void addRun(std::uint32_t firstVertex, std::uint32_t segments);
    geometry::Point3 closestOn(const Vertex& a, const Vertex& b, Point2 p) const;

    std::vector<Vertex> vertices_;
    std::vector<Run> runs_;
    std::vector<Line> lines_;
    geometry::BoxIndex extentsIndex_;
    geometry::BoxIndex runIndex_;
};

// A number that stands beside a contour line.
struct ContourLabel {
    Point2 at; // world
    double value = 0.0;
};

// The value of each line's nearest label (equally near ones: the first); there is at least one.
std::vector<double> valuesOfLabels(std::span<const geometry::Curve> contours,
                                   std::span<const ContourLabel> labels, const GridFrame& frame);

} // namespace tessaran::factors
