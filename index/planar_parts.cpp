#include "index/planar_parts.h"

#include "geometry/polygon.h"

namespace tessaran::index {

namespace {
constexpr std::size_t kLongLoop = 64;
}

double orientedArea(const geometry::PlanarRegion& region) {
    double sum = 0.0;
    for (const geometry::Polygon& loop : region.loops)
        sum += geometry::signedArea(loop);
    return sum;
}

geometry::Box2 boxOf(const geometry::PlanarRegion& region) {
    geometry::Box2 box;
    for (const geometry::Polygon& loop : region.loops)
        box.add(geometry::boxOf(loop));
    return box;
}

geometry::PlanarRegion partNear(const geometry::PlanarRegion& region, const geometry::Box2& box) {
    const auto window = box.corners();
    geometry::PlanarRegion near;
    for (const geometry::Polygon& loop : region.loops) {
        if (loop.size() <= kLongLoop)
            near.loops.push_back(loop);
        else if (auto clipped = geometry::clipToConvex(window, loop); clipped.size() >= 3)
            near.loops.push_back(std::move(clipped));
    }
    return near;
}

} // namespace tessaran::index
