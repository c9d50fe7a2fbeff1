#include "factors/polyline_chain.h"

#include "geometry/point.h"

namespace tessaran::factors {
namespace {

using geometry::distance;
using host::Point2;

double toleranceFor(const VertexRun& a, const VertexRun& b) {
    host::Box2 box;
    for (const VertexRun* run : {&a, &b})
        for (const host::PolylineVertex& vertex : *run)
            box.add(vertex.at);
    return joiningTolerance(box);
}

} // namespace

void PolylineChain::append(VertexRun run, Point2 picked, End end) {
    if (run.empty())
        return;
    const bool nearBack = vertices_.empty() || distance(vertices_.back().at, picked) <=
                                                   distance(vertices_.front().at, picked);
    if (nearBack == (end == End::nearest)) {
        appendAtBack(std::move(run));
    } else {
        reverse();
        appendAtBack(std::move(run));
        reverse();
    }
}

void PolylineChain::appendAtBack(VertexRun run) {
    const std::size_t before = size();
    if (vertices_.empty()) {
        vertices_ = std::move(run);
    } else {
        const Point2 end = vertices_.back().at;
        if (distance(run.back().at, end) < distance(run.front().at, end))
            run = reversed(run);
        if (distance(run.front().at, end) <= toleranceFor(vertices_, run))
            appendJoined(vertices_, run);
        else
            vertices_.insert(vertices_.end(), run.begin(), run.end());
    }
    shares_.push_back({size() - before, true});
}

bool PolylineChain::undo() {
    if (shares_.empty())
        return false;
    const Share last = shares_.back();
    shares_.pop_back();
    if (!last.atBack)
        reverse();
    vertices_.resize(size() - last.count);
    if (!vertices_.empty())
        vertices_.back() = {vertices_.back().at};
    if (!last.atBack)
        reverse();
    return true;
}

void PolylineChain::reverse() {
    vertices_ = reversed(vertices_);
    for (Share& share : shares_)
        share.atBack = !share.atBack;
}

} // namespace tessaran::factors
