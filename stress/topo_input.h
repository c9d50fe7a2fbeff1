#pragma once

// The topographic model's input: the rock, the seam's element grid, the control values and the
// depths of the overburden, block by block, and the text file (".tmp") that holds them.
//
// The seam stands at the origin: X and Y of the blocks count from the seam grid's low-left corner,
// and the datum's Z is its height above the seam. Consistent units (stress/model.h).

#include "base/result.h"
#include "stress/topography.h"

#include <filesystem>
#include <string>
#include <string_view>

namespace tessaran::stress {

struct CTopoModelDat {
    double poissonsRatio = 0.0;
    double modulus = 0.0; // of the host rock
    double laminationThickness = 0.0;
    int unitSystem = 0;

    ElementField seam;     // at 0, 0
    double gradient = 0.0; // vertical overburden stress per unit depth

    double overRelaxation = 0.0;
    double convergenceCriterion = 0.0; // largest change of displacement in an iteration
    int maxIterations = 0;

    TopographicGrid depths; // of the overburden above the seam
};

std::string topoInputText(const CTopoModelDat& data);

// How reading ended: code 0, or the number of the group of lines that is wrong and its message.
struct TopoInputReading {
    int code = 0;
    std::string message{};
    long line = 0;
    CTopoModelDat data{};

    bool ok() const { return code == 0; }
};
// Numbers but the depths are held in single precision, as in the solver's input.
TopoInputReading parseTopoInput(std::string_view text);
TopoInputReading readTopoInput(const std::filesystem::path& path);

} // namespace tessaran::stress
