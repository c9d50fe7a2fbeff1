#include "geometry/region.h"

#include "base/tolerance.h"
#include "geometry/box_index.h"
#include "geometry/polygon.h"

#include <geos_c.h>

#include <memory>
#include <numeric>
#include <string>
#include <utility>

namespace tessaran::geometry {

namespace {

using base::Result;

struct Free {
    GEOSContextHandle_t context;
    void operator()(GEOSGeometry* g) const { GEOSGeom_destroy_r(context, g); }
    void operator()(GEOSCoordSequence* s) const { GEOSCoordSeq_destroy_r(context, s); }
};
using Geometry = std::unique_ptr<GEOSGeometry, Free>;

// One library context for the length of a call, so that threads share nothing, and the local origin
// that the call's coordinates are moved to.
class Kernel {
  public:
    explicit Kernel(const Box2& extents) : context_(GEOS_init_r()), origin_(originFor(extents)) {
        GEOSContext_setErrorMessageHandler_r(context_, keepMessage, &message_);
        GEOSContext_setNoticeMessageHandler_r(context_, ignoreMessage, nullptr);
    }
    ~Kernel() { GEOS_finish_r(context_); }
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;

    Geometry take(GEOSGeometry* raw) { return Geometry(raw, Free{context_}); }

    Geometry polygonsOf(const PlanarRegion& region);
    Geometry collection(std::vector<Geometry> parts, int type);
    Geometry unionOf(std::vector<Geometry> parts);
    std::vector<std::size_t> groupsOf(const std::vector<Geometry>& parts);
    void addPolygons(Geometry geometry, std::vector<Geometry>& polygons);
    Box2 boxOf(const Geometry& geometry);
    Result<PlanarRegion> regionOf(const Geometry& geometry);
    GEOSContextHandle_t context() const { return context_; }

  private:
    static void keepMessage(const char* text, void* to) { *static_cast<std::string*>(to) = text; }
    static void ignoreMessage(const char* /*text*/, void* /*to*/) {}

    // Far from 0 a corner of the extents (the move is exact there), else 0.
    static Point2 originFor(const Box2& box) {
        if (box.empty())
            return {};
        const auto local = [](double low, double high) {
            return std::min(std::abs(low), std::abs(high)) > 4.0 * (high - low) ? low : 0.0;
        };
        return {local(box.low.x, box.high.x), local(box.low.y, box.high.y)};
    }

    GEOSGeometry* ring(const Polygon& loop);
    Geometry polygon(const Polygon& shell, const std::vector<const Polygon*>& holes);
    Geometry nested(const std::vector<Polygon>& loops);
    Geometry madeValid(const std::vector<Polygon>& loops);
    Geometry onlyAreas(const Geometry& geometry);
    bool isValid(const Geometry& g) { return g && GEOSisValid_r(context_, g.get()) == 1; }
    Polygon loopOf(const GEOSGeometry* ring, bool counterClockwise);
    void addLoops(const GEOSGeometry* geometry, PlanarRegion& region);

