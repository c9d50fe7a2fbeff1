#pragma once

// The drawing's entities as curves and outlines.

#include "geometry/curve.h"
#include "geometry/point.h"
#include "host/entity.h"

#include <optional>

namespace tessaran::host {

// Lines, polylines of all kinds, circles and arcs; nothing for all others and for those without a
// usable vertex.
std::optional<geometry::Curve> curveOf(const Entity& entity);

bool isPolyline(const Entity& entity); // planar or 3-D
// Whether it says so; one that ends where it begins need not.
bool isClosedPolyline(const Entity& entity);

// A polyline's vertices in plan, arcs not followed; empty for all others.
geometry::Polygon vertexPolygon(const Entity& entity);

// The closed outline of a polyline (an open one is closed by a straight side) or circle, with
// chords for the arcs; empty for all others.
geometry::Polygon outlineOf(const Entity& entity);

// A loop's outline, with chords for the arcs.
geometry::Polygon outlineOf(const Loop& loop);

} // namespace tessaran::host
