#pragma once

// The twelve defect grid files in the drawing's folder.

#include "grid/my_grid.h"
#include "rfri/categories.h"

#include <string>

namespace tessaran::host {
class Host;
}

namespace tessaran::rfri {

// A file of the method: a name is taken from the drawing's folder (the current one for an unsaved
// drawing), a whole path stays.
std::string workingPath(host::Host& host, const std::string& file);

// A grid file's name as it was typed, with ".grd" at its end, by which it is read again; an empty
// one leaves the name that stood there before.
std::string gridFileName(const std::string& typed, const std::string& before);

// Same counts; widths and origin within 1e-6, or 1e-6 of a cell where that is more.
bool matches(const grid::myGrid& grid, const grid::myGrid& base);

// Files hold no rotation: a grid that matches the drawing's base grid takes the base grid's.
void takeBaseRotation(host::Host& host, grid::myGrid& grid);

// What the final calculation needs. Files that can be read set the drawing's base grid when there
// is none. Where a file is missing, or matches the base grid not, a grid of the category's default
// value is written; a file that it replaces stays as FILE.bak (FILE.bak2 and so on where there is
// one). Files that cannot be read stay as they are. All is told at the command line. False when
// there is no base grid after this.
bool prepareDefectFiles(host::Host& host, const CategoryRecords& records);

} // namespace tessaran::rfri
