#include "console/kept_graphics.h"

namespace tessaran::console {

host::GraphicId KeptGraphics::keep(Graphic graphic) {
    ++changes_;
    graphics_.emplace(++lastId_, std::move(graphic));
    return {lastId_};
}

host::GraphicId KeptGraphics::showPolyline(const std::vector<host::Point2>& points, bool closed,
                                           int colour) {
    return keep(Outline{points, closed, colour});
}

host::GraphicId KeptGraphics::showCells(host::CellPatch patch) {
    return keep(std::move(patch));
}

host::GraphicId KeptGraphics::showEntity(const host::Entity& entity) {
    return keep(entity);
}

void KeptGraphics::remove(host::GraphicId id) {
    ++changes_;
    graphics_.erase(id.value);
}

void KeptGraphics::highlight(const std::vector<host::EntityId>& entities, bool on) {
    ++changes_;
    for (const host::EntityId id : entities) {
        if (on)
            highlighted_.insert(id);
        else
            highlighted_.erase(id);
    }
}

void KeptGraphics::clear() {
    ++changes_;
    graphics_.clear();
    highlighted_.clear();
}

} // namespace tessaran::console
