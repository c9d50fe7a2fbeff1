#pragma once

// Small helpers on planar regions as the overlay gives them.

#include "geometry/region.h"

namespace tessaran::index {

// Area of loops that neither cross nor touch along sides, outer ones counter-clockwise and holes
// clockwise.
double orientedArea(const geometry::PlanarRegion& region);

geometry::Box2 boxOf(const geometry::PlanarRegion& region);

// The region without most of what lies outside the box: only loops of many vertices are clipped, so
// that a long outline does not go whole through the overlay of every small area that it cuts.
geometry::PlanarRegion partNear(const geometry::PlanarRegion& region, const geometry::Box2& box);

} // namespace tessaran::index
