#pragma once

// Grid files and grid definition files: text in, a grid or the reason why not out. Nothing here
// speaks to the user; myGrid's file operations do, and readAnyGridFile at the end.
//
// Grid file (".grd"), one number a line: lowest Y, lowest X, highest Y, highest X, columns, rows,
// then (nX+1) * (nY+1) values, rows outer ("N": no value), the title, and the marker line that
// tells the system's own files. Files without the marker hold node values, which are averaged into
// cells. The rotation is not stored.
//
// Grid definition file (".top", ".f"): a header line with commas ("1,count,size,nX,nY,x,y,mean", or
// without the leading 1), in the form with the 1 a title and a units line, then nX * nY values, one
// a line, columns outer.
//
// Lines end with CR LF when written; LF alone is read as well.

#include "base/progress.h"
#include "base/result.h"
#include "grid/my_grid.h"

#include <cstddef>
#include <functional>
#include <string>
#include <string_view>

namespace tessaran::grid {

inline constexpr std::string_view kGridFileMarker = "ZELK Stability Application";

// Larger grids are only set up from a file that is long enough to hold their values.
inline constexpr std::size_t kValuesWithoutFile = std::size_t{1} << 24;

struct GridHeader {
    double yMin = 0.0;
    double xMin = 0.0;
    double yMax = 0.0;
    double xMax = 0.0;
    int nX = 0;
    int nY = 0;
    std::size_t valuesAt = 0; // where in the text the first value line begins
};

// The error's text is the stated message.
base::Result<GridHeader> readGridHeader(std::string_view text);

// Sets the grid up as the header says; refuses counts that the text cannot hold.
base::Result<void> setupFromHeader(const GridHeader& header, std::size_t textSize, myGrid& grid);

// Values, title and marker into a grid that was set up by the header; averages node values. An
// error means that the text ends too early (what was there is in the grid) or that `progress` was
// cancelled. Progress runs over 0..nY.
base::Result<void> readGridValues(std::string_view text, const GridHeader& header, myGrid& grid,
                                  base::Progress& progress);

// All three, for programs without a host.
base::Result<void> readGridText(std::string_view text, bool loadValues, myGrid& grid,
                                base::Progress& progress);
base::Result<void> readGridFile(const std::string& fileName, bool loadValues, myGrid& grid,
                                base::Progress& progress);

using TextSink = std::function<void(std::string_view)>;

// The grid file's text in pieces, in order; state error "Grid is not defined!".
base::Result<void> writeGridText(const myGrid& grid, const TextSink& sink,
                                 base::Progress& progress);
// Written whole or not at all.
base::Result<void> writeGridFile(const myGrid& grid, const std::string& fileName,
                                 base::Progress& progress);

// --- grid definition files ----------------------------------------------------------------------

struct DefinitionHeader {
    long long count = 0;
    float cellSize = 0.0F; // the format's numbers are single precision
    int nX = 0;
    int nY = 0;
    float originX = 0.0F;
    float originY = 0.0F;
    std::size_t valuesAt = 0;
};

base::Result<DefinitionHeader> readDefinitionHeader(std::string_view text);
bool setupFromHeader(const DefinitionHeader& header, myGrid& grid);
base::Result<void> readDefinitionValues(std::string_view text, const DefinitionHeader& header,
                                        myGrid& grid);
base::Result<void> readDefinitionText(std::string_view text, bool loadValues, myGrid& grid);
base::Result<void> writeDefinitionText(const myGrid& grid, const TextSink& sink);

// --- by name ------------------------------------------------------------------------------------

enum class GridFileKind { grid, definition, unknown };
// ".grd" anywhere after the first character makes a grid file, else ".top" or ".f" a definition
// file; capitals do not matter.
GridFileKind gridFileKind(std::string_view fileName);

// Reads with the reader that the name asks for, telling the user what goes wrong.
bool readAnyGridFile(host::Host& host, const std::string& fileName, bool loadValues, myGrid& grid);

} // namespace tessaran::grid
