#pragma once

// The echo of a model in the run's log file (".out").

#include "stress/model.h"

#include <string>

namespace tessaran::stress {

// Everything up to and including the element codes of all steps. Values stand in consistent units.
std::string modelEcho(const CModelDat& model);

// The blocks of the echo that other programs of this folder print for themselves.
std::string rockMassBlock(const CModelDat& model);
std::string gridBlock(const CModelDat& model);
std::string controlBlock(const CModelDat& model);
inline constexpr const char* kSeamsHeading =
    "  GLOBAL COORDINATES OF LOCAL ORIGINS AND SEAM THICKNESSES\n"
    "  SEAM NO.         X           Y           Z     THICKNESS\n";

// The grid of topographic blocks of a run with topographic stress on.
struct TopographicBlocks {
    double x = 0.0; // of the low-left corner
    double y = 0.0;
    double datum = 0.0;              // Z of the level at which the stresses are given
    double distanceAboveSeam1 = 0.0; // of the datum
    double blockWidth = 0.0;
    int nX = 0;
    int nY = 0;
};
std::string topographicBlock(const TopographicBlocks& blocks);

} // namespace tessaran::stress
