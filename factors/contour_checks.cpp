#include "factors/contour_checks.h"

#include "base/parallel.h"
#include "base/tolerance.h"
#include "geometry/box_index.h"
#include "geometry/segment.h"

#include <algorithm>
#include <atomic>
#include <cmath>

namespace tessaran::factors {
namespace {

using geometry::Box2;
using geometry::Curve;
using geometry::Point2;
using geometry::Segment;
using geometry::Vector2;

constexpr std::size_t kSegmentsOfARun = 8;
constexpr int kContoursOfABatch = 256;

// Some neighbouring segments of one contour within a rectangle along their chord. Between
// neighbouring contours the boxes of slanted runs overlap again and again; the rectangles do not.
struct Run {
    std::size_t contour;
    std::size_t from; // segments [from, to)
    std::size_t to;
    bool straight = true; // no arcs, so that the rectangle holds all of it
    Point2 centre{};
    Vector2 axis{1.0, 0.0};
    double halfLength = 0.0;
    double halfWidth = 0.0;
};

Vector2 leftOf(Vector2 v) {
    return {-v.y, v.x};
}

void layRectangle(Run& run, const Curve& curve) {
    const Point2 start = curve.segmentStart(run.from).at.plan();
    const Vector2 chord = curve.segmentEnd(run.to - 1).at.plan() - start;
    if (const double size = length(chord); size > 0.0)
        run.axis = (1.0 / size) * chord;
    Box2 own; // along the chord and beside it
    own.add(Point2{0.0, 0.0});
    for (std::size_t k = run.from; k < run.to; ++k) {
        const Vector2 d = curve.segmentEnd(k).at.plan() - start;
        own.add(Point2{dot(d, run.axis), dot(d, leftOf(run.axis))});
    }
    const Point2 middle = own.centre();
    run.centre = start + middle.x * run.axis + middle.y * leftOf(run.axis);
    run.halfLength = 0.5 * own.width();
    run.halfWidth = 0.5 * own.height();
}

Run runOf(const Curve& curve, std::size_t contour, std::size_t from, std::size_t to) {
    Run run{contour, from, to};
    for (std::size_t k = from; k < to; ++k)
        run.straight = run.straight && curve.segmentStart(k).bulge == 0.0;
    layRectangle(run, curve);
    return run;
}

// Whether the rectangle of b lies beside that of a, more than the gap off its long sides.
bool liesBeside(const Run& a, const Run& b, double gap) {
    const Vector2 across = leftOf(a.axis);
    const double reach = std::abs(dot(b.axis, across)) * b.halfLength +
                         std::abs(dot(leftOf(b.axis), across)) * b.halfWidth;
    return std::abs(dot(b.centre - a.centre, across)) > a.halfWidth + reach + gap;
}

Box2 segmentBox(const Curve& curve, std::size_t k) {
    Box2 box;
    const Point2 from = curve.segmentStart(k).at.plan();
    const Point2 to = curve.segmentEnd(k).at.plan();
    box.add(from);
    box.add(to);
    const double bulge = curve.segmentStart(k).bulge;
    if (bulge != 0.0)
        box.add(Segment(from, to, bulge).extents());
    return box;
}

Segment segmentOf(const Curve& curve, std::size_t k) {
    return {curve.segmentStart(k).at.plan(), curve.segmentEnd(k).at.plan(),
            curve.segmentStart(k).bulge};
}

// Whether both ends of the chord lie more than twice the tolerance beside the line through another
// one, on the same side: then the straight segments do not come within it of each other.
bool liesBeside(Point2 a, Point2 b, Point2 from, Point2 to, double tolerance) {
    const Vector2 along = b - a;
    const double first = cross(along, from - a);
    const double second = cross(along, to - a);
    if (!(first * second > 0.0))
        return false;
    const double nearer = std::min(std::abs(first), std::abs(second));
    return nearer * nearer > 4.0 * tolerance * tolerance * dot(along, along);
}

class ContourIndex {
  public:
    explicit ContourIndex(std::span<const Curve> contours)
        : contours_(contours), met_(contours.size()) {
        Box2 all;
        std::vector<Box2> boxes;
        for (std::size_t c = 0; c < contours.size(); ++c) {
            firstRun_.push_back(runs_.size());
            addRuns(c, boxes, all);
        }
        firstRun_.push_back(runs_.size());
        tolerance_ = all.empty() ? base::kTolerance : geometry::meetingTolerance(all);
        index_ = geometry::BoxIndex(boxes);
        boxes_ = std::move(boxes);
    }

