#include "factors/polygon_checks.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "geometry/box_index.h"
#include "geometry/polygon.h"
#include "geometry/region.h"

#include <algorithm>
#include <atomic>
#include <cmath>
#include <limits>
#include <map>

namespace tessaran::factors {
namespace {

using geometry::Box2;
using geometry::Curve;
using geometry::Point2;
using geometry::Polygon;

constexpr int kPolygonsOfABatch = 256;

struct Outline {
    Polygon polygon;
    Box2 box;
    double area = 0.0;
    double length = 0.0;
    bool convex = false;
};

Outline outlineOf(const Curve& curve) {
    Outline out;
    out.polygon = curve.flattenedByShare(base::kArcSag);
    out.box = geometry::boxOf(out.polygon);
    out.area = geometry::area(out.polygon);
    out.length = curve.length();
    out.convex = geometry::isConvex(out.polygon);
    return out;
}

// What the rounding of the coordinates may make out along the outlines, 1e-10 at least.
double areaTolerance(const Outline& a, const Outline& b) {
    Box2 box = a.box;
    box.add(b.box);
    const double size = std::max(
        {std::abs(box.low.x), std::abs(box.low.y), std::abs(box.high.x), std::abs(box.high.y)});
    const double rounding =
        2.0 * std::numeric_limits<double>::epsilon() * size * std::min(a.length, b.length);
    return std::max(base::kTolerance, rounding);
}

Polygon movedTo(Point2 origin, const Polygon& polygon) {
    Polygon out;
    out.reserve(polygon.size());
    for (const Point2 p : polygon)
        out.push_back(p - origin);
    return out;
}

double commonArea(const Outline& a, const Outline& b) {
    const Polygon first = movedTo(a.box.low, a.polygon);
    const Polygon second = movedTo(a.box.low, b.polygon);
    if (a.convex && b.convex)
        return geometry::intersectionArea(first, second);
    return geometry::overlapArea(first, second);
}

// By the even-odd rule where the outline crosses itself.
double enclosedArea(const Outline& a) {
    return a.convex ? a.area : commonArea(a, a);
}

// Whether the boxes have so little in common that the outlines cannot have more.
bool boxesOnlyTouch(const Outline& a, const Outline& b, double tolerance) {
    const double width = std::min(a.box.high.x, b.box.high.x) - std::max(a.box.low.x, b.box.low.x);
    const double height = std::min(a.box.high.y, b.box.high.y) - std::max(a.box.low.y, b.box.low.y);
    return width <= 0.0 || height <= 0.0 || width * height <= tolerance;
}

bool overlap(const Outline& a, const Outline& b) {
    const double tolerance = areaTolerance(a, b);
    return !boxesOnlyTouch(a, b, tolerance) && commonArea(a, b) > tolerance;
}

bool equal(const Outline& a, const Outline& b) {
    const double tolerance = areaTolerance(a, b);
    if (std::abs(a.area - b.area) > tolerance || boxesOnlyTouch(a, b, tolerance))
        return false;
    const double common = commonArea(a, b);
    return common > 0.0 && std::abs(enclosedArea(a) - common) <= tolerance;
}

// --- copies -------------------------------------------------------------------------------------

using Corner = std::array<double, 3>; // x, y, bulge of the segment that follows

std::vector<Corner> cornersOf(const Curve& curve) {
    std::vector<Corner> corners;
    for (const geometry::CurveVertex& v : curve.vertices()) // + 0.0: no negative zeros
        corners.push_back({v.at.x + 0.0, v.at.y + 0.0, v.bulge + 0.0});
    return corners;
}

// Where the least of all rotations of the ring begins, in linear time (Booth, K. S. (1980),
// Lexicographically least circular substrings, Inf. Process. Lett. 10, 240-242; in the form with
// two candidates).
std::size_t leastRotation(const std::vector<Corner>& ring) {
    const std::size_t n = ring.size();
    std::size_t i = 0;
    std::size_t j = 1;
    std::size_t same = 0;
    while (i < n && j < n && same < n) {
        const Corner& a = ring[(i + same) % n];
        const Corner& b = ring[(j + same) % n];
        if (a == b) {
            ++same;
            continue;
        }
        std::size_t& worse = b < a ? i : j;
        worse += same + 1;
        same = 0;
        if (i == j)
            ++j;
    }
    return std::min(i, j);
}

std::vector<Corner> leastForm(const Curve& curve) {
    std::vector<Corner> ring = cornersOf(curve);
    std::rotate(ring.begin(), ring.begin() + static_cast<std::ptrdiff_t>(leastRotation(ring)),
                ring.end());
    return ring;
}

// The same for an outline in either direction and from any start.
std::vector<Corner> canonicalForm(const Curve& curve) {
    if (curve.empty())
        return {};
    return std::min(leastForm(curve), leastForm(curve.reversed()));
}

// For each curve the first one that it is a copy of: itself where there is none.
std::vector<std::size_t> firstCopies(std::span<const Curve> closed) {
    std::map<std::vector<Corner>, std::size_t> known;
    std::vector<std::size_t> first(closed.size());
    for (std::size_t k = 0; k < closed.size(); ++k)
        first[k] = known.try_emplace(canonicalForm(closed[k]), k).first->second;
    return first;
}

// --- pairs --------------------------------------------------------------------------------------

class PolygonIndex {
  public:
    explicit PolygonIndex(std::span<const Curve> closed) {
        std::vector<Box2> boxes;
        for (const Curve& curve : closed) {
            outlines_.push_back(outlineOf(curve));
            boxes.push_back(outlines_.back().box);
        }
        index_ = geometry::BoxIndex(boxes);
    }

