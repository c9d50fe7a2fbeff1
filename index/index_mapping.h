#pragma once

// An index grid laid over the entries of a mine plan: which cells lie open between the pillars, and
// the coloured areas that they make.
//
// Every cell is labelled: kept whole, dropped (its value is filtered out, or a pillar covers it
// wholly), or cut by pillars that cover a part of it. A cell that is not dropped is a square region
// in the colour of its value, less the pillars that cut it.

#include "base/result.h"
#include "geometry/region.h"
#include "grid/cell_frame.h"
#include "grid/colour_ramp.h"
#include "grid/my_grid.h"
#include "index/label_grid.h"

#include <span>
#include <string>
#include <vector>

namespace tessaran::index {

enum class ValueFilter { all = 0, largerThan = 1, smallThan = 2 };

struct ColouredRegion {
    int colour = 0;
    geometry::PlanarRegion area; // world coordinates, even-odd
};

// One analysis of an index grid, step by step: filter, pillars, regions. The grid must be defined
// and outlive it.
class IndexMapping {
  public:
    IndexMapping(const grid::myGrid& indexGrid, std::vector<grid::ColourBreak> colourTable);

    // Drops the cells whose value does not pass, and those without a value; gives the number of the
    // latter.
    std::size_t filterCells(ValueFilter filter, double threshold);

    // Takes a pillar's closed outline, in world coordinates with chords for arcs. Self-crossing
    // outlines count by the even-odd rule. An outline without area marks nothing.
    base::Result<void> addPillar(long identifier, std::span<const geometry::Point2> outline);
    std::size_t pillarCount() const { return pillars_.size(); }

    const LabelGrid& labels() const { return labels_; }
    std::string label(int i, int j) const { return labels_.text(i, j, identifiers_); }

    // The open cells of the rows [rowBegin, rowEnd), each by itself, row by row. Cells of which
    // nothing remains are left out.
    base::Result<std::vector<ColouredRegion>> cellRegions(int rowBegin, int rowEnd) const;
    // How many of them there are.
    base::Result<std::size_t> countCellRegions(int rowBegin, int rowEnd) const;

    // All cells of a colour as one region, by ascending colour. Equal cells are found by walking
    // the grid; only connected areas that a pillar cuts go through the overlay.
    base::Result<std::vector<ColouredRegion>> combinedRegions() const;

  private:
    void markCell(int i, int j, double covered, int number);
    int colourOf(int i, int j) const;
    base::Result<geometry::PlanarRegion> openPart(int i, int j) const;
    base::Result<std::vector<ColouredRegion>> rowRegions(int j) const;
    geometry::PlanarRegion toWorld(const geometry::PlanarRegion& cells) const;

    const grid::myGrid& grid_;
    grid::CellFrame frame_;
    std::vector<grid::ColourBreak> colours_;
    LabelGrid labels_;
    std::vector<geometry::PlanarRegion> pillars_; // cell units
    std::vector<long> identifiers_;
};

} // namespace tessaran::index
