#pragma once

// Points, vectors and boxes. Drawing units throughout; angles in radians, counter-clockwise from X.

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <vector>

namespace tessaran::geometry {

struct Point2 {
    double x = 0.0;
    double y = 0.0;

    friend Point2 operator+(Point2 a, Point2 b) { return {a.x + b.x, a.y + b.y}; }
    friend Point2 operator-(Point2 a, Point2 b) { return {a.x - b.x, a.y - b.y}; }
    friend Point2 operator*(double k, Point2 a) { return {k * a.x, k * a.y}; }
    friend bool operator==(Point2 a, Point2 b) = default; // exact, on purpose
};

struct Point3 {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;

    Point2 plan() const { return {x, y}; }
    friend Point3 operator+(Point3 a, Point3 b) { return {a.x + b.x, a.y + b.y, a.z + b.z}; }
    friend Point3 operator-(Point3 a, Point3 b) { return {a.x - b.x, a.y - b.y, a.z - b.z}; }
    friend Point3 operator*(double k, Point3 a) { return {k * a.x, k * a.y, k * a.z}; }
    friend bool operator==(Point3 a, Point3 b) = default;
};

using Vector2 = Point2;
using Vector3 = Point3;

inline double dot(Vector2 a, Vector2 b) {
    return a.x * b.x + a.y * b.y;
}
inline double cross(Vector2 a, Vector2 b) {
    return a.x * b.y - a.y * b.x;
}
inline double length(Vector2 a) {
    return std::hypot(a.x, a.y);
}
inline double distance(Point2 a, Point2 b) {
    return length(b - a);
}

inline Point2 rotated(Point2 p, Point2 centre, double angle) {
    const double c = std::cos(angle);
    const double s = std::sin(angle);
    const Vector2 d = p - centre;
    return {centre.x + c * d.x - s * d.y, centre.y + s * d.x + c * d.y};
}

// An axis-parallel box; empty until a point is added.
struct Box2 {
    Point2 low{std::numeric_limits<double>::infinity(), std::numeric_limits<double>::infinity()};
    Point2 high{-std::numeric_limits<double>::infinity(), -std::numeric_limits<double>::infinity()};

    bool empty() const { return !(low.x <= high.x && low.y <= high.y); }
    double width() const { return high.x - low.x; }
    double height() const { return high.y - low.y; }
    Point2 centre() const { return 0.5 * (low + high); }
    std::array<Point2, 4> corners() const {
        return {low, Point2{high.x, low.y}, high, Point2{low.x, high.y}};
    }

    void add(Point2 p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y)};
    }
    void add(const Box2& b) {
        low = {std::min(low.x, b.low.x), std::min(low.y, b.low.y)};
        high = {std::max(high.x, b.high.x), std::max(high.y, b.high.y)};
    }
    Box2 enlarged(double by) const {
        return {{low.x - by, low.y - by}, {high.x + by, high.y + by}};
    }
    bool contains(Point2 p) const {
        return p.x >= low.x && p.x <= high.x && p.y >= low.y && p.y <= high.y;
    }
    bool contains(const Box2& b) const { return contains(b.low) && contains(b.high); }
    bool meets(const Box2& b) const {
        return low.x <= b.high.x && b.low.x <= high.x && low.y <= b.high.y && b.low.y <= high.y;
    }
};

// The vertices of a closed outline, the first one not repeated at the end.
using Polygon = std::vector<Point2>;

} // namespace tessaran::geometry
