#pragma once

// Outlines of equally labelled cells of a lattice, found by walking along the cell sides: time and
// memory linear in the cells, no polygon union.

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace tessaran::geometry {

// One label a cell, rows one after the other: labels[j * nX + i]. 0 is none.
struct CellLabels {
    int nX = 0;
    int nY = 0;
    std::span<const std::int16_t> labels;

    std::int16_t at(int i, int j) const {
        return labels[static_cast<std::size_t>(j) * static_cast<std::size_t>(nX) +
                      static_cast<std::size_t>(i)];
    }
};

// A lattice node: the low-left corner of cell (i, j), 0..nX and 0..nY.
struct LatticeNode {
    int i = 0;
    int j = 0;

    friend bool operator==(LatticeNode, LatticeNode) = default;
};

// One closed loop: only corners, the first not repeated, no node twice. Outer loops run
// counter-clockwise, holes clockwise. Loops meet at single nodes at most.
struct CellLoop {
    std::int16_t label = 0;
    bool hole = false;
    std::size_t begin = 0; // in CellOutlines::nodes
    std::size_t end = 0;
};

struct CellOutlines {
    std::vector<CellLoop> loops; // by ascending label
    std::vector<LatticeNode> nodes;

    std::span<const LatticeNode> nodesOf(const CellLoop& loop) const {
        return std::span(nodes).subspan(loop.begin, loop.end - loop.begin);
    }
    // The loops of one label; together, by the even-odd rule, exactly its cells.
    std::span<const CellLoop> loopsOf(std::int16_t label) const;
};

CellOutlines traceOutlines(const CellLabels& cells);

} // namespace tessaran::geometry
