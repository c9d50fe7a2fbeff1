#pragma once

// Polylines as runs of vertices: what chaining and joining them share. In an open run the last
// vertex has no segment, so its bulge and widths are 0.

#include "host/entity.h"

#include <optional>
#include <span>
#include <vector>

namespace tessaran::factors {

using VertexRun = std::vector<host::PolylineVertex>;

// The same entity, closed; false when it is no polyline.
bool closePolyline(host::Entity& entity);

// The run in the other direction: arcs bow to the same side of the plan as before, widths stay at
// their ends.
VertexRun reversed(std::span<const host::PolylineVertex> run);

// The vertices with the polyline's constant width spelt out where it stands for theirs, and nothing
// after the last vertex.
VertexRun openRun(const host::Polyline& polyline);

// Appends `run`, whose first vertex stands where the chain's last one does and gives way to it.
void appendJoined(VertexRun& chain, std::span<const host::PolylineVertex> run);

// An object's way through the plan: polylines, lines, arcs, circles and points; closed ones from
// their first vertex round to it again. Empty for all other objects.
VertexRun runThrough(const host::Entity& entity);

// Ends this close are the same place: 1e-6 of the extents' larger side, at least 1e-9.
double joiningTolerance(const host::Box2& extents);

} // namespace tessaran::factors
