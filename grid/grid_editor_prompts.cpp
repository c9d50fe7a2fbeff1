#include "grid/grid_editor_prompts.h"

#include "base/tolerance.h"
#include "host/host.h"

#include <fmt/format.h>

#include <array>
#include <vector>

namespace tessaran::grid {
namespace {

using host::Host;
using host::PointPrompt;
using host::PromptStatus;
using Kind = EditorStep::Kind;
using Points = std::optional<std::vector<Point2>>; // drawing coordinates; nothing: left early

constexpr const char* kSelect =
    "\nSelect Grid Cells[Window/Crossing/ALL/Fence/WPolygon/CPolygon/Remove]:";
constexpr const char* kSelectKeywords =
    "WINDOW,W CROSSING,C ALL,A FENCE,F WPOLYGON,WP CPOLYGON,CP REMOVE,R";
constexpr const char* kRemove = "\nRemove Grid Cells[Window/Crossing/ALL/Fence/WPolygon/CPolygon]:";
constexpr const char* kRemoveKeywords = "WINDOW,W CROSSING,C ALL,A FENCE,F WPOLYGON,WP CPOLYGON,CP";

constexpr int kDrawnColour = host::colour::kForeground; // of a fence or polygon being drawn

struct ChainTexts {
    const char* first;
    const char* next;
};
constexpr ChainTexts kFence{"\nSpecify first fence point:", "\nPick next fence point or UNDO:"};
constexpr ChainTexts kPolygon{"\nSpecify first polygon point:",
                              "\nPick next polygon point or UNDO:"};

// What the status area tells at each of the editor's points.
auto cellUnderCursor(Host& host, const myGrid& grid) {
    return [&host, &grid](const Point3& cursor) {
        return cellStatus(grid, host.coordinates().toWorld(cursor).plan());
    };
}

// A box along the user's axes, as its four corners.
Points askBox(Host& host, const myGrid& grid) {
    const auto one = host.prompts().getPoint({.message = "\nPick the first corner:",
                                              .keywords = {},
                                              .statusAt = cellUnderCursor(host, grid)});
    if (!one.ok())
        return std::nullopt;
    const auto other = host.prompts().getCorner({.message = "Pick the oppsite corner:",
                                                 .keywords = {},
                                                 .base = one.value,
                                                 .rubberBand = host::RubberBand::box,
                                                 .statusAt = cellUnderCursor(host, grid)});
    if (!other.ok())
        return std::nullopt;
    const Point3& a = one.value;
    const Point3& b = other.value;
    std::vector<Point2> corners;
    for (const Point3& corner : {a, Point3{b.x, a.y, a.z}, b, Point3{a.x, b.y, a.z}})
        corners.push_back(host.coordinates().toWorld(corner).plan());
    return corners;
}

// Point by point until Enter; what was drawn so far is shown.
Points askChain(Host& host, const myGrid& grid, const ChainTexts& texts) {
    host::ShownGraphics shown(host.graphics());
    std::vector<Point3> chain; // user coordinates
    std::vector<Point2> points;
    for (;;) {
        PointPrompt prompt{.message = texts.first, .keywords = {}};
        if (!chain.empty())
            prompt = {.message = texts.next,
                      .keywords = "UNDO,U",
                      .base = chain.back(),
                      .rubberBand = host::RubberBand::line};
        prompt.statusAt = cellUnderCursor(host, grid);
        const auto answer = host.prompts().getPoint(prompt);
        if (answer.status == PromptStatus::none && !chain.empty())
            return points;
        if (answer.ok()) {
            chain.push_back(answer.value);
            points.push_back(host.coordinates().toWorld(answer.value).plan());
        } else if (answer.status == PromptStatus::keyword) {
            chain.pop_back();
            points.pop_back();
        } else {
            return std::nullopt;
        }
        shown.clear();
        shown.polyline(points, false, kDrawnColour);
    }
}

using CellsOf = CellRuns (*)(const myGrid&, std::span<const Point2>);

EditorStep shapeStep(const myGrid& grid, const Points& points, CellsOf cellsOf) {
    if (!points)
        return {Kind::none};
    return {Kind::cells, cellsOf(grid, *points)};
}

EditorStep keywordStep(Host& host, const myGrid& grid, const std::string& keyword) {
    if (keyword == "WINDOW")
        return shapeStep(grid, askBox(host, grid), cellsInside);
    if (keyword == "CROSSING")
        return shapeStep(grid, askBox(host, grid), cellsTouched);
    if (keyword == "FENCE")
        return shapeStep(grid, askChain(host, grid, kFence), cellsCrossed);
    if (keyword == "WPOLYGON")
        return shapeStep(grid, askChain(host, grid, kPolygon), cellsInside);
    if (keyword == "CPOLYGON")
        return shapeStep(grid, askChain(host, grid, kPolygon), cellsTouched);
    if (keyword == "ALL")
        return {Kind::cells, allCells(grid)};
    return {Kind::remove};
}

EditorStep pointStep(Host& host, const myGrid& grid, const Point3& user) {
    const CellIndex cell = grid.pointToCell(host.coordinates().toWorld(user).plan());
    if (cell.column < 0 || cell.row < 0) {
        host.print(fmt::format("\nThe point is outside of the Grid<{:f},{:f}>!", user.x, user.y));
        return {Kind::none};
    }
    return {Kind::cells, {{cell.row, cell.column, cell.column + 1}}};
}

} // namespace

std::string cellStatus(const myGrid& grid, Point2 point) {
    const CellIndex cell = grid.pointToCell(point);
    if (cell.column < 0 || cell.row < 0)
        return {};
    const double value = grid.getValue(cell.column, cell.row);
    if (!base::hasValue(value))
        return fmt::format("Cell({},{}) Value: N", cell.column, cell.row);
    return fmt::format("Cell({},{}) Value: {:.2f}", cell.column, cell.row, value);
}

EditorStep askEditorStep(Host& host, const myGrid& grid, bool removing) {
    PointPrompt prompt{.message = removing ? kRemove : kSelect,
                       .keywords = removing ? kRemoveKeywords : kSelectKeywords};
    prompt.statusAt = cellUnderCursor(host, grid);
    const auto answer = host.prompts().getPoint(prompt);
    switch (answer.status) {
    case PromptStatus::ok:
        return pointStep(host, grid, answer.value);
    case PromptStatus::keyword:
        return keywordStep(host, grid, answer.keyword);
    case PromptStatus::none:
        return {Kind::enter};
    default:
        return {Kind::cancel};
    }
}

} // namespace tessaran::grid
