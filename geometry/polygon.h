#pragma once

// Areas of polygons, clipping and containment. Coordinates in drawing units; areas in their square.
//
// Every sum is taken about a vertex of the polygon itself, so plans with coordinates in the
// millions keep all their digits. A last vertex equal to the first is taken once. Polygons with
// fewer than three vertices, or with a coordinate that isUsable() refuses, have area 0, contain no
// point and clip to nothing.

#include "geometry/point.h"

#include <span>

namespace tessaran::geometry {

// Every coordinate is a number whose square is one too: no NaN, no infinity, nothing beyond 1e150.
bool isUsable(Point2 p);
bool isUsable(std::span<const Point2> points);

Box2 boxOf(std::span<const Point2> points);

// The polygon without a closing vertex equal to the first.
std::span<const Point2> withoutClosingVertex(std::span<const Point2> polygon);

// Half the shoelace sum: positive counter-clockwise. Where a self-crossing outline winds more than
// once around a place, the place counts as often, with its sign.
double signedArea(std::span<const Point2> polygon);
double area(std::span<const Point2> polygon);

// Whether the outline turns one way all around, once. Straight angles count as no turn; an outline
// without area is not convex.
bool isConvex(std::span<const Point2> polygon);

// The part of the polygon inside a convex window of either orientation (Sutherland, I. E. and
// Hodgman, G. W. (1974), Reentrant polygon clipping, Comm. ACM 17, 32-42). Parts that lie apart
// stay joined along the window's sides, which adds no area.
Polygon clipToConvex(std::span<const Point2> convexWindow, std::span<const Point2> polygon);

// The area of clipToConvex(): absolute value of half its shoelace sum.
double intersectionArea(std::span<const Point2> convexWindow, std::span<const Point2> polygon);

// Whether the outline winds around the point (non-zero rule, as the areas count). A point on the
// outline belongs to what lies right of it, and on a level side to what lies above it, so that
// polygons which share a side share no point.
bool pointInPolygon(Point2 point, std::span<const Point2> polygon);

// Area common to two polygons of any shape. Self-crossing outlines are taken by the even-odd rule.
double overlapArea(std::span<const Point2> a, std::span<const Point2> b);

} // namespace tessaran::geometry
