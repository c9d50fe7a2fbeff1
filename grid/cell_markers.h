#pragma once

// Temporary marks of a grid's cells, coloured by what stands in them.

#include "grid/my_grid.h"
#include "host/host.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::grid {

// Red where the value is above 0 (a pillar), green elsewhere.
int pillarOrOpeningColour(double value);

// Every cell's outline with a smaller one inside, or the smaller one filled. Grids of very many
// cells are marked by one graphic of filled cells instead. The marks go with the object.
class CellMarkers {
  public:
    enum class Style { outlines, filled };
    using ColourOf = std::function<int(double)>;

    CellMarkers(host::TemporaryGraphics& graphics, const myGrid& grid,
                ColourOf ofValue = pillarOrOpeningColour, Style style = Style::outlines);
    CellMarkers(const CellMarkers&) = delete;
    CellMarkers& operator=(const CellMarkers&) = delete;
    ~CellMarkers();

    // After the cell's value changed.
    void update(CellIndex cell);

  private:
    std::size_t at(CellIndex cell) const;
    int colourOf(CellIndex cell) const;
    host::GraphicId showCell(CellIndex cell);

    host::TemporaryGraphics& graphics_;
    const myGrid& grid_;
    ColourOf colourOfValue_;
    Style style_;
    std::vector<host::GraphicId> marks_; // one a cell, rows outer; or the one of all cells
    std::optional<host::CellPatch> patch_;
};

// The cell under a picked point, asked for until one lies in the grid; a point outside is told.
// Nothing when the user ends it. What was drawn before is shown first.
std::optional<CellIndex> pickCell(host::Host& host, const myGrid& grid, const std::string& message);

} // namespace tessaran::grid