    GEOSContextHandle_t context_;
    Point2 origin_;
    std::string message_;
};

GEOSGeometry* Kernel::ring(const Polygon& loop) {
    const auto count = static_cast<unsigned>(loop.size());
    GEOSCoordSequence* points = GEOSCoordSeq_create_r(context_, count + 1, 2);
    for (unsigned k = 0; k <= count; ++k) {
        const Point2 p = loop[k % count] - origin_;
        GEOSCoordSeq_setXY_r(context_, points, k, p.x, p.y);
    }
    return GEOSGeom_createLinearRing_r(context_, points);
}

Geometry Kernel::polygon(const Polygon& shell, const std::vector<const Polygon*>& holes) {
    std::vector<GEOSGeometry*> rings;
    for (const Polygon* hole : holes)
        rings.push_back(ring(*hole));
    return take(GEOSGeom_createPolygon_r(context_, ring(shell), rings.data(),
                                         static_cast<unsigned>(rings.size())));
}

Geometry Kernel::collection(std::vector<Geometry> parts, int type) {
    std::vector<GEOSGeometry*> raw;
    raw.reserve(parts.size());
    for (Geometry& part : parts)
        raw.push_back(part.release());
    return take(
        GEOSGeom_createCollection_r(context_, type, raw.data(), static_cast<unsigned>(raw.size())));
}

// The smallest of the candidate shells around the hole; shells.size() for none. The only candidate
// is taken unseen, as the caller checks what comes out.
std::size_t shellAround(const Polygon& hole, std::span<const std::size_t> candidates,
                        std::span<const Polygon* const> shells) {
    if (candidates.size() == 1)
        return candidates[0];
    const Point2 inside = 0.5 * (hole[0] + hole[1]);
    std::size_t best = shells.size();
    for (const std::size_t k : candidates)
        if (pointInPolygon(inside, *shells[k]) &&
            (best == shells.size() || area(*shells[k]) < area(*shells[best])))
            best = k;
    return best;
}

// Loops that keep the convention: each clockwise one is a hole of the smallest counter-clockwise
// one around it. What comes out is checked by the caller.
Geometry Kernel::nested(const std::vector<Polygon>& loops) {
    std::vector<const Polygon*> shells;
    std::vector<const Polygon*> holes;
    std::vector<Box2> boxes;
    for (const Polygon& loop : loops) {
        const bool outer = loops.size() == 1 || signedArea(loop) > 0.0;
        (outer ? shells : holes).push_back(&loop);
        if (outer)
            boxes.push_back(geometry::boxOf(loop));
    }
    if (shells.size() == 1)
        return polygon(*shells[0], holes);
    std::vector<std::vector<const Polygon*>> holesOf(shells.size());
    const BoxIndex index(holes.empty() ? std::vector<Box2>{} : boxes);
    for (const Polygon* hole : holes) {
        const std::vector<std::size_t> around = index.query(geometry::boxOf(*hole));
        const std::size_t shell = shellAround(*hole, around, shells);
        if (shell == shells.size())
            return take(nullptr);
        holesOf[shell].push_back(hole);
    }
    std::vector<Geometry> polygons;
    for (std::size_t k = 0; k < shells.size(); ++k)
        polygons.push_back(polygon(*shells[k], holesOf[k]));
    return collection(std::move(polygons), GEOS_MULTIPOLYGON);
}

// Any loops, by the even-odd rule over all their linework.
Geometry Kernel::madeValid(const std::vector<Polygon>& loops) {
    std::vector<const Polygon*> others;
    for (std::size_t k = 1; k < loops.size(); ++k)
        others.push_back(&loops[k]);
    const Geometry raw = polygon(loops[0], others);
    return raw ? onlyAreas(take(GEOSMakeValid_r(context_, raw.get()))) : take(nullptr);
}

// Collapsed parts come as lines and points beside the areas.
Geometry Kernel::onlyAreas(const Geometry& geometry) {
    if (!geometry)
        return take(nullptr);
    std::vector<Geometry> areas;
    const int count = GEOSGetNumGeometries_r(context_, geometry.get());
    for (int k = 0; k < count; ++k) {
        const GEOSGeometry* part = GEOSGetGeometryN_r(context_, geometry.get(), k);
        if (GEOSGeom_getDimensions_r(context_, part) == 2)
            areas.push_back(take(GEOSGeom_clone_r(context_, part)));
    }
    return unionOf(std::move(areas));
}

Geometry Kernel::polygonsOf(const PlanarRegion& region) {
    std::vector<Polygon> loops;
    for (const Polygon& loop : region.loops) {
        const std::span<const Point2> open = withoutClosingVertex(loop);
        if (open.size() >= 3 && isUsable(open))
            loops.emplace_back(open.begin(), open.end());
    }
    if (loops.empty())
        return take(GEOSGeom_createEmptyPolygon_r(context_));
    Geometry plain = nested(loops);
    return isValid(plain) ? std::move(plain) : madeValid(loops);
}

// Only what touches needs a union; the rest stands beside it. (A union of thousands of separate
// polygons takes the library many times longer than finding out that they are.)
Geometry Kernel::unionOf(std::vector<Geometry> parts) {
    if (parts.size() == 1)
        return std::move(parts[0]);
    for (const Geometry& part : parts)
        if (!part)
            return take(nullptr);
    const std::vector<std::size_t> groups = groupsOf(parts);
    std::vector<std::vector<Geometry>> members(parts.size());
    for (std::size_t k = 0; k < parts.size(); ++k)
        members[groups[k]].push_back(std::move(parts[k]));
    std::vector<Geometry> polygons;
    for (std::vector<Geometry>& group : members) {
        if (group.size() == 1) {
            addPolygons(std::move(group[0]), polygons);
        } else if (group.size() > 1) {
            const Geometry all = collection(std::move(group), GEOS_GEOMETRYCOLLECTION);
            Geometry united = take(all ? GEOSUnaryUnion_r(context_, all.get()) : nullptr);
            if (!united)
                return united;
            addPolygons(std::move(united), polygons);
        }
    }
    return collection(std::move(polygons), GEOS_MULTIPOLYGON);
}

// For each part the number of the group of parts that hang together with it.
std::vector<std::size_t> Kernel::groupsOf(const std::vector<Geometry>& parts) {
    std::vector<Box2> boxes;
    for (const Geometry& part : parts)
        boxes.push_back(boxOf(part));
    const BoxIndex index(boxes);
    std::vector<std::size_t> group(parts.size());
    std::iota(group.begin(), group.end(), std::size_t{0});
    const auto find = [&](std::size_t k) {
        while (group[k] != k)
            k = group[k] = group[group[k]];
        return k;
    };
    for (std::size_t a = 0; a < parts.size(); ++a)
        index.forEach(boxes[a], [&](std::size_t b) {
            // What the library cannot tell (2) counts as touching.
            if (b > a && find(a) != find(b) &&
                GEOSIntersects_r(context_, parts[a].get(), parts[b].get()) != 0)
                group[find(b)] = find(a);
        });
    for (std::size_t k = 0; k < parts.size(); ++k)
        group[k] = find(k);
    return group;
}

void Kernel::addPolygons(Geometry geometry, std::vector<Geometry>& polygons) {
    if (GEOSisEmpty_r(context_, geometry.get()) != 0)
        return;
    if (GEOSGeomTypeId_r(context_, geometry.get()) == GEOS_POLYGON) {
        polygons.push_back(std::move(geometry));
        return;
    }
    const int count = GEOSGetNumGeometries_r(context_, geometry.get());
    for (int k = 0; k < count; ++k) {
        const GEOSGeometry* part = GEOSGetGeometryN_r(context_, geometry.get(), k);
        if (GEOSGeomTypeId_r(context_, part) == GEOS_POLYGON)
            polygons.push_back(take(GEOSGeom_clone_r(context_, part)));
    }
}

Box2 Kernel::boxOf(const Geometry& geometry) {
    Box2 box;
    if (GEOSisEmpty_r(context_, geometry.get()) != 0)
        return box;
    GEOSGeom_getXMin_r(context_, geometry.get(), &box.low.x);
    GEOSGeom_getYMin_r(context_, geometry.get(), &box.low.y);
    GEOSGeom_getXMax_r(context_, geometry.get(), &box.high.x);
    GEOSGeom_getYMax_r(context_, geometry.get(), &box.high.y);
    return box;
}

Polygon Kernel::loopOf(const GEOSGeometry* ring, bool counterClockwise) {
    const GEOSCoordSequence* points = GEOSGeom_getCoordSeq_r(context_, ring);
    unsigned count = 0;
    GEOSCoordSeq_getSize_r(context_, points, &count);
    Polygon loop;
    for (unsigned k = 0; k + 1 < count; ++k) {
        Point2 p;
        GEOSCoordSeq_getXY_r(context_, points, k, &p.x, &p.y);
        loop.push_back(p + origin_);
    }
    if ((signedArea(loop) > 0.0) != counterClockwise)
        std::reverse(loop.begin(), loop.end());
    return loop;
}

void Kernel::addLoops(const GEOSGeometry* geometry, PlanarRegion& region) {
    if (GEOSGeomTypeId_r(context_, geometry) == GEOS_POLYGON) {
        if (GEOSisEmpty_r(context_, geometry) != 0)
            return;
        region.loops.push_back(loopOf(GEOSGetExteriorRing_r(context_, geometry), true));
        const int holes = GEOSGetNumInteriorRings_r(context_, geometry);
        for (int k = 0; k < holes; ++k)
            region.loops.push_back(loopOf(GEOSGetInteriorRingN_r(context_, geometry, k), false));
        return;
    }
    if (GEOSGeom_getDimensions_r(context_, geometry) < 2)
        return; // what touches only leaves lines and points
    const int count = GEOSGetNumGeometries_r(context_, geometry);
    for (int k = 0; k < count; ++k)
        addLoops(GEOSGetGeometryN_r(context_, geometry, k), region);
}

Result<PlanarRegion> Kernel::regionOf(const Geometry& geometry) {
    if (!geometry)
        return base::stateError("the areas could not be computed: " + message_);
    PlanarRegion region;
    addLoops(geometry.get(), region);
    return region;
}

Box2 extentsOf(const PlanarRegion& region) {
    Box2 box;
    for (const Polygon& loop : region.loops)
        if (isUsable(loop))
            box.add(boxOf(loop));
    return box;
}

Box2 extentsOf(std::span<const PlanarRegion> regions) {
    Box2 box;
    for (const PlanarRegion& region : regions)
        box.add(extentsOf(region));
    return box;
}

// The points that stand apart from their predecessor.
Polygon withoutRepeats(std::span<const Point2> line) {
    Polygon points;
    for (const Point2 p : line)
        if (points.empty() || !(points.back() == p))
            points.push_back(p);
    return points;
}

Vector2 leftOf(Point2 from, Point2 to, double range) {
    const Vector2 d = to - from;
    const double k = range / length(d);
    return {-k * d.y, k * d.x};
}

// The fan about a corner from one offset direction to the next, on the outer side of the turn.
Polygon cornerFan(Point2 corner, Vector2 before, Vector2 after, double range) {
    const double turn = std::atan2(cross(before, after), dot(before, after));
    if (turn == 0.0)
        return {};
    const double side = turn > 0.0 ? -1.0 : 1.0; // a turn to the left opens on the right
    const Vector2 from = side * before;
    const Vector2 to = side * after;
    const double step = 2.0 * std::acos(1.0 - base::kArcSag);
    const int chords = std::max(1, static_cast<int>(std::ceil(std::abs(turn) / step)));
    Polygon fan{corner, corner + from};
    const double start = std::atan2(from.y, from.x);
    for (int k = 1; k < chords; ++k) {
        const double angle = start + turn * k / chords;
        fan.push_back(corner + range * Vector2{std::cos(angle), std::sin(angle)});
    }
    fan.push_back(corner + to);
    return fan;
}

// Rectangles along the segments and fans at the corners: their union is what the offset curves of
// both sides enclose. (The kernel's own buffers simplify the line by a hundredth of the range.)
Result<PlanarRegion> strip(Polygon points, bool closed, double range) {
    if (!(range > 0.0) || !std::isfinite(range))
        return base::rangeError("the range of an offset must be a number above 0");
    if (!isUsable(points) || range > 1e150)
        return base::rangeError("the line has coordinates that are no usable numbers");
    if (closed && points.size() > 1 && points.front() == points.back())
        points.pop_back();
    const std::size_t count = points.size();
    if (count < 2)
        return base::stateError("the line has no length");
    const std::size_t segments = closed && count > 2 ? count : count - 1;
    std::vector<PlanarRegion> parts;
    std::vector<Vector2> lefts;
    for (std::size_t k = 0; k < segments; ++k) {
        const Point2 a = points[k];
        const Point2 b = points[(k + 1) % count];
        const Vector2 left = leftOf(a, b, range);
        lefts.push_back(left);
        parts.push_back(regionOf({a - left, b - left, b, b + left, a + left, a}));
    }
    for (std::size_t k = closed && count > 2 ? 0 : 1; k < segments; ++k) {
        Polygon fan = cornerFan(points[k], lefts[(k + segments - 1) % segments], lefts[k], range);
        if (!fan.empty())
            parts.push_back(regionOf(std::move(fan)));
    }
    return unite(parts);
}

} // namespace

PlanarRegion regionOf(Polygon outline) {
    PlanarRegion region;
    region.loops.push_back(std::move(outline));
    return region;
}

double area(const PlanarRegion& region) {
    if (region.loops.size() == 1 && region.loops[0].size() <= 3)
        return area(region.loops[0]);
    const auto clean = cleaned(region);
    double sum = 0.0;
    if (clean)
        for (const Polygon& loop : clean->loops)
            sum += signedArea(loop);
    return sum;
}

Result<PlanarRegion> cleaned(const PlanarRegion& region) {
    Kernel kernel(extentsOf(region));
    return kernel.regionOf(kernel.polygonsOf(region));
}

Result<PlanarRegion> unite(std::span<const PlanarRegion> regions) {
    Kernel kernel(extentsOf(regions));
    std::vector<Geometry> parts;
    parts.reserve(regions.size());
    for (const PlanarRegion& region : regions)
        parts.push_back(kernel.polygonsOf(region));
    return kernel.regionOf(kernel.unionOf(std::move(parts)));
}

Result<PlanarRegion> subtract(const PlanarRegion& from, std::span<const PlanarRegion> regions) {
    const Box2 box = extentsOf(from);
    if (box.empty())
        return PlanarRegion{};
    Kernel kernel(box);
    const Geometry whole = kernel.polygonsOf(from);
    std::vector<Geometry> parts;
    for (const PlanarRegion& region : regions)
        if (extentsOf(region).meets(box))
            parts.push_back(kernel.polygonsOf(region));
    const Geometry taken = kernel.unionOf(std::move(parts));
    if (!whole || !taken)
        return kernel.regionOf(kernel.take(nullptr));
    return kernel.regionOf(
        kernel.take(GEOSDifference_r(kernel.context(), whole.get(), taken.get())));
}

Result<PlanarRegion> intersect(const PlanarRegion& a, const PlanarRegion& b) {
    const Box2 box = extentsOf(a);
    if (!box.meets(extentsOf(b)))
        return PlanarRegion{};
    Kernel kernel(box);
    const Geometry first = kernel.polygonsOf(a);
    const Geometry second = kernel.polygonsOf(b);
    if (!first || !second)
        return kernel.regionOf(kernel.take(nullptr));
    return kernel.regionOf(
        kernel.take(GEOSIntersection_r(kernel.context(), first.get(), second.get())));
}

Result<PlanarRegion> areaAround(std::span<const Point2> line, double range) {
    return strip(withoutRepeats(line), false, range);
}

Result<PlanarRegion> bandAround(std::span<const Point2> outline, double range) {
    return strip(withoutRepeats(outline), true, range);
}

Result<PlanarRegion> offset(const PlanarRegion& region, double range) {
    auto clean = cleaned(region);
    if (!clean || clean->empty() || range == 0.0)
        return clean;
    std::vector<PlanarRegion> bands;
    for (const Polygon& loop : clean->loops) {
        auto band = bandAround(loop, std::abs(range));
        if (!band)
            return band;
        bands.push_back(std::move(*band));
    }
    if (range < 0.0)
        return subtract(*clean, bands);
    bands.push_back(std::move(*clean));
    return unite(bands);
}

} // namespace tessaran::geometry
