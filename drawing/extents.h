#pragma once

// Plan extents of what entities show, with arcs followed.

#include "drawing/database.h"
#include "drawing/scene.h"

namespace tessaran::drawing {

// Coordinates beyond this are slips of the pen: they count for no view and no picture. 1e12 is a
// thousand million kilometres in millimetres.
inline constexpr double kFarthestCoordinate = 1e12;

// Whether a polyline reaches as far as its width does, or only as its vertices and arcs.
enum class Reach { centreLines, widths };

// Empty for an entity that shows nothing.
host::Box2 recordExtents(const Database& database, const EntityRecord& record,
                         Visibility visibility, Reach reach);

// Whether no coordinate of the box is farther away than that.
bool isNear(const host::Box2& box);

// Of everything that passes the filter on layers that are on and not frozen, far-off entities left
// out; may be empty.
host::Box2 drawingExtents(const Database& database, const host::SelectionFilter& filter = {});

// The standard view on a box: its centre, and high and wide enough for it; 0,0 to 100,62.5 on an
// empty one.
View viewOn(const host::Box2& box);

} // namespace tessaran::drawing
