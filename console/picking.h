#pragma once

// From an answer to objects of the drawing.

#include "console/answers.h"
#include "console/workspace.h"

#include <vector>

namespace tessaran::console {

// The topmost visible object within the pick tolerance of a place in world coordinates: half a
// percent of the view's height. No id when there is none.
EntityId pickAt(const drawing::Database& database, const host::Point2& world);

// A place on the object, world coordinates: its first point, else the middle of its extents.
Point3 placeOn(const drawing::Database& database, const host::Entity& entity);

// What one step of a selection names, without those that the filter leaves out; an error for
// handles that no object has. Steps that name no objects (remove, add) give none.
base::Result<std::vector<EntityId>> selectedBy(const SelectionStep& step, const Document& document,
                                               const host::SelectionFilter& filter);

} // namespace tessaran::console
