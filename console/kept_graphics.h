#pragma once

// Temporary graphics kept as data: what a window draws over the drawing, and what tests look at.

#include "host/graphics.h"

#include <map>
#include <set>
#include <variant>

namespace tessaran::console {

class KeptGraphics final : public host::TemporaryGraphics {
  public:
    struct Outline {
        std::vector<host::Point2> points;
        bool closed = false;
        int colour = host::colour::kForeground;
    };
    using Graphic = std::variant<Outline, host::CellPatch, host::Entity>;

    host::GraphicId showPolyline(const std::vector<host::Point2>& points, bool closed,
                                 int colour) override;
    host::GraphicId showCells(host::CellPatch patch) override;
    host::GraphicId showEntity(const host::Entity& entity) override;
    void remove(host::GraphicId id) override;
    void highlight(const std::vector<host::EntityId>& entities, bool on) override;
    void redraw() override {}

    const std::map<std::uint64_t, Graphic>& graphics() const { return graphics_; }
    const std::set<host::EntityId>& highlighted() const { return highlighted_; }
    // Goes up with every change.
    std::uint64_t changes() const { return changes_; }
    void clear();

  private:
    host::GraphicId keep(Graphic graphic);

    std::map<std::uint64_t, Graphic> graphics_;
    std::set<host::EntityId> highlighted_;
    std::uint64_t lastId_ = 0;
    std::uint64_t changes_ = 0;
};

} // namespace tessaran::console
