#pragma once

// Making entities: polylines, solid hatches, boundaries found around points.

#include "host/drawing.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {

class Host;

// Adds to model space; tells at the command line when the drawing refuses.
std::optional<EntityId> appendEntity(Host& host, Entity entity);

// A closed light polyline through the points, world coordinates.
Entity closedPolyline(const std::vector<Point2>& points, const std::string& layer,
                      int colour = colour::kByLayer);

// A closed four-point polyline on the current layer; it is the drawing's last entity then.
std::optional<EntityId> addClosedPolyline(Host& host, const std::array<Point2, 4>& corners);

// The loops that closed boundary objects make: each closed polyline or circle one, a region its
// own, and lines, arcs and open polylines that meet end to end one a chain. Nothing when an object
// belongs to no closed loop.
std::optional<std::vector<Loop>> boundaryLoops(const Drawing& drawing,
                                               const std::vector<EntityId>& boundary);

// A solid hatch within boundary objects, at elevation 0, for appending. Nothing when they make no
// closed loop.
std::optional<Entity> solidHatch(Host& host, const std::vector<EntityId>& boundary);

// The same as the host's hatch command gives it: on the current layer, already in the drawing.
std::optional<EntityId> hatchByCommand(Host& host, const std::vector<EntityId>& boundary);

// A closed polyline on the current layer around each of the points (user coordinates), along the
// candidate objects that lie closest around it. The last one made; nothing when none was.
std::optional<EntityId> boundaryFromPoints(Host& host, const std::vector<EntityId>& candidates,
                                           const std::vector<Point3>& inside);

// Prints a polyline's vertices.
void listVertices(Host& host, EntityId polyline);

// Brightness of a colour, 0 to 255, for choosing a readable text colour.
int luminance(int red, int green, int blue);

} // namespace tessaran::host
