#include "geometry/enclosing_face.h"

#include "geometry/polygon.h"

#include <geos_c.h>

#include <algorithm>
#include <memory>

namespace tessaran::geometry {
namespace {

// One GEOS context and what lives in it. Coordinates are taken about the plan's own corner, so that
// plans with coordinates in the millions keep their digits.
class Kernel {
  public:
    struct Free {
        GEOSContextHandle_t context;
        void operator()(GEOSGeometry* g) const { GEOSGeom_destroy_r(context, g); }
    };
    using Geometry = std::unique_ptr<GEOSGeometry, Free>;

    explicit Kernel(Point2 origin) : context_(GEOS_init_r()), origin_(origin) {}
    Kernel(const Kernel&) = delete;
    Kernel& operator=(const Kernel&) = delete;
    ~Kernel() { GEOS_finish_r(context_); }

    GEOSContextHandle_t context() const { return context_; }
    Geometry hold(GEOSGeometry* raw) const { return Geometry(raw, Free{context_}); }

    GEOSGeometry* line(const Polygon& chain) const {
        GEOSCoordSequence* points =
            GEOSCoordSeq_create_r(context_, static_cast<unsigned>(chain.size()), 2);
        for (unsigned i = 0; i < chain.size(); ++i)
            GEOSCoordSeq_setXY_r(context_, points, i, chain[i].x - origin_.x,
                                 chain[i].y - origin_.y);
        return GEOSGeom_createLineString_r(context_, points);
    }

    // A ring's vertices, the first not repeated.
    Polygon ring(const GEOSGeometry* ring) const {
        const GEOSCoordSequence* points = GEOSGeom_getCoordSeq_r(context_, ring);
        unsigned count = 0;
        GEOSCoordSeq_getSize_r(context_, points, &count);
        Polygon out;
        for (unsigned i = 0; i + 1 < count; ++i) {
            Point2 p;
            GEOSCoordSeq_getXY_r(context_, points, i, &p.x, &p.y);
            out.push_back(p + origin_);
        }
        return out;
    }

    // All chains cut where they meet.
    Geometry noded(std::span<const Polygon> chains) const {
        std::vector<GEOSGeometry*> lines;
        for (const Polygon& chain : chains)
            if (chain.size() > 1 && isUsable(chain))
                lines.push_back(line(chain));
        const Geometry all = hold(GEOSGeom_createCollection_r(
            context_, GEOS_MULTILINESTRING, lines.data(), static_cast<unsigned>(lines.size())));
        return hold(all ? GEOSUnaryUnion_r(context_, all.get()) : nullptr);
    }

  private:
    GEOSContextHandle_t context_;
    Point2 origin_;
};

Point2 cornerOf(std::span<const Polygon> chains) {
    Box2 box;
    for (const Polygon& chain : chains)
        if (isUsable(chain))
            box.add(boxOf(chain));
    return box.empty() ? Point2{} : box.low;
}

} // namespace

Faces::Faces(std::span<const Polygon> chains) {
    const Kernel kernel(cornerOf(chains));
    const Kernel::Geometry lines = kernel.noded(chains);
    if (!lines)
        return;
    const GEOSGeometry* const input = lines.get();
    const Kernel::Geometry polygons = kernel.hold(GEOSPolygonize_r(kernel.context(), &input, 1));
    const int count = polygons ? GEOSGetNumGeometries_r(kernel.context(), polygons.get()) : 0;
    for (int k = 0; k < count; ++k) {
        const GEOSGeometry* polygon = GEOSGetGeometryN_r(kernel.context(), polygons.get(), k);
        Face face;
        face.outline = kernel.ring(GEOSGetExteriorRing_r(kernel.context(), polygon));
        const int holes = GEOSGetNumInteriorRings_r(kernel.context(), polygon);
        for (int h = 0; h < holes; ++h)
            face.holes.push_back(kernel.ring(GEOSGetInteriorRingN_r(kernel.context(), polygon, h)));
        face.box = boxOf(face.outline);
        faces_.push_back(std::move(face));
    }
}

Polygon Faces::around(Point2 point) const {
    for (const Face& face : faces_) {
        const bool inHole = std::any_of(face.holes.begin(), face.holes.end(),
                                        [&](const Polygon& h) { return pointInPolygon(point, h); });
        if (face.box.contains(point) && !inHole && pointInPolygon(point, face.outline))
            return face.outline;
    }
    return {};
}

} // namespace tessaran::geometry
