#include "geometry/cell_outline.h"

#include <algorithm>
#include <array>
#include <limits>
#include <numeric>

namespace tessaran::geometry {

namespace {

// The sides of a cell, each run with the cell at its left: bottom eastwards, right northwards, ...
enum Side : int { bottom = 0, right = 1, top = 2, left = 3 };

struct Step {
    int i;
    int j;
};

constexpr std::array<Step, 4> kAhead{{{1, 0}, {0, 1}, {-1, 0}, {0, -1}}};    // along the side
constexpr std::array<Step, 4> kOutwards{{{0, -1}, {1, 0}, {0, 1}, {-1, 0}}}; // across the side
constexpr std::array<Step, 4> kStartNode{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

class Tracer {
  public:
    explicit Tracer(const CellLabels& cells)
        : cells_(cells), traced_(cells.labels.size(), 0),
          seenAt_(count(cells.nX + 1) * count(cells.nY + 1), -1) {}

    CellOutlines trace() {
        for (int j = 0; j < cells_.nY; ++j)
            for (int i = 0; i < cells_.nX; ++i)
                for (const Side side : {bottom, top}) // every loop has one of the two
                    if (isOpen(i, j, side))
                        follow(i, j, side);
        orderByLabel();
        return std::move(result_);
    }

  private:
    static std::size_t count(int n) { return static_cast<std::size_t>(n); }
    std::size_t cellAt(int i, int j) const { return count(j) * count(cells_.nX) + count(i); }
    std::size_t nodeAt(LatticeNode n) const {
        return count(n.j) * count(cells_.nX + 1) + count(n.i);
    }

    bool hasLabel(int i, int j, std::int16_t label) const {
        return i >= 0 && j >= 0 && i < cells_.nX && j < cells_.nY && cells_.at(i, j) == label;
    }

    // An outline runs along this side and has not been followed yet.
    bool isOpen(int i, int j, Side side) const {
        const std::int16_t label = cells_.at(i, j);
        return label != 0 && (traced_[cellAt(i, j)] >> side & 1) == 0 &&
               !hasLabel(i + kOutwards[side].i, j + kOutwards[side].j, label);
    }

    // Keeps the cell at its left. At a node where two cells of the label meet only by their corners
    // it stays with its own cell.
    void follow(int i, int j, Side side) {
        label_ = cells_.at(i, j);
        path_.clear();
        while ((traced_[cellAt(i, j)] >> side & 1) == 0) {
            traced_[cellAt(i, j)] |= static_cast<std::uint8_t>(1 << side);
            passNode({i + kStartNode[side].i, j + kStartNode[side].j});
            const int ahead_i = i + kAhead[side].i;
            const int ahead_j = j + kAhead[side].j;
            const int beside_i = ahead_i + kOutwards[side].i;
            const int beside_j = ahead_j + kOutwards[side].j;
            if (!hasLabel(ahead_i, ahead_j, label_)) {
                side = static_cast<Side>((side + 1) % 4);
            } else if (!hasLabel(beside_i, beside_j, label_)) {
                i = ahead_i;
                j = ahead_j;
            } else {
                i = beside_i;
                j = beside_j;
                side = static_cast<Side>((side + 3) % 4);
            }
        }
        closeLoop(0);
    }

    // A node passed a second time ends a loop of its own, so that no loop touches itself.
    void passNode(LatticeNode node) {
        std::int32_t& seen = seenAt_[nodeAt(node)];
        if (seen >= 0)
            closeLoop(count(seen));
        seenAt_[nodeAt(node)] = static_cast<std::int32_t>(path_.size());
        path_.push_back(node);
    }

    // Takes the path from `begin` on out as one loop.
    void closeLoop(std::size_t begin) {
        CellLoop loop;
        loop.label = label_;
        loop.begin = result_.nodes.size();
        long long twiceArea = 0;
        for (std::size_t k = begin; k < path_.size(); ++k) {
            const LatticeNode before = path_[k > begin ? k - 1 : path_.size() - 1];
            const LatticeNode node = path_[k];
            const LatticeNode after = path_[k + 1 < path_.size() ? k + 1 : begin];
            twiceArea +=
                static_cast<long long>(node.i) * after.j - static_cast<long long>(after.i) * node.j;
            if ((before.i == node.i) != (node.i == after.i)) // a corner
                result_.nodes.push_back(node);
            seenAt_[nodeAt(node)] = -1;
        }
        path_.resize(begin);
        loop.end = result_.nodes.size();
        loop.hole = twiceArea < 0;
        result_.loops.push_back(loop);
    }

    // By counting: a grid of noise has millions of loops.
    void orderByLabel() {
        constexpr int kLowest = std::numeric_limits<std::int16_t>::min();
        constexpr std::size_t kLabels = 1U << 16;
        const auto slot = [](const CellLoop& loop) {
            return static_cast<std::size_t>(loop.label - kLowest);
        };
        std::vector<std::size_t> next(kLabels + 1, 0);
        for (const CellLoop& loop : result_.loops)
            ++next[slot(loop) + 1];
        std::partial_sum(next.begin(), next.end(), next.begin());
        std::vector<CellLoop> ordered(result_.loops.size());
        for (const CellLoop& loop : result_.loops)
            ordered[next[slot(loop)]++] = loop;
        result_.loops = std::move(ordered);
    }

    const CellLabels& cells_;
    std::vector<std::uint8_t> traced_; // a bit a side
    std::vector<std::int32_t> seenAt_; // position in path_ of each node, -1 when not on it
    std::vector<LatticeNode> path_;    // every node passed, corner or not
    std::int16_t label_ = 0;
    CellOutlines result_;
};

} // namespace

std::span<const CellLoop> CellOutlines::loopsOf(std::int16_t label) const {
    const auto range =
        std::equal_range(loops.begin(), loops.end(), CellLoop{label, false, 0, 0},
                         [](const CellLoop& a, const CellLoop& b) { return a.label < b.label; });
    return {range.first, range.second};
}

CellOutlines traceOutlines(const CellLabels& cells) {
    if (cells.nX <= 0 || cells.nY <= 0)
        return {};
    return Tracer(cells).trace();
}

} // namespace tessaran::geometry
