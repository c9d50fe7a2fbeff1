#include "factors/contour_lines.h"

#include "geometry/segment.h"

#include <algorithm>

namespace tessaran::factors {
namespace {

using geometry::Point3;

constexpr std::uint32_t kSegmentsOfRun = 8;

template <class Items>
geometry::BoxIndex indexOf(const Items& items) {
    std::vector<Box2> boxes;
    boxes.reserve(items.size());
    for (const auto& item : items)
        boxes.push_back(item.extents);
    return geometry::BoxIndex(boxes);
}

} // namespace

ContourLines::ContourLines(std::span<const geometry::Curve> contours, const GridFrame& frame) {
    for (const geometry::Curve& curve : contours)
        addLine(curve, frame);
    extentsIndex_ = indexOf(lines_);
    runIndex_ = indexOf(runs_);
}

// A closed line's first vertex stands at its end again; a lone vertex makes a segment of no length.
void ContourLines::addLine(const geometry::Curve& curve, const GridFrame& frame) {
    const auto first = static_cast<std::uint32_t>(vertices_.size());
    const auto add = [&](const geometry::CurveVertex& v) {
        const Point2 p = frame.fromWorld(v.at.plan());
        vertices_.push_back({p.x, p.y, v.at.z, v.bulge});
    };
    for (const geometry::CurveVertex& v : curve.vertices())
        add(v);
    if (!curve.empty() && (curve.closed() || curve.vertices().size() == 1))
        add(curve.vertices().front());
    lines_.push_back({static_cast<std::uint32_t>(runs_.size()), 0, {}});
    const auto end = static_cast<std::uint32_t>(vertices_.size());
    for (std::uint32_t k = first; k + 1 < end; k += kSegmentsOfRun)
        addRun(k, std::min(kSegmentsOfRun, end - 1 - k));
    lines_.back().endRun = static_cast<std::uint32_t>(runs_.size());
}

void ContourLines::addRun(std::uint32_t firstVertex, std::uint32_t segments) {
    Run run{firstVertex, segments, static_cast<std::uint32_t>(lines_.size() - 1), {}};
    for (std::uint32_t k = firstVertex; k < firstVertex + segments; ++k) {
        const Vertex& a = vertices_[k];
        const Vertex& b = vertices_[k + 1];
        run.extents.add(Point2{a.x, a.y});
        run.extents.add(Point2{b.x, b.y});
        if (a.bulge != 0.0)
            run.extents.add(geometry::Segment({a.x, a.y}, {b.x, b.y}, a.bulge).extents());
    }
    lines_.back().extents.add(run.extents);
    runs_.push_back(run);
}

inline Point3 ContourLines::closestOn(const Vertex& a, const Vertex& b, Point2 p) const {
    if (a.bulge != 0.0) {
        const geometry::Segment arc({a.x, a.y}, {b.x, b.y}, a.bulge);
        const double share = arc.closestShare(p);
        const Point2 at = arc.pointAt(share);
        return {at.x, at.y, a.z + share * (b.z - a.z)};
    }
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    const double square = dx * dx + dy * dy;
    const double t = (p.x - a.x) * dx + (p.y - a.y) * dy;
    if (!(t > 0.0))
        return {a.x, a.y, a.z};
    if (t >= square)
        return {b.x, b.y, b.z};
    const double share = t / square;
    return {a.x + share * dx, a.y + share * dy, a.z + share * (b.z - a.z)};
}

void ContourLines::nearestOfRun(std::size_t run, Point2 p, ContourPoint& best) const {
    const Run& r = runs_[run];
    for (std::uint32_t k = r.firstVertex; k < r.firstVertex + r.segments; ++k) {
        const Point3 at = closestOn(vertices_[k], vertices_[k + 1], p);
        const geometry::Vector2 away = at.plan() - p;
        const ContourPoint point{at, geometry::dot(away, away), r.line, k};
        if (point.before(best))
            best = point;
    }
}

ContourPoint ContourLines::closestOfLine(std::uint32_t line, Point2 p, std::uint32_t guess) const {
    const auto [first, end, extents] = lines_[line];
    ContourPoint best{{}, kFar, line, 0};
    if (first == end)
        return best;
    if (const std::uint32_t from = runs_[first].firstVertex; guess > from)
        nearestOfRun(std::min(first + (guess - from) / kSegmentsOfRun, end - 1), p, best);
    for (std::uint32_t run = first; run < end; ++run)
        if (geometry::distanceSquared(p, runs_[run].extents) <= best.squared * kBoundSlack)
            nearestOfRun(run, p, best);
    return best;
}

std::vector<double> valuesOfLabels(std::span<const geometry::Curve> contours,
                                   std::span<const ContourLabel> labels, const GridFrame& frame) {
    const ContourLines lines(contours, frame);
    std::vector<Point2> places;
    places.reserve(labels.size());
    for (const ContourLabel& label : labels)
        places.push_back(frame.fromWorld(label.at));
    std::vector<double> values;
    values.reserve(contours.size());
    for (std::uint32_t line = 0; line < lines.size(); ++line) {
        double least = kFar;
        std::size_t nearest = 0;
        for (std::size_t k = 0; k < places.size(); ++k) {
            if (!(geometry::distanceSquared(places[k], lines.extents(line)) < least))
                continue;
            if (const double squared = lines.closestOfLine(line, places[k]).squared;
                squared < least) {
                least = squared;
                nearest = k;
            }
        }
        values.push_back(labels[nearest].value);
    }
    return values;
}

} // namespace tessaran::factors
