#pragma once

// Where the drawing's entities lie, by the places they keep in drawing order. A packed tree over
// most of them, and a short list of those that changed since it was built: a search never waits for
// more than a rebuild, and a command that changes a few entities costs none.

#include "geometry/box_index.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace tessaran::drawing {

class SpatialIndex {
  public:
    // The entity of that slot was added, changed or erased.
    void touch(std::size_t slot) { touched_.push_back(slot); }

    // Takes up what was touched and slots that are new; boxOf(slot) gives an empty box for an empty
    // slot.
    template <class BoxOf>
    void update(std::size_t slots, const BoxOf& boxOf) {
        const std::size_t known = boxes_.size();
        boxes_.resize(slots);
        loose_.resize(slots, false);
        for (std::size_t slot = known; slot < slots; ++slot)
            touched_.push_back(slot);
        for (const std::size_t slot : touched_) {
            boxes_[slot] = boxOf(slot);
            if (!loose_[slot])
                looseSlots_.push_back(slot);
            loose_[slot] = true;
        }
        touched_.clear();
        if (looseSlots_.size() > kFewLoose + boxes_.size() / 16)
            rebuild();
    }

    const geometry::Box2& box(std::size_t slot) const { return boxes_[slot]; }

    // Slots whose boxes meet the given one, ascending.
    std::vector<std::size_t> query(const geometry::Box2& box) const {
        std::vector<std::size_t> found;
        tree_.forEach(box, [&](std::size_t slot) {
            if (!loose_[slot])
                found.push_back(slot);
        });
        for (const std::size_t slot : looseSlots_)
            if (!boxes_[slot].empty() && boxes_[slot].meets(box))
                found.push_back(slot);
        std::ranges::sort(found);
        return found;
    }

  private:
    static constexpr std::size_t kFewLoose = 256;

    void rebuild() {
        tree_ = geometry::BoxIndex(boxes_);
        looseSlots_.clear();
        loose_.assign(boxes_.size(), false);
    }

    std::vector<geometry::Box2> boxes_;
    geometry::BoxIndex tree_;
    std::vector<bool> loose_; // changed since the tree was built
    std::vector<std::size_t> looseSlots_;
    std::vector<std::size_t> touched_;
};

} // namespace tessaran::drawing
