#pragma once

// The one regular cell grid that the whole system computes on. It lies over the mine plan in
// drawing coordinates: a low-left corner, columns and rows of cells, a cell width in each
// direction and a rotation, and one double a grid position.
//
// Cell (i, j), column i along the grid's X axis and row j along its Y axis, both from 0, is the
// parallelogram of the nodes (i, j), (i+1, j), (i+1, j+1), (i, j+1); node (i, j) lies at
// origin + i * xStep + j * yStep. The store has one column and one row more than there are cells,
// so that node values of foreign grid files fit; statistics look at the cells only.
//
// A cell of -1e20 or less, or not-a-number, has no value: statistics skip it, rescaling leaves it.

#include "base/tolerance.h"
#include "geometry/point.h"
#include "grid/colour_ramp.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::grid {

using geometry::Point2;
using geometry::Point3;
using geometry::Vector3;

// A cell's place. pointToCell answers with kBefore and kBeyond outside the grid.
struct CellIndex {
    int column = 0;
    int row = 0;

    friend bool operator==(CellIndex, CellIndex) = default;
};
inline constexpr int kBefore = -1; // on or before the axis line through the origin
inline constexpr int kBeyond = -2; // beyond the last column or row

struct MinMax {
    double min = 0.0;
    double max = 0.0;
};

// What a grid is made of besides origin and values.
struct GridDefinition {
    int nX = 0;
    int nY = 0;
    double rotation = 0.0; // radians
    double cellWidthX = 0.0;
    double cellWidthY = 0.0;
};

// How a grid is drawn (grid/grid_drawing.h).
struct DrawingSettings {
    int colour = 0;        // 0: every cell in its value's colour; else all cells in this one
    bool outlined = false; // filled maps get the outlines of their areas too
    int mode = 5;          // colour map 0 to 7
    std::string layer{};   // empty: no layer of its own, drawn on the current one
    bool grouped = true;   // gathers what is drawn under a group's name
};

// Cells kept with a grid for whoever marks or selects some.
class CellList {
  public:
    void add(CellIndex cell) { cells_.push_back(cell); }
    void clear() { cells_.clear(); }
    std::size_t size() const { return cells_.size(); }
    bool get(std::size_t index, CellIndex& cell) const; // false beyond the list's end
    const std::vector<CellIndex>& cells() const { return cells_; }

  private:
    std::vector<CellIndex> cells_;
};

class myGrid { // NOLINT(readability-identifier-naming): the name is the system's own
  public:
    // More positions than this are refused before memory is taken: 2 GiB of values.
    static constexpr std::size_t kMostValues = std::size_t{1} << 28;

    myGrid() = default;
    myGrid(const myGrid&) = delete; // passed by reference
    myGrid& operator=(const myGrid&) = delete;
    virtual ~myGrid() = default;

    // --- definition -----------------------------------------------------------------------------
    // Replaces counts, widths, rotation and values; every value becomes blankValue(). False, and
    // the grid unchanged, when a count is below 1 or absurd, cellWidthY is below 0.0001, or there
    // is no memory. The X width is not checked here, as isDefined() does.
    bool setupGrid(int nX, int nY, double cellWidthX, double cellWidthY, double rotationDegrees);
    // Both widths above 0.0001 and at least 2 columns and 2 rows.
    bool isDefined() const;
    std::optional<GridDefinition> getDefinition() const; // nothing when not defined
    void setOrigin(double x, double y, double z);
    void setBlankValue(double value) { blankValue_ = value; }

    int nX() const { return nX_; }
    int nY() const { return nY_; }
    double cellWidthX() const { return cellWidthX_; }
    double cellWidthY() const { return cellWidthY_; }
    double rotation() const { return rotation_; } // radians
    const Point3& origin() const { return origin_; }
    const Vector3& xStep() const { return xStep_; } // edge of one cell along X
    const Vector3& yStep() const { return yStep_; }
    double blankValue() const { return blankValue_; }

    // --- values ----------------------------------------------------------------------------------
    // Columns 0..nX and rows 0..nY; outside, reads give 0.0 or false and writes are ignored.
    double getValue(int i, int j) const;
    bool getValue(int i, int j, double& value) const;
    bool setValue(int i, int j, double value);
    bool setValueText(int i, int j, std::string_view text);

    // Raw rows for kernels: nX + 1 values of row j, 0 <= j <= nY, not checked in any build. All
    // values stand one row after the other.
    std::span<double> row(int j) { return {values_.data() + rowStart(j), rowLength()}; }
    std::span<const double> row(int j) const { return {values_.data() + rowStart(j), rowLength()}; }
    std::span<double> values() { return values_; }
    std::span<const double> values() const { return values_; }

