#include "drawing/coordinates.h"

#include <cmath>

namespace tessaran::drawing {
namespace {

using host::Point3;
using host::Vector3;

// Axes closer than this to parallel (sine of their angle) do not span a plane.
constexpr double kSmallestSine = 1e-9;

double dot(const Vector3& a, const Vector3& b) {
    return a.x * b.x + a.y * b.y + a.z * b.z;
}

Vector3 cross(const Vector3& a, const Vector3& b) {
    return {a.y * b.z - a.z * b.y, a.z * b.x - a.x * b.z, a.x * b.y - a.y * b.x};
}

// Null for zero and for what is not finite.
std::optional<Vector3> unit(const Vector3& v) {
    const double size = std::hypot(v.x, v.y, v.z);
    if (!std::isfinite(size) || size == 0.0)
        return std::nullopt;
    return Vector3{v.x / size, v.y / size, v.z / size};
}

} // namespace

std::optional<Ucs> orthonormal(const Ucs& ucs) {
    const auto x = unit(ucs.xAxis);
    const auto y = unit(ucs.yAxis);
    const Point3& o = ucs.origin;
    if (!x || !y || !std::isfinite(o.x) || !std::isfinite(o.y) || !std::isfinite(o.z))
        return std::nullopt;
    const Vector3 across = *y - dot(*x, *y) * *x;
    if (std::sqrt(dot(across, across)) < kSmallestSine)
        return std::nullopt;
    return Ucs{o, *x, *unit(across)};
}

Point3 toWorld(const Ucs& ucs, const Point3& user) {
    const Vector3 zAxis = cross(ucs.xAxis, ucs.yAxis);
    return ucs.origin + (user.x * ucs.xAxis + user.y * ucs.yAxis + user.z * zAxis);
}

Point3 toUser(const Ucs& ucs, const Point3& world) {
    const Vector3 d = world - ucs.origin;
    return {dot(d, ucs.xAxis), dot(d, ucs.yAxis), dot(d, cross(ucs.xAxis, ucs.yAxis))};
}

Point3 DrawingCoordinates::toWorld(const Point3& user) const {
    return drawing::toWorld(database_.ucs(), user);
}

Point3 DrawingCoordinates::toUser(const Point3& world) const {
    return drawing::toUser(database_.ucs(), world);
}

} // namespace tessaran::drawing
