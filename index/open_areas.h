#pragma once

// The connected areas of equally labelled cells, less the pillars that cut them, united by label.
// All in cell units.

#include "base/result.h"
#include "geometry/cell_outline.h"
#include "geometry/region.h"
#include "index/label_grid.h"

#include <cstdint>
#include <span>
#include <vector>

namespace tessaran::index {

struct OpenArea {
    std::int16_t label = 0;
    geometry::PlanarRegion area;
};

// By ascending label. Cells of one label that meet along a side belong together, so no two of the
// connected areas need uniting: each is traced along the cell sides, and only one with cut cells
// goes through the overlay, with the pillars that cut it. What is left of an area and is not above
// `smallest` is left out.
base::Result<std::vector<OpenArea>> openAreas(const geometry::CellLabels& cells,
                                              const LabelGrid& labels,
                                              std::span<const geometry::PlanarRegion> pillars,
                                              double smallest);

} // namespace tessaran::index
