#pragma once

// Clicks as the lines that a script would hold, so that what was clicked can be run again.

#include "console/workspace.h"

#include <string>
#include <vector>

namespace tessaran::desktop {

// "x,y" in user coordinates, with a Z only where it is not 0. Places that come from the mouse alone
// are rounded to a hundredth of a pixel; `exact` ones, from snaps, are not.
std::string pointLine(const drawing::Database& database, host::Point3 world, bool exact);

// "#1F x,y" of an object to pick; "#0 x,y" of a place where nothing lies.
std::string pickLine(const drawing::Database& database, host::EntityId hit, host::Point3 world);

std::string handlesLine(const std::vector<host::EntityId>& ids); // "#1F #2A"

// "window x,y x,y" or "crossing x,y x,y": to the right, or to the left.
std::string boxLine(const drawing::Database& database, host::Point2 from, host::Point2 to);

} // namespace tessaran::desktop