    // Over the cells that have a value. getMinMax: nothing when not defined or no cell has one.
    std::optional<MinMax> getMinMax() const;
    double getMean() const; // 0.0 when not defined or no cell has a value
    std::size_t countWithoutValue() const;

    void fillValue(double value);           // the cells; the extra column and row keep theirs
    void scaleValues(double factor);        // the extra column and row too
    void rescaleValues(double a, double b); // stretched over a to b, the extra ones too

    // --- places ----------------------------------------------------------------------------------
    // 0 <= i <= nX, 0 <= j <= nY; z is the value.
    std::optional<Point3> cellCenter(int i, int j) const;
    Point2 nodePoint(int i, int j) const;  // any i, j
    Point3 nodePoint3(int i, int j) const; // z is the value there
    // Nodes (i, j), (i+1, j), (i+1, j+1), (i, j+1) of a cell; nothing outside the cells.
    std::optional<std::array<Point2, 4>> cellCorners(int i, int j) const;
    std::optional<std::array<Point3, 4>> cellCorners3(int i, int j) const; // z: the nodes' values
    // Nodes (0, 0), (nX, 0), (nX, nY), (0, nY); nothing when not defined.
    std::optional<std::array<Point2, 4>> gridOutline() const;
    // The cell around a point, kBefore or kBeyond outside. A point exactly on the grid's lower or
    // left edge is before it.
    CellIndex pointToCell(Point2 point) const;
    CellIndex pointToCellClamped(Point2 point) const { return held(pointToCell(point)); }
    // kBefore as the first and kBeyond as the last column or row.
    CellIndex held(CellIndex cell) const;

    // --- title, settings, lists ------------------------------------------------------------------
    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    const DrawingSettings& drawingSettings() const { return settings_; }
    void setDrawingSettings(int mode, int colour, std::string layer, bool outlined, bool grouped);
    CellList& markedCells() { return marked_; }
    const CellList& markedCells() const { return marked_; }
    CellList& selectedCells() { return selected_; }
    const CellList& selectedCells() const { return selected_; }

    // --- colour table ----------------------------------------------------------------------------
    // A lookup that finds no table makes the default one from the present values: ten bands between
    // the whole numbers below the minimum and above the maximum. A default table is dropped when
    // the grid is set up anew and can be dropped by whoever changed the values; a table that was
    // set stays.
    const std::vector<ColourBreak>& colorBreaks() const { return colorBreaks_; }
    void setColorBreaks(std::vector<ColourBreak> breaks); // ascending; empty: the default again
    void forgetDefaultColours();
    ColourRamp defaultRamp() const;
    int bandCount() const { return static_cast<int>(colorBreaks_.size()) - 1; }
    int bandColour(int k) const;           // of entry |k| mod bands
    int colourOfValue(double value) const; // colour index
    int bandOfValue(double value) const;   // -1 while there is no table
    double breakValue(int k) const;        // of entry k mod n

    // --- files (grid/grid_file.h), telling the user what goes wrong ------------------------------
    bool readGrid(host::Host& host, const std::string& fileName, bool loadValues);
    bool writeGrid(host::Host& host, const std::string& fileName) const; // whether it was written
    bool readGridDefinition(host::Host& host, const std::string& fileName, bool loadValues);
    bool writeGridDefinition(host::Host& host, const std::string& fileName) const;

  private:
    std::size_t rowLength() const { return static_cast<std::size_t>(nX_) + 1; }
    std::size_t rowStart(int j) const { return static_cast<std::size_t>(j) * rowLength(); }
    bool inStore(int i, int j) const { return i >= 0 && i <= nX_ && j >= 0 && j <= nY_; }
    void needColours() const;

    int nX_ = 0;
    int nY_ = 0;
    double cellWidthX_ = 0.0;
    double cellWidthY_ = 0.0;
    double rotation_ = 0.0;
    Point3 origin_;
    Vector3 xStep_;
    Vector3 yStep_;
    std::vector<double> values_; // rows outer: (i, j) at j * (nX + 1) + i
    double blankValue_ = 0.0;
    DrawingSettings settings_;
    std::string title_;
    CellList marked_;
    CellList selected_;
    mutable std::vector<ColourBreak> colorBreaks_;
    mutable bool defaultColours_ = true; // colorBreaks_ is empty or came from defaultRamp()
};

} // namespace tessaran::grid
