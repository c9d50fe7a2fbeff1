#pragma once

// Which of many boxes meet a given one: a packed R-tree, built once (Leutenegger, S. T. et al.
// (1997), STR: a simple and efficient algorithm for R-tree packing, Proc. ICDE, 497-506).

#include "geometry/point.h"

#include <algorithm>
#include <cstddef>
#include <span>
#include <vector>

namespace tessaran::geometry {

class BoxIndex {
  public:
    BoxIndex() = default;
    // Empty boxes are never found.
    explicit BoxIndex(std::span<const Box2> boxes);

    // Indexes of the boxes that meet the given one (touching counts), ascending.
    std::vector<std::size_t> query(const Box2& box) const;

    // Calls visit(index) for each, in no particular order.
    template <class Visit>
    void forEach(const Box2& box, Visit&& visit) const {
        if (!levels_.empty() && !box.empty())
            descend(levels_.size() - 1, 0, box, visit);
    }

    // Whether at least that many boxes meet the given one.
    bool anyMeet(const Box2& box, std::size_t count) const;

  private:
    static constexpr std::size_t kFanOut = 8;

    template <class Visit>
    void descend(std::size_t level, std::size_t group, const Box2& box, Visit& visit) const {
        const std::vector<Box2>& boxes = levels_[level];
        const std::size_t end = std::min(boxes.size(), (group + 1) * kFanOut);
        for (std::size_t k = group * kFanOut; k < end; ++k) {
            if (!boxes[k].meets(box))
                continue;
            if (level == 0)
                visit(items_[k]);
            else
                descend(level - 1, k, box, visit);
        }
    }

    std::vector<std::vector<Box2>>
        levels_;                     // leaves first; a node covers kFanOut of the level below
    std::vector<std::size_t> items_; // indexes of the leaves' boxes
};

// The square of the distance from a point to the box; 0 inside.
inline double distanceSquared(Point2 p, const Box2& box) {
    const double x = std::max({box.low.x - p.x, p.x - box.high.x, 0.0});
    const double y = std::max({box.low.y - p.y, p.y - box.high.y, 0.0});
    return x * x + y * y;
}

} // namespace tessaran::geometry
