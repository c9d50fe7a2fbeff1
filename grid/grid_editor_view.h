#pragma once

// What the grid editor shows: every cell's outline in the colour of its value, selected cells
// filled with that colour and outlined.

#include "grid/grid_drawing_shapes.h"
#include "grid/grid_edit.h"
#include "host/graphics.h"

namespace tessaran::grid {

class GridEditorView {
  public:
    // The grid's colour table is made from the values that it begins with. Both outlive this.
    GridEditorView(host::Host& host, myGrid& grid);
    GridEditorView(const GridEditorView&) = delete;
    GridEditorView& operator=(const GridEditorView&) = delete;
    ~GridEditorView();

    void showValues(); // after some have changed
    void showSelection(const CellSelection& selection);

  private:
    void prepare();
    void showCells();

    host::Host& host_;
    myGrid& grid_;
    CellColours colours_;
    host::ShownGraphics cells_;
    host::ShownGraphics selected_;
};

} // namespace tessaran::grid
