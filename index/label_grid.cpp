#include "index/label_grid.h"

#include <algorithm>

namespace tessaran::index {

LabelGrid::LabelGrid(int nX, int nY)
    : nX_(nX), nY_(nY), state_(static_cast<std::size_t>(nX) * static_cast<std::size_t>(nY), kKept) {
}

void LabelGrid::addPillar(int i, int j, int pillar) {
    std::int32_t& state = state_[at(i, j)];
    entries_.push_back({pillar, state});
    state = static_cast<std::int32_t>(entries_.size());
}

std::vector<int> LabelGrid::pillars(int i, int j) const {
    std::vector<int> list;
    for (std::int32_t state = state_[at(i, j)]; state > 0;) {
        const Entry& entry = entries_[static_cast<std::size_t>(state) - 1];
        list.push_back(entry.pillar);
        state = entry.before;
    }
    std::reverse(list.begin(), list.end());
    return list;
}

std::string LabelGrid::text(int i, int j, std::span<const long> identifiers) const {
    if (isKept(i, j))
        return "0";
    if (isDropped(i, j))
        return "N";
    std::string list;
    for (const int pillar : pillars(i, j)) {
        if (!list.empty())
            list += ',';
        list += std::to_string(identifiers[static_cast<std::size_t>(pillar)]);
    }
    return list;
}

} // namespace tessaran::index
