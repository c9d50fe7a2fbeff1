#pragma once

// One polyline in the making, grown at its ends by the ways of objects that the user picks.

#include "factors/polyline_vertices.h"

namespace tessaran::factors {

class PolylineChain {
  public:
    enum class End { nearest, farthest }; // of the chain, seen from the picked point

    const VertexRun& vertices() const { return vertices_; }
    std::size_t size() const { return vertices_.size(); }

    // Appends an object's way at that end of the chain, turned so that its nearer end comes first.
    // Ends that meet become one vertex; else a straight segment joins them.
    void append(VertexRun run, host::Point2 picked, End end);
    bool undo(); // takes the last appended object off again; false when there is none
    void reverse();

  private:
    // What an object brought.
    struct Share {
        std::size_t count = 0; // vertices
        bool atBack = true;
    };

    void appendAtBack(VertexRun run);

    VertexRun vertices_;
    std::vector<Share> shares_;
};

} // namespace tessaran::factors
