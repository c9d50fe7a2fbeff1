#include "console/console_host.h"

#include "drawing/coordinates.h"

namespace tessaran::console {

host::Point3 ConsoleHost::toWorld(const host::Point3& user) const {
    return drawing::toWorld(state_.workspace.database().ucs(), user);
}

host::Point3 ConsoleHost::toUser(const host::Point3& world) const {
    return drawing::toUser(state_.workspace.database().ucs(), world);
}

} // namespace tessaran::console
