#include "geometry/box_index.h"

#include <algorithm>
#include <cmath>
#include <numeric>

namespace tessaran::geometry {

namespace {

// Boxes sorted into vertical slices by x, each slice by y, so that neighbours share nodes.
void orderByTiles(std::vector<std::size_t>& items, std::span<const Box2> boxes,
                  std::size_t fanOut) {
    const auto middle = [](double low, double high) {
        const double sum = low + high;
        return std::isfinite(sum) ? sum : 0.0; // boxes without bounds
    };
    const auto byX = [&](std::size_t a, std::size_t b) {
        return middle(boxes[a].low.x, boxes[a].high.x) < middle(boxes[b].low.x, boxes[b].high.x);
    };
    const auto byY = [&](std::size_t a, std::size_t b) {
        return middle(boxes[a].low.y, boxes[a].high.y) < middle(boxes[b].low.y, boxes[b].high.y);
    };
    std::sort(items.begin(), items.end(), byX);
    const double nodes = std::ceil(static_cast<double>(items.size()) / static_cast<double>(fanOut));
    const auto slice =
        std::max<std::size_t>(1, fanOut * static_cast<std::size_t>(std::ceil(std::sqrt(nodes))));
    for (std::size_t begin = 0; begin < items.size(); begin += slice) {
        const std::size_t end = std::min(items.size(), begin + slice);
        std::sort(items.begin() + static_cast<std::ptrdiff_t>(begin),
                  items.begin() + static_cast<std::ptrdiff_t>(end), byY);
    }
}

} // namespace

BoxIndex::BoxIndex(std::span<const Box2> boxes) {
    for (std::size_t k = 0; k < boxes.size(); ++k)
        if (!boxes[k].empty())
            items_.push_back(k);
    if (items_.empty())
        return;
    orderByTiles(items_, boxes, kFanOut);
    std::vector<Box2>& leaves = levels_.emplace_back();
    for (const std::size_t k : items_)
        leaves.push_back(boxes[k]);
    while (levels_.back().size() > kFanOut) {
        const std::vector<Box2>& below = levels_.back();
        std::vector<Box2> level((below.size() + kFanOut - 1) / kFanOut);
        for (std::size_t k = 0; k < below.size(); ++k)
            level[k / kFanOut].add(below[k]);
        levels_.push_back(std::move(level));
    }
}

std::vector<std::size_t> BoxIndex::query(const Box2& box) const {
    std::vector<std::size_t> found;
    forEach(box, [&](std::size_t k) { found.push_back(k); });
    std::sort(found.begin(), found.end());
    return found;
}

bool BoxIndex::anyMeet(const Box2& box, std::size_t count) const {
    if (levels_.empty() || count == 0)
        return count == 0;
    std::size_t found = 0;
    std::vector<std::pair<std::size_t, std::size_t>> open{{levels_.size() - 1, 0}};
    while (!open.empty()) {
        const auto [level, group] = open.back();
        open.pop_back();
        const std::vector<Box2>& boxes = levels_[level];
        const std::size_t end = std::min(boxes.size(), (group + 1) * kFanOut);
        for (std::size_t k = group * kFanOut; k < end; ++k) {
            if (!boxes[k].meets(box))
                continue;
            if (level > 0)
                open.emplace_back(level - 1, k);
            else if (++found == count)
                return true;
        }
    }
    return false;
}

} // namespace tessaran::geometry
