#pragma once

// The analysis of an index grid against the pillars of the drawing, told step by step, up to the
// regions on the mapping layer.

#include "grid/colour_ramp.h"
#include "grid/my_grid.h"
#include "host/entity.h"
#include "index/index_mapping.h"

#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {
class Host;
}

namespace tessaran::index {

// More regions than this are only put into the drawing after a question.
inline constexpr std::size_t kManyRegions = 250'000;

struct MappingTask {
    const grid::myGrid& indexGrid; // defined
    std::vector<grid::ColourBreak> colours;
    std::vector<std::string> pillarLayers;
    std::string mappingLayer; // there already
    ValueFilter filter = ValueFilter::all;
    double threshold = 0.0;
};

// The regions made: one a cell, or one a colour when the user wants them combined. Nothing when the
// user ended it or something failed; the drawing is then as it was before.
std::optional<std::vector<host::EntityId>> mapOntoDrawing(host::Host& host,
                                                          const MappingTask& task);

} // namespace tessaran::index
