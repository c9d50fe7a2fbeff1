#include "grid/cell_markers.h"

#include "base/tolerance.h"

#include <fmt/format.h>

namespace tessaran::grid {

namespace {

constexpr double kInnerOutline = 0.8; // of the cell's size
constexpr std::size_t kMostSingleMarks = 20'000;

} // namespace

int pillarOrOpeningColour(double value) {
    return value > base::kTolerance ? host::colour::kRed : host::colour::kGreen;
}

CellMarkers::CellMarkers(host::TemporaryGraphics& graphics, const myGrid& grid, ColourOf ofValue,
                         Style style)
    : graphics_(graphics), grid_(grid), colourOfValue_(std::move(ofValue)), style_(style) {
    const std::size_t count =
        static_cast<std::size_t>(grid.nX()) * static_cast<std::size_t>(grid.nY());
    if (count > kMostSingleMarks)
        patch_ = host::CellPatch{grid.origin().plan(),
                                 grid.xStep().plan(),
                                 grid.yStep().plan(),
                                 grid.nX(),
                                 grid.nY(),
                                 style_ == Style::filled,
                                 {}};
    for (int j = 0; j < grid.nY(); ++j)
        for (int i = 0; i < grid.nX(); ++i) {
            if (patch_)
                patch_->colours.push_back(static_cast<std::uint8_t>(colourOf({i, j})));
            else
                marks_.push_back(showCell({i, j}));
        }
    if (patch_)
        marks_.push_back(graphics_.showCells(*patch_));
}

CellMarkers::~CellMarkers() {
    for (const host::GraphicId mark : marks_)
        graphics_.remove(mark);
}

std::size_t CellMarkers::at(CellIndex cell) const {
    return static_cast<std::size_t>(cell.row) * static_cast<std::size_t>(grid_.nX()) +
           static_cast<std::size_t>(cell.column);
}

int CellMarkers::colourOf(CellIndex cell) const {
    return colourOfValue_(grid_.getValue(cell.column, cell.row));
}

// Filled: the corners scaled about the centre. Else the corners, and the scaled ones, in one line.
host::GraphicId CellMarkers::showCell(CellIndex cell) {
    const auto corners = *grid_.cellCorners(cell.column, cell.row);
    const geometry::Point2 centre = grid_.cellCenter(cell.column, cell.row)->plan();
    std::vector<geometry::Point2> inner;
    for (int k = 0; k <= 4; ++k)
        inner.push_back(centre +
                        kInnerOutline * (corners[static_cast<std::size_t>(k % 4)] - centre));
    if (style_ == Style::filled) {
        host::Loop loop;
        for (std::size_t k = 0; k < 4; ++k)
            loop.vertices.push_back({inner[k], 0.0});
        return graphics_.showEntity(
            {{}, "0", colourOf(cell), "ByLayer", host::Hatch{{std::move(loop)}, "SOLID", 0.0}});
    }
    std::vector<geometry::Point2> line(corners.begin(), corners.end());
    line.push_back(corners[0]);
    line.insert(line.end(), inner.begin(), inner.end());
    return graphics_.showPolyline(line, false, colourOf(cell));
}

void CellMarkers::update(CellIndex cell) {
    host::GraphicId& mark = patch_ ? marks_.front() : marks_[at(cell)];
    graphics_.remove(mark);
    if (patch_) {
        patch_->colours[at(cell)] = static_cast<std::uint8_t>(colourOf(cell));
        mark = graphics_.showCells(*patch_);
    } else {
        mark = showCell(cell);
    }
}

std::optional<CellIndex> pickCell(host::Host& host, const myGrid& grid,
                                  const std::string& message) {
    for (;;) {
        host.graphics().redraw();
        host::PointPrompt prompt;
        prompt.message = message;
        const auto picked = host.prompts().getPoint(prompt);
        if (!picked.ok())
            return std::nullopt;
        const CellIndex cell = grid.pointToCell(host.coordinates().toWorld(picked.value).plan());
        if (cell.column >= 0 && cell.row >= 0)
            return cell;
        host.print(fmt::format("\nSorry,this point ({:f},{:f}) is outside the grid!",
                               picked.value.x, picked.value.y));
    }
}

} // namespace tessaran::grid
