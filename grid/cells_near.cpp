#include "grid/cells_near.h"

#include <algorithm>
#include <cmath>

namespace tessaran::grid {
namespace {

// Ranges are widened by this share of a cell, so that rounding drops no cell at the very distance.
constexpr double kSlack = 1e-6;

} // namespace

GridFrame::GridFrame(const myGrid& grid)
    : origin_{grid.origin().x, grid.origin().y}, cosine_(std::cos(grid.rotation())),
      sine_(std::sin(grid.rotation())), width_(grid.cellWidthX()), height_(grid.cellWidthY()),
      nX_(grid.nX()), nY_(grid.nY()) {}

Point2 GridFrame::fromWorld(Point2 p) const {
    const Point2 d = p - origin_;
    return {cosine_ * d.x + sine_ * d.y, -sine_ * d.x + cosine_ * d.y};
}

GridFrame::Range GridFrame::range(double low, double high, double size, int count) {
    // Held in floating point first: a distance of 1e11 must not overflow an index.
    const double last = count;
    const double from = std::clamp(std::ceil(low / size - 0.5 - kSlack), 0.0, last);
    const double to = std::clamp(std::floor(high / size - 0.5 + kSlack) + 1.0, 0.0, last);
    return {static_cast<int>(from), std::max(static_cast<int>(from), static_cast<int>(to))};
}

NearSegment::NearSegment(Point2 start, Point2 end, double bulge)
    : start_(start), along_(end - start), end_(end) {
    square_ = geometry::dot(along_, along_);
    const geometry::Curve curve({{{start.x, start.y, 0.0}, bulge}, {{end.x, end.y, 0.0}, 0.0}},
                                false);
    extents_ = curve.extents();
    if (extents_.empty()) {
        extents_.add(start);
        extents_.add(end);
    }
    if (bulge == 0.0 || square_ == 0.0)
        return;
    // The bulge is the tangent of a quarter of the included angle: with the half chord c the centre
    // lies c (1 - b^2) / (2 b) to the left of the chord's middle.
    const Point2 left{-along_.y, along_.x};
    centre_ = start + 0.5 * along_ + ((1.0 - bulge * bulge) / (4.0 * bulge)) * left;
    radius_ = geometry::distance(centre_, start);
    leftOfChord_ = bulge < 0.0;
}

double NearSegment::fromChord(Point2 p) const {
    const Point2 d = p - start_;
    const double t = geometry::dot(d, along_);
    if (t <= 0.0 || square_ == 0.0)
        return geometry::dot(d, d);
    if (t >= square_) {
        const Point2 e = p - end_;
        return geometry::dot(e, e);
    }
    // Exact along the axes, where a foot point would be rounded.
    const double area = geometry::cross(along_, d);
    return area * area / square_;
}

double NearSegment::fromArc(Point2 p) const {
    const Point2 d = p - centre_;
    const double fromCentre = geometry::length(d);
    // The point of the circle in p's direction is on the arc when it lies on the arc's side of the
    // chord; for a point at the centre every point of the arc is as near.
    const Point2 toward = fromCentre > 0.0 ? centre_ + (radius_ / fromCentre) * d : start_;
    const double side = geometry::cross(along_, toward - start_);
    if (leftOfChord_ ? side >= 0.0 : side <= 0.0) {
        const double gap = fromCentre - radius_;
        return gap * gap;
    }
    const Point2 a = p - start_;
    const Point2 b = p - end_;
    return std::min(geometry::dot(a, a), geometry::dot(b, b));
}

NearSegment::Interval NearSegment::reach(double y, double distance) const {
    Interval out{extents_.low.x - distance, extents_.high.x + distance};
    if (radius_ != 0.0)
        return out;
    // A straight segment reaches, at height y, as far as its part within `distance` of y in height.
    if (along_.y == 0.0)
        return out;
    double t0 = (y - distance - start_.y) / along_.y;
    double t1 = (y + distance - start_.y) / along_.y;
    if (t0 > t1)
        std::swap(t0, t1);
    t0 = std::max(t0, 0.0);
    t1 = std::min(t1, 1.0);
    if (t0 > t1)
        return {};
    const double x0 = start_.x + t0 * along_.x;
    const double x1 = start_.x + t1 * along_.x;
    return {std::min(x0, x1) - distance, std::max(x0, x1) + distance};
}

std::vector<NearSegment> segmentsOf(const geometry::Curve& curve, const GridFrame& frame) {
    std::vector<NearSegment> out;
    if (curve.vertices().size() == 1) {
        const Point2 p = frame.fromWorld(curve.vertices().front().at.plan());
        out.emplace_back(p, p);
    }
    for (std::size_t k = 0; k < curve.segmentCount(); ++k)
        out.emplace_back(frame.fromWorld(curve.segmentStart(k).at.plan()),
                         frame.fromWorld(curve.segmentEnd(k).at.plan()),
                         curve.segmentStart(k).bulge);
    return out;
}

} // namespace tessaran::grid
