#include "grid/grid_drawing.h"

#include "grid/grid_drawing_objects.h"
#include "grid/grid_drawing_shapes.h"
#include "host/services_view.h"

#include <fmt/format.h>

#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {
namespace {

using host::EntityId;
using host::Host;
using host::ShownGraphics;

constexpr const char* kPreviewGroup = "PlekGrid";
constexpr const char* kMapGroup = "Zelk_Grid_Group";
constexpr const char* kKeepPrompt = "\nThe grid is shown for a look [Keep] <Erase>:";

bool isPreview(DrawMode mode) {
    return mode.kind == DrawMode::Kind::preview;
}

bool isFilled(DrawMode mode) {
    return !isPreview(mode) && (mode.number == 5 || mode.number == 7);
}

// What is told before a grid is drawn; false when it cannot be.
bool mayDraw(Host& host, myGrid& grid) {
    if (!grid.isDefined()) {
        host.print("\n Grid id not defined!");
        return false;
    }
    const std::optional<geometry::Box2> view = host::viewRectangle(host);
    if (view && !gridMeetsBox(grid, *view))
        host.print("\nAttention: Grid may be drawn outside the view!");
    if (const std::size_t missing = grid.countWithoutValue(); missing > 0)
        host.print(fmt::format("\n{} cells without value are left out.", missing));
    grid.forgetDefaultColours(); // the values may have changed since
    return true;
}

int currentLayerColour(const host::Drawing& drawing) {
    const std::optional<host::Layer> layer = drawing.layer(drawing.currentLayer());
    return layer ? layer->colour : host::colour::kForeground;
}

void showCellLines(ShownGraphics& shown, const myGrid& grid) {
    const auto show = [&](int number, Point2 from, Point2 to) {
        shown.polyline({from, to}, false, lineColour(number));
    };
    for (int i = 0; i <= grid.nX(); ++i)
        show(i, grid.nodePoint(i, 0), grid.nodePoint(i, grid.nY()));
    for (int j = 0; j <= grid.nY(); ++j)
        show(j, grid.nodePoint(0, j), grid.nodePoint(grid.nX(), j));
}

CellColours seamPreviewColours(Host& host, const myGrid& grid) {
    if (drawnOnSeamLayers(grid))
        return coloursBySeam(grid);
    return oneColour(grid, currentLayerColour(host.drawing()));
}

void show(ShownGraphics& shown, Host& host, const myGrid& grid, DrawMode mode) {
    if (isPreview(mode) && mode.number == 1)
        showCellLines(shown, grid);
    else if (isPreview(mode) && mode.number == 3)
        shown.cells(cellPatch(grid, seamPreviewColours(host, grid), false));
    else
        shown.cells(cellPatch(grid, coloursByValue(grid), isFilled(mode)));
    host.graphics().redraw();
}

bool wantsAll(Host& host, const myGrid& grid, DrawMode mode) {
    const std::size_t count = objectCount(grid, mode);
    if (count <= kManyObjects)
        return true;
    const std::string text =
        fmt::format("{} objects will be added to the drawing. Do you want to keep them?", count);
    return host.dialogs().ask({text, host::Buttons::yesNo, host::Question::Stake::ordinary}) ==
           host::Answer::yes;
}

// `group` null: not gathered.
bool make(Host& host, const myGrid& grid, DrawMode mode, const char* group) {
    if (!wantsAll(host, grid, mode))
        return false;
    const std::optional<std::vector<EntityId>> made = addObjects(host, grid, mode);
    if (!made)
        return false;
    if (group == nullptr || made->empty())
        return true;
    const base::Result<void> gathered = host.drawing().setGroup(group, *made);
    if (!gathered)
        host.print("\n" + gathered.error().message());
    return gathered.ok();
}

} // namespace

bool drawAfterBuild(Host& host, myGrid& grid, DrawMode mode) {
    if (!mayDraw(host, grid))
        return false;
    {
        ShownGraphics shown(host.graphics());
        show(shown, host, grid, mode);
        const auto answer = host.prompts().getKeyword(kKeepPrompt, "Keep");
        if (answer.status != host::PromptStatus::ok && answer.status != host::PromptStatus::keyword)
            return false;
    }
    return make(host, grid, mode, kPreviewGroup);
}

bool drawForGood(Host& host, myGrid& grid, DrawMode mode) {
    if (!mayDraw(host, grid))
        return false;
    const bool gathered = isPreview(mode) || (isFilled(mode) && grid.drawingSettings().grouped);
    const char* group = isPreview(mode) ? kPreviewGroup : kMapGroup;
    return make(host, grid, mode, gathered ? group : nullptr);
}

bool drawForGood(Host& host, myGrid& grid) {
    return drawForGood(host, grid, colourMap(grid.drawingSettings().mode));
}

} // namespace tessaran::grid
