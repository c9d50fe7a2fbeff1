#include "console/console_host.h"

#include "drawing/coordinates.h"

#include <algorithm>

namespace tessaran::console {

host::Point3 ConsoleHost::toWorld(const host::Point3& user) const {
    return drawing::toWorld(state_.workspace.database().ucs(), user);
}

host::Point3 ConsoleHost::toUser(const host::Point3& world) const {
    return drawing::toUser(state_.workspace.database().ucs(), world);
}

void ConsoleHost::showInView(const host::Box2& world, double margin) {
    if (world.empty())
        return;
    drawing::Database& database = state_.workspace.database();
    drawing::View view = database.view();
    previousView_ = view;
    const double aspect = static_cast<double>(view.widthPixels) / view.heightPixels;
    const double height = std::max(world.height(), world.width() / aspect) * margin;
    view.centre = world.centre();
    if (height > 0.0)
        view.height = height;
    database.setView(view);
}

void ConsoleHost::quit() {
    if (quit_)
        quit_();
}

void ConsoleHost::endProgram(int status) {
    endStatus_ = status;
    quit();
}

void ConsoleHost::zoomPrevious() {
    if (previousView_)
        state_.workspace.database().setView(*previousView_);
    previousView_.reset();
}

} // namespace tessaran::console