    const Outline& operator[](std::size_t k) const { return outlines_[k]; }

    // Calls visit(later) for the polygons after k whose boxes meet its own.
    template <class Visit>
    void forLater(std::size_t k, Visit&& visit) const {
        index_.forEach(outlines_[k].box, [&](std::size_t other) {
            if (other > k)
                visit(other);
        });
    }

  private:
    std::vector<Outline> outlines_;
    geometry::BoxIndex index_;
};

// Calls work(k) for all polygons on all cores; false when it was cancelled.
template <class Work>
bool forAllPolygons(std::size_t count, base::Progress& progress, const Work& work) {
    const int all = static_cast<int>(count);
    for (int first = 0; first < all; first += kPolygonsOfABatch) {
        progress.setPosition(first);
        if (progress.cancelled())
            return false;
        base::parallelRanges(first, std::min(all, first + kPolygonsOfABatch), 1,
                             [&](int begin, int end) {
                                 for (int k = begin; k < end; ++k)
                                     work(static_cast<std::size_t>(k));
                             });
    }
    progress.setPosition(all);
    return true;
}

} // namespace

std::optional<std::vector<std::size_t>> duplicatePolygons(std::span<const Curve> closed,
                                                          base::Progress& progress) {
    const std::vector<std::size_t> first = firstCopies(closed);
    const PolygonIndex polygons(closed);
    std::vector<std::vector<std::size_t>> equalLater(closed.size());
    const bool done = forAllPolygons(closed.size(), progress, [&](std::size_t k) {
        if (first[k] == k)
            polygons.forLater(k, [&](std::size_t later) {
                if (first[later] == later && equal(polygons[k], polygons[later]))
                    equalLater[k].push_back(later);
            });
    });
    if (!done)
        return std::nullopt;
    std::vector<bool> duplicate(closed.size(), false);
    for (std::size_t k = 0; k < closed.size(); ++k) {
        if (first[k] != k)
            duplicate[k] = enclosedArea(polygons[k]) > 0.0;
        else if (!duplicate[k])
            for (const std::size_t later : equalLater[k])
                duplicate[later] = true;
    }
    std::vector<std::size_t> found;
    for (std::size_t k = 0; k < closed.size(); ++k)
        if (duplicate[k])
            found.push_back(k);
    return found;
}

std::optional<std::vector<std::size_t>> overlappingPolygons(std::span<const Curve> closed,
                                                            base::Progress& progress) {
    const PolygonIndex polygons(closed);
    std::vector<std::atomic<bool>> overlapped(closed.size());
    const auto has = [&](std::size_t k) { return overlapped[k].load(std::memory_order_relaxed); };
    const bool done = forAllPolygons(closed.size(), progress, [&](std::size_t k) {
        polygons.forLater(k, [&](std::size_t later) {
            if ((has(k) && has(later)) || !overlap(polygons[k], polygons[later]))
                return;
            overlapped[k].store(true, std::memory_order_relaxed);
            overlapped[later].store(true, std::memory_order_relaxed);
        });
    });
    if (!done)
        return std::nullopt;
    std::vector<std::size_t> found;
    for (std::size_t k = 0; k < closed.size(); ++k)
        if (has(k))
            found.push_back(k);
    return found;
}

} // namespace tessaran::factors
