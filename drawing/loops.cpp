#include "drawing/loops.h"

#include "base/tolerance.h"
#include "geometry/polygon.h"
#include "host/curves.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <utility>

namespace tessaran::drawing {
namespace {

using geometry::Vector2;
using host::Box2;
using host::Loop;
using host::Point2;
using std::numbers::pi;

// Edges of a boundary that begin this close to where the last one ended (as a share of their
// coordinates' size) are joined without a segment between.
constexpr double kJoinShare = 1e-9;

bool meets(Point2 a, Point2 b) {
    const double size = std::max({1.0, std::abs(a.x), std::abs(a.y)});
    return geometry::distance(a, b) <= kJoinShare * size;
}

// Chords for an arc of the given sweep that stay within kArcSag of the radius.
int chordCount(double sweep) {
    static const double kStep = 2.0 * std::acos(1.0 - base::kArcSag);
    return std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / kStep)));
}

struct Outline {
    std::vector<Point2> points;
    Box2 box;
    double area = 0.0;
    int depth = 0;          // how many other loops it lies in
    std::size_t parent = 0; // the smallest of them
};

// Most of the inner loop's chord middles decide: loops may touch.
bool liesIn(const Outline& inner, const Outline& outer) {
    if (!outer.box.contains(inner.box))
        return false;
    const std::size_t n = inner.points.size();
    const std::size_t step = std::max<std::size_t>(1, n / 15);
    int in = 0;
    int all = 0;
    for (std::size_t i = 0; i < n; i += step, ++all)
        if (geometry::pointInPolygon(0.5 * (inner.points[i] + inner.points[(i + 1) % n]),
                                     outer.points))
            ++in;
    return 2 * in > all;
}

Loop directed(const Loop& loop, double area, bool counterClockwise) {
    return (area > 0.0) == counterClockwise ? loop : reversed(loop);
}

} // namespace

Loop reversed(const Loop& loop) {
    Loop out;
    const std::size_t n = loop.vertices.size();
    out.vertices.reserve(n);
    for (std::size_t i = n; i-- > 0;)
        out.vertices.push_back({loop.vertices[i].at, -loop.vertices[(i + n - 1) % n].bulge});
    return out;
}

double bulgeOfSweep(double sweep) {
    return std::tan(sweep / 4.0);
}

LoopEdge straightEdge(Point2 from, Point2 to) {
    return {{{from, 0.0}}, to};
}

LoopEdge arcEdge(Point2 centre, double radius, double startAngle, double sweep) {
    const auto at = [&](double angle) {
        return Point2{centre.x + radius * std::cos(angle), centre.y + radius * std::sin(angle)};
    };
    const bool full = std::abs(sweep) >= 2.0 * pi - 1e-9;
    if (!full)
        return {{{at(startAngle), bulgeOfSweep(sweep)}}, at(startAngle + sweep)};
    const double half = sweep > 0.0 ? pi : -pi;
    const double bulge = sweep > 0.0 ? 1.0 : -1.0;
    return {{{at(startAngle), bulge}, {at(startAngle + half), bulge}}, at(startAngle)};
}

LoopEdge ellipseEdge(Point2 centre, Vector2 majorAxis, double ratio, double start, double sweep) {
    const double radius = geometry::length(majorAxis);
    if (std::abs(ratio - 1.0) <= 1e-9)
        return arcEdge(centre, radius, std::atan2(majorAxis.y, majorAxis.x) + start, sweep);
    const Vector2 minorAxis{-ratio * majorAxis.y, ratio * majorAxis.x};
    const auto at = [&](double t) {
        return centre + std::cos(t) * majorAxis + std::sin(t) * minorAxis;
    };
    LoopEdge edge;
    const int chords = chordCount(sweep);
    for (int i = 0; i < chords; ++i)
        edge.vertices.push_back({at(start + sweep * i / chords), 0.0});
    edge.end = at(start + sweep);
    return edge;
}

LoopEdge reversed(const LoopEdge& edge) {
    LoopEdge out;
    out.end = edge.start();
    Point2 at = edge.end;
    for (std::size_t i = edge.vertices.size(); i-- > 0;) {
        out.vertices.push_back({at, -edge.vertices[i].bulge});
        at = edge.vertices[i].at;
    }
    return out;
}

Loop joined(std::vector<LoopEdge> edges) {
    Loop loop;
    for (std::size_t i = 0; i < edges.size(); ++i) {
        // An edge begins where the last one ended; the first one ends where the second begins.
        const bool first = i == 0 && edges.size() > 1;
        const Point2 joint = first ? edges[1].start() : i > 0 ? edges[i - 1].end : edges[0].start();
        const auto gapTo = [&](Point2 p) {
            const double gap = geometry::distance(p, joint);
            return first ? std::min(gap, geometry::distance(p, edges[1].end)) : gap;
        };
        const double asStored = gapTo(first ? edges[i].end : edges[i].start());
        const double turned = gapTo(first ? edges[i].start() : edges[i].end);
        if (turned < asStored)
            edges[i] = reversed(edges[i]);
        if (i > 0 && !meets(edges[i - 1].end, edges[i].start()))
            loop.vertices.push_back({edges[i - 1].end, 0.0});
        loop.vertices.insert(loop.vertices.end(), edges[i].vertices.begin(),
                             edges[i].vertices.end());
    }
    if (!edges.empty() && !meets(edges.back().end, loop.vertices.front().at))
        loop.vertices.push_back({edges.back().end, 0.0});
    return loop;
}

std::vector<LoopFace> facesOf(const std::vector<Loop>& loops) {
    std::vector<Outline> outlines(loops.size());
    for (std::size_t i = 0; i < loops.size(); ++i) {
        outlines[i].points = host::outlineOf(loops[i]);
        for (const Point2 p : outlines[i].points)
            outlines[i].box.add(p);
        outlines[i].area = geometry::signedArea(outlines[i].points);
        outlines[i].parent = i;
    }
    const auto size = [&](std::size_t i) { return std::abs(outlines[i].area); };
    for (std::size_t i = 0; i < loops.size(); ++i)
        for (std::size_t j = 0; j < loops.size(); ++j) {
            const bool smaller = size(i) < size(j) || (size(i) == size(j) && i > j);
            if (i == j || !smaller || !liesIn(outlines[i], outlines[j]))
                continue;
            ++outlines[i].depth;
            if (outlines[i].parent == i || size(j) < size(outlines[i].parent))
                outlines[i].parent = j;
        }
    std::vector<LoopFace> faces;
    std::vector<std::size_t> faceOf(loops.size());
    for (std::size_t i = 0; i < loops.size(); ++i)
        if (outlines[i].depth % 2 == 0) {
            faceOf[i] = faces.size();
            faces.push_back({directed(loops[i], outlines[i].area, true), {}});
        }
    for (std::size_t i = 0; i < loops.size(); ++i)
        if (outlines[i].depth % 2 == 1)
            faces[faceOf[outlines[i].parent]].holes.push_back(
                directed(loops[i], outlines[i].area, false));
    return faces;
}

} // namespace tessaran::drawing
