#pragma once

// What lies under the cursor.

#include "drawing/database.h"

#include <optional>

namespace tessaran::drawing {

// Half the side of the pick box, as a share of the view's height.
inline constexpr double kPickShare = 0.005;

struct Hit {
    host::EntityId entity;
    host::Point2 at;       // the closest place on it
    double distance = 0.0; // 0 inside a wide line or a text
};

// The topmost (last drawn) entity that is shown, passes the filter and comes within the tolerance
// of the point. Curves are true, wide polylines are hit on their width, texts in their box, hatches
// and regions at their boundaries only, so that what lies under a fill can be picked.
std::optional<Hit> hitTest(const Database& database, host::Point2 at, double tolerance,
                           const host::SelectionFilter& filter = {});

// The same with the pick tolerance of the drawing's view.
std::optional<Hit> hitTest(const Database& database, host::Point2 at,
                           const host::SelectionFilter& filter = {});

} // namespace tessaran::drawing
