#pragma once

// Which entities pass a filter, and which lie in or across a shape.

#include "drawing/database.h"
#include "drawing/scene.h"

#include <vector>

namespace tessaran::drawing {

// A filter made ready for many entities. Names of layers and types in any capitals.
class FilterTest {
  public:
    FilterTest(const Tables& tables, const host::SelectionFilter& filter);
    bool operator()(const EntityRecord& record) const;

  private:
    const host::SelectionFilter& filter_;
    std::vector<char> layers_; // by layer index; empty: all pass
};

// In drawing order. Curves are held against the shape as they are, texts by their box, hatches and
// regions by their boundaries only. A window or crossing polygon closes itself and may have any
// shape; one of fewer than three points, a fence of fewer than two, or a point that is not finite
// selects nothing. Touching the shape from inside is inside; touching it at all is crossing it.
std::vector<host::EntityId> selectByShape(const Database& database,
                                          const host::SelectionShape& shape,
                                          const host::SelectionFilter& filter,
                                          Visibility visibility);

} // namespace tessaran::drawing
