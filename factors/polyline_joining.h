#pragma once

// Joining open polylines end to end, as many as possible.

#include "factors/polyline_vertices.h"

#include <cstddef>

namespace tessaran::factors {

// The two ends of an open polyline. Heights count: ends at one place of the plan and at different
// heights do not meet.
struct PolylineEnds {
    host::Point3 start;
    host::Point3 end;
    bool mayCloseItself = false; // whether it makes an outline when its own ends meet
};

struct ChainLink {
    std::size_t polyline = 0;
    bool reversed = false;

    friend bool operator==(ChainLink, ChainLink) = default;
};

// Polylines in the order in which they follow each other, in the direction of the first of them in
// the list that was given.
struct JoinedChain {
    std::vector<ChainLink> links;
    bool closed = false; // the last one's end meets the first one's start
};

// The chains that come about when ends within the tolerance are joined, the nearest pair first and
// each end once. Polylines that meet no other are in no chain.
std::vector<JoinedChain> joinedChains(std::span<const PolylineEnds> polylines, double tolerance);

// The joined polylines; properties other than vertices are those of the chain's first member in the
// list. Where ends meet the earlier one's vertex stays. A ring of fewer than three vertices and no
// arc stays open.
host::Polyline joined(std::span<const host::Polyline> polylines, const JoinedChain& chain);
host::Polyline3d joined(std::span<const host::Polyline3d> polylines, const JoinedChain& chain);

// The chain's first member in the list.
std::size_t firstMember(const JoinedChain& chain);

PolylineEnds endsOf(const host::Polyline& polyline);
PolylineEnds endsOf(const host::Polyline3d& polyline);

} // namespace tessaran::factors
