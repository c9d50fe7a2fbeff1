#pragma once

// Loops of straight and arc segments in the drawing's files: put together from edges, turned
// around, nested.

#include "host/entity.h"

#include <vector>

namespace tessaran::drawing {

// The same loop the other way round.
host::Loop reversed(const host::Loop& loop);

// The bulge of an arc that turns by `sweep` radians, positive counter-clockwise, below a full turn.
double bulgeOfSweep(double sweep);

// An edge of a boundary: its vertices with the bulges of the segments that begin there, and where
// it ends.
struct LoopEdge {
    std::vector<host::Loop::Vertex> vertices; // the first one is the start; never empty
    host::Point2 end;

    host::Point2 start() const { return vertices.front().at; }
};
LoopEdge straightEdge(host::Point2 from, host::Point2 to);
// From `startAngle` by `sweep` radians, negative clockwise. A full turn becomes two halves.
LoopEdge arcEdge(host::Point2 centre, double radius, double startAngle, double sweep);
// Around `centre` from parameter `start` by `sweep`; chords where the axes differ.
LoopEdge ellipseEdge(host::Point2 centre, geometry::Vector2 majorAxis, double ratio, double start,
                     double sweep);
LoopEdge reversed(const LoopEdge& edge);

// Joins edges in their order, turning around those that are stored the other way; gaps are closed
// by straight segments.
host::Loop joined(std::vector<LoopEdge> edges);

// Faces of a set of loops by the even-odd rule: each an outer loop, counter-clockwise, and its
// holes, clockwise.
struct LoopFace {
    host::Loop outer;
    std::vector<host::Loop> holes;
};
std::vector<LoopFace> facesOf(const std::vector<host::Loop>& loops);

} // namespace tessaran::drawing
