#include "factors/polyline_vertices.h"

#include "geometry/curve.h"
#include "host/curves.h"

#include <algorithm>

namespace tessaran::factors {

using host::Entity;
using host::Polyline;
using host::Polyline3d;
using host::PolylineVertex;

namespace {

constexpr double kJoinShare = 1e-6;
constexpr double kSmallestJoin = 1e-9;

void endSegment(PolylineVertex& last) {
    last.bulge = last.startWidth = last.endWidth = 0.0;
}

// Takes over the segment that begins at `from`.
void takeSegment(PolylineVertex& vertex, const PolylineVertex& from) {
    vertex.bulge = from.bulge;
    vertex.startWidth = from.startWidth;
    vertex.endWidth = from.endWidth;
}

void goRound(VertexRun& run) {
    if (run.size() < 2)
        return;
    run.push_back(run.front());
    endSegment(run.back());
}

VertexRun runAlong(const geometry::Curve& curve) {
    VertexRun run;
    for (const geometry::CurveVertex& vertex : curve.vertices())
        run.push_back({vertex.at.plan(), vertex.bulge});
    if (curve.closed())
        goRound(run);
    return run;
}

} // namespace

bool closePolyline(Entity& entity) {
    if (auto* polyline = std::get_if<Polyline>(&entity.geometry))
        return polyline->closed = true;
    auto* polyline3d = std::get_if<Polyline3d>(&entity.geometry);
    return polyline3d != nullptr && (polyline3d->closed = true);
}

VertexRun reversed(std::span<const PolylineVertex> run) {
    VertexRun back(run.rbegin(), run.rend());
    for (std::size_t k = 0; k + 1 < back.size(); ++k) {
        const PolylineVertex& segment = run[run.size() - 2 - k];
        back[k].bulge = -segment.bulge;
        back[k].startWidth = segment.endWidth;
        back[k].endWidth = segment.startWidth;
    }
    if (!back.empty())
        endSegment(back.back());
    return back;
}

VertexRun openRun(const Polyline& polyline) {
    VertexRun run = polyline.vertices;
    if (polyline.form == Polyline::Form::light && polyline.constantWidth != 0.0)
        for (PolylineVertex& vertex : run)
            vertex.startWidth = vertex.endWidth = polyline.constantWidth;
    if (polyline.closed)
        goRound(run);
    else if (!run.empty())
        endSegment(run.back());
    return run;
}

void appendJoined(VertexRun& chain, std::span<const PolylineVertex> run) {
    if (run.empty())
        return;
    takeSegment(chain.back(), run.front());
    chain.insert(chain.end(), run.begin() + 1, run.end());
}

VertexRun runThrough(const Entity& entity) {
    if (const auto* polyline = std::get_if<Polyline>(&entity.geometry))
        return openRun(*polyline);
    if (const auto* point = std::get_if<host::PointMark>(&entity.geometry))
        return {{point->at.plan()}};
    const auto curve = host::curveOf(entity);
    return curve ? runAlong(*curve) : VertexRun{};
}

double joiningTolerance(const host::Box2& extents) {
    if (extents.empty())
        return kSmallestJoin;
    return std::max(kSmallestJoin, kJoinShare * std::max(extents.width(), extents.height()));
}

} // namespace tessaran::factors
