#pragma once

// A curve of the plan: a chain of straight and arc segments, open or closed. Lengths, distances and
// closest points are measured in plan (along the Z axis); heights go linearly with the plan length
// from vertex to vertex.

#include "geometry/point.h"

#include <cstddef>
#include <optional>
#include <span>
#include <vector>

namespace tessaran::geometry {

// The segment from this vertex to the next is an arc when `bulge` (the tangent of a quarter of its
// included angle, positive counter-clockwise) is not 0.
struct CurveVertex {
    Point3 at;
    double bulge = 0.0;
};

class Curve {
  public:
    // Where a curve comes closest to a point.
    struct Closest {
        Point3 point;
        double distance = 0.0; // in plan
        double along = 0.0;    // plan length from the start
        std::size_t segment = 0;
    };

    Curve() = default;
    // Vertices with coordinates that are no usable numbers are left out, and so is a repeated
    // vertex; a last vertex equal to the first of a closed curve too.
    Curve(const std::vector<CurveVertex>& vertices, bool closed);

    static Curve line(Point3 start, Point3 end);
    static Curve circle(Point3 centre, double radius); // counter-clockwise from angle 0
    // Counter-clockwise from start to end angle, radians; equal angles make the whole circle.
    static Curve arc(Point3 centre, double radius, double startAngle, double endAngle);

    const std::vector<CurveVertex>& vertices() const { return vertices_; }
    bool closed() const { return closed_; }
    bool empty() const { return vertices_.empty(); }
    std::size_t segmentCount() const;
    const CurveVertex& segmentStart(std::size_t segment) const { return vertices_[segment]; }
    const CurveVertex& segmentEnd(std::size_t segment) const;

    double length() const;
    // The point at that plan length from the start, held at the ends.
    Point3 pointAt(double along) const;
    // Nothing for an empty curve or a point that is no number.
    std::optional<Closest> closestTo(Point2 point) const;
    Box2 extents() const; // with the bows of the arcs

    // Chords no farther than `sag` from their arcs; a closed curve's first point is not repeated.
    std::vector<Point3> flattened(double sag) const;
    Polygon flattenedPlan(double sag) const;
    // In plan, each arc with chords no farther from it than this share of its radius.
    Polygon flattenedByShare(double shareOfRadius) const;

    Curve reversed() const;

  private:
    std::vector<CurveVertex> vertices_;
    std::vector<double> lengthBefore_; // plan length from the start to each segment, and the total
    bool closed_ = false;

    double lengthOfSegment(std::size_t segment) const;
};

// Points where two curves meet in plan, each once, in the order along the first. Stretches where
// they run along each other give their ends.
std::vector<Point2> crossings(const Curve& a, const Curve& b);

// Whether any part of the curve (or, when closed, of its inside) lies in the convex area.
bool meets(const Curve& curve, std::span<const Point2> convexArea);

} // namespace tessaran::geometry
