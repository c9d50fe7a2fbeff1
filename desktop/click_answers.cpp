#include "desktop/click_answers.h"

#include "base/numbers.h"
#include "console/answers.h"
#include "drawing/coordinates.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::desktop {
namespace {

using host::Point3;

constexpr double kPixelShare = 0.01;

// Decimal places that tell a hundredth of a pixel.
int decimalsFor(const drawing::Database& database) {
    const double step = kPixelShare * database.view().unitsPerPixel();
    return step > 0.0 && std::isfinite(step)
               ? std::clamp(static_cast<int>(std::ceil(-std::log10(step))), 0, 12)
               : 6;
}

double roundedTo(double value, int decimals) {
    const double unit = std::pow(10.0, decimals);
    const double rounded = std::round(value * unit) / unit;
    return std::isfinite(rounded) ? rounded + 0.0 : value;
}

std::string written(const drawing::Database& database, Point3 world, bool exact) {
    Point3 user = drawing::toUser(database.ucs(), world);
    if (!exact) {
        const int decimals = decimalsFor(database);
        user = {roundedTo(user.x, decimals), roundedTo(user.y, decimals),
                roundedTo(user.z, decimals)};
    }
    std::string out = base::shortest(user.x) + "," + base::shortest(user.y);
    return user.z == 0.0 ? out : out + "," + base::shortest(user.z);
}

} // namespace

std::string pointLine(const drawing::Database& database, Point3 world, bool exact) {
    return written(database, world, exact);
}

std::string pickLine(const drawing::Database& database, host::EntityId hit, Point3 world) {
    return fmt::format("{} {}", console::handleText(hit), written(database, world, false));
}

std::string handlesLine(const std::vector<host::EntityId>& ids) {
    std::string out;
    for (const host::EntityId id : ids)
        out += (out.empty() ? "" : " ") + console::handleText(id);
    return out;
}

std::string boxLine(const drawing::Database& database, host::Point2 from, host::Point2 to) {
    return fmt::format("{} {} {}", to.x > from.x ? "window" : "crossing",
                       written(database, {from.x, from.y, 0.0}, false),
                       written(database, {to.x, to.y, 0.0}, false));
}

} // namespace tessaran::desktop
