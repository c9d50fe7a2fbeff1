#include "geometry/polygon.h"

#include "geometry/edge.h"
#include "geometry/region.h"

#include <numbers>

namespace tessaran::geometry {

namespace {

constexpr double kLargestUsable = 1e150;

// Which side of a window's side a point lies on: above 0 inside.
double sideOf(Point2 a, Point2 b, Point2 p) {
    return cross(b - a, p - a);
}

Point2 pointBetween(Point2 p, Point2 q, double sideOfP, double sideOfQ) {
    return p + (sideOfP / (sideOfP - sideOfQ)) * (q - p);
}

void clipBySide(Point2 a, Point2 b, const Polygon& in, Polygon& out) {
    out.clear();
    if (in.empty())
        return;
    Point2 previous = in.back();
    double previousSide = sideOf(a, b, previous);
    for (const Point2 p : in) {
        const double side = sideOf(a, b, p);
        if ((side >= 0.0) != (previousSide >= 0.0))
            out.push_back(pointBetween(previous, p, previousSide, side));
        if (side >= 0.0)
            out.push_back(p);
        previous = p;
        previousSide = side;
    }
}

bool isPolygon(std::span<const Point2> polygon) {
    return polygon.size() >= 3 && isUsable(polygon);
}

} // namespace

bool isUsable(Point2 p) {
    return std::abs(p.x) <= kLargestUsable && std::abs(p.y) <= kLargestUsable; // false for NaN
}

bool isUsable(std::span<const Point2> points) {
    return std::all_of(points.begin(), points.end(), [](Point2 p) { return isUsable(p); });
}

Box2 boxOf(std::span<const Point2> points) {
    Box2 box;
    for (const Point2 p : points)
        box.add(p);
    return box;
}

std::span<const Point2> withoutClosingVertex(std::span<const Point2> polygon) {
    if (polygon.size() > 1 && polygon.front() == polygon.back())
        return polygon.first(polygon.size() - 1);
    return polygon;
}

double signedArea(std::span<const Point2> polygon) {
    if (!isPolygon(polygon))
        return 0.0;
    const Point2 origin = polygon.front();
    double twice = 0.0;
    Vector2 previous = polygon.back() - origin;
    for (const Point2 p : polygon) {
        const Vector2 current = p - origin;
        twice += cross(previous, current);
        previous = current;
    }
    return 0.5 * twice;
}

double area(std::span<const Point2> polygon) {
    return std::abs(signedArea(polygon));
}

Polygon clipToConvex(std::span<const Point2> convexWindow, std::span<const Point2> polygon) {
    const std::span<const Point2> window = withoutClosingVertex(convexWindow);
    const std::span<const Point2> subject = withoutClosingVertex(polygon);
    if (!isPolygon(window) || !isPolygon(subject))
        return {};
    const bool counterClockwise = signedArea(window) > 0.0;
    Polygon clipped(subject.begin(), subject.end());
    Polygon next;
    for (std::size_t k = 0; k < window.size() && !clipped.empty(); ++k) {
        const Point2 a = window[k];
        const Point2 b = window[(k + 1) % window.size()];
        clipBySide(counterClockwise ? a : b, counterClockwise ? b : a, clipped, next);
        clipped.swap(next);
    }
    if (clipped.size() < 3)
        clipped.clear();
    return clipped;
}

double intersectionArea(std::span<const Point2> convexWindow, std::span<const Point2> polygon) {
    return area(clipToConvex(convexWindow, polygon));
}

bool pointInPolygon(Point2 point, std::span<const Point2> polygon) {
    if (!isPolygon(polygon) || !isUsable(point))
        return false;
    int winding = 0;
    Point2 previous = polygon.back();
    for (const Point2 p : polygon) {
        const Edge edge(previous, p);
        if (edge.low.y <= point.y && point.y < edge.high.y && edge.xAt(point.y) <= point.x)
            winding += edge.direction;
        previous = p;
    }
    return winding != 0;
}

bool isConvex(std::span<const Point2> polygon) {
    const std::span<const Point2> p = withoutClosingVertex(polygon);
    const std::size_t n = p.size();
    if (n < 3 || !isUsable(p))
        return false;
    double turned = 0.0;
    int side = 0;
    for (std::size_t k = 0; k < n; ++k) {
        const Vector2 in = p[(k + 1) % n] - p[k];
        const Vector2 out = p[(k + 2) % n] - p[(k + 1) % n];
        const double turn = std::atan2(cross(in, out), dot(in, out));
        if (turn == 0.0)
            continue;
        const int now = turn > 0.0 ? 1 : -1;
        if (side != 0 && now != side)
            return false;
        side = now;
        turned += turn;
    }
    return side != 0 && std::abs(turned) < 3.0 * std::numbers::pi; // once around is 2 pi
}

double overlapArea(std::span<const Point2> a, std::span<const Point2> b) {
    if (!boxOf(a).meets(boxOf(b)))
        return 0.0;
    const auto common =
        intersect(regionOf(Polygon(a.begin(), a.end())), regionOf(Polygon(b.begin(), b.end())));
    return common ? area(*common) : 0.0;
}

} // namespace tessaran::geometry
