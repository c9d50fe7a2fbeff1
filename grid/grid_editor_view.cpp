#include "grid/grid_editor_view.h"

#include "base/progress.h"
#include "host/host.h"

#include <algorithm>

namespace tessaran::grid {
namespace {

constexpr std::uint8_t kWithoutValueColour = 8; // dark grey
constexpr std::uint8_t kSelectedColour = host::colour::kForeground;

// Cells without a value can be selected too, so they are shown.
void colourCellsWithoutValue(CellColours& colours) {
    std::ranges::replace(colours, std::uint8_t{0}, kWithoutValueColour);
}

} // namespace

GridEditorView::GridEditorView(host::Host& host, myGrid& grid)
    : host_(host), grid_(grid), cells_(host.graphics()), selected_(host.graphics()) {
    grid_.forgetDefaultColours();
    prepare();
    showCells();
}

// The next one to colour the grid makes the default table from the values as they are then.
GridEditorView::~GridEditorView() {
    grid_.forgetDefaultColours();
}

void GridEditorView::prepare() {
    base::ProgressRun meter(host_.meter(), "Initializing Grid Editor ...", 0, grid_.nX());
    colours_.resize(static_cast<std::size_t>(grid_.nX()) * static_cast<std::size_t>(grid_.nY()));
    for (int i = 0; i < grid_.nX(); ++i) {
        meter.at(i);
        colourColumn(grid_, i, colours_);
    }
    colourCellsWithoutValue(colours_);
}

void GridEditorView::showCells() {
    cells_.clear();
    cells_.cells(cellPatch(grid_, colours_, false));
    host_.graphics().redraw();
}

void GridEditorView::showValues() {
    colours_ = coloursByValue(grid_);
    colourCellsWithoutValue(colours_);
    showCells();
}

void GridEditorView::showSelection(const CellSelection& selection) {
    selected_.clear();
    if (!selection.empty()) {
        CellColours fill(colours_.size());
        CellColours outline(colours_.size());
        std::size_t k = 0;
        for (int j = 0; j < grid_.nY(); ++j)
            for (const std::uint8_t selected : selection.row(j)) {
                fill[k] = selected != 0 ? colours_[k] : std::uint8_t{0};
                outline[k] = selected != 0 ? kSelectedColour : std::uint8_t{0};
                ++k;
            }
        selected_.cells(cellPatch(grid_, std::move(fill), true));
        selected_.cells(cellPatch(grid_, std::move(outline), false));
    }
    host_.graphics().redraw();
}

} // namespace tessaran::grid