    // Marks the contour and each later one that it meets. What is marked does not depend on the
    // order of the calls.
    void check(std::size_t contour) {
        for (std::size_t r = firstRun_[contour]; r < firstRun_[contour + 1]; ++r)
            index_.forEach(boxes_[r].enlarged(tolerance_), [&](std::size_t other) {
                const std::size_t later = runs_[other].contour;
                if (later <= contour || (has(contour) && has(later)))
                    return;
                if (meet(runs_[r], runs_[other])) {
                    mark(contour);
                    mark(later);
                }
            });
    }

    std::vector<std::size_t> marked() const {
        std::vector<std::size_t> out;
        for (std::size_t c = 0; c < contours_.size(); ++c)
            if (has(c))
                out.push_back(c);
        return out;
    }

  private:
    void addRuns(std::size_t contour, std::vector<Box2>& boxes, Box2& all) {
        const Curve& curve = contours_[contour];
        for (std::size_t from = 0; from < curve.segmentCount(); from += kSegmentsOfARun) {
            const std::size_t to = std::min(curve.segmentCount(), from + kSegmentsOfARun);
            Box2 box;
            for (std::size_t k = from; k < to; ++k)
                box.add(segmentBox(curve, k));
            all.add(box);
            boxes.push_back(box);
            runs_.push_back(runOf(curve, contour, from, to));
        }
    }

    bool has(std::size_t contour) const { return met_[contour].load(std::memory_order_relaxed); }
    void mark(std::size_t contour) { met_[contour].store(true, std::memory_order_relaxed); }

    bool meet(const Run& a, const Run& b) const {
        if (a.straight && b.straight &&
            (liesBeside(a, b, 4.0 * tolerance_) || liesBeside(b, a, 4.0 * tolerance_)))
            return false;
        const Curve& first = contours_[a.contour];
        const Curve& second = contours_[b.contour];
        const Box2& target = boxes_[static_cast<std::size_t>(&b - runs_.data())];
        for (std::size_t k = a.from; k < a.to; ++k) {
            const Box2 box = segmentBox(first, k).enlarged(tolerance_);
            if (!box.meets(target))
                continue;
            for (std::size_t m = b.from; m < b.to; ++m)
                if (box.meets(segmentBox(second, m)) && segmentsMeet(first, k, second, m))
                    return true;
        }
        return false;
    }

    bool segmentsMeet(const Curve& a, std::size_t k, const Curve& b, std::size_t m) const {
        const Segment first = segmentOf(a, k);
        const Segment second = segmentOf(b, m);
        if (!first.isArc() && !second.isArc() &&
            (liesBeside(first.start, first.end, second.start, second.end, tolerance_) ||
             liesBeside(second.start, second.end, first.start, first.end, tolerance_)))
            return false;
        return !geometry::meetingPoints(first, second, tolerance_).empty();
    }

    std::span<const Curve> contours_;
    double tolerance_ = base::kTolerance;
    std::vector<Run> runs_; // contour by contour
    std::vector<std::size_t> firstRun_;
    std::vector<Box2> boxes_; // of the runs
    geometry::BoxIndex index_;
    std::vector<std::atomic<bool>> met_;
};

} // namespace

std::optional<std::vector<std::size_t>> meetingContours(std::span<const Curve> contours,
                                                        base::Progress& progress) {
    ContourIndex index(contours);
    const int count = static_cast<int>(contours.size());
    for (int first = 0; first < count; first += kContoursOfABatch) {
        progress.setPosition(first);
        if (progress.cancelled())
            return std::nullopt;
        base::parallelRanges(first, std::min(count, first + kContoursOfABatch), 1,
                             [&](int begin, int end) {
                                 for (int c = begin; c < end; ++c)
                                     index.check(static_cast<std::size_t>(c));
                             });
    }
    progress.setPosition(count);
    return index.marked();
}

bool hasElevation(const Curve& contour, double elevation) {
    const auto& vertices = contour.vertices();
    return !vertices.empty() && std::all_of(vertices.begin(), vertices.end(), [&](const auto& v) {
        return std::abs(v.at.z - elevation) <= base::kTolerance;
    });
}

} // namespace tessaran::factors
