#pragma once

// Temporary marks of a grid's cells by what stands in them: red where the value is above 0 (a
// pillar), green elsewhere.

#include "grid/my_grid.h"
#include "host/graphics.h"

#include <optional>
#include <vector>

namespace tessaran::factors {

// Every cell's outline with a smaller one inside. Grids of very many cells are marked by one
// graphic of filled cells instead. The marks go with the object.
class CellMarkers {
  public:
    CellMarkers(host::TemporaryGraphics& graphics, const grid::myGrid& grid);
    CellMarkers(const CellMarkers&) = delete;
    CellMarkers& operator=(const CellMarkers&) = delete;
    ~CellMarkers();

    // After the cell's value changed.
    void update(grid::CellIndex cell);

  private:
    std::size_t at(grid::CellIndex cell) const;
    int colourOf(grid::CellIndex cell) const;
    host::GraphicId showCell(grid::CellIndex cell);

    host::TemporaryGraphics& graphics_;
    const grid::myGrid& grid_;
    std::vector<host::GraphicId> marks_; // one a cell, rows outer; or the one of all cells
    std::optional<host::CellPatch> patch_;
};

} // namespace tessaran::factors
