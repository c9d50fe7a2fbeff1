#pragma once

// One seam as a step left it, in figures; consistent units.

#include "stress/seam_state.h"

namespace tessaran::stress {

struct SeamRanges {
    double leastConvergence = 0.0;
    double mostConvergence = 0.0;
    double leastStress = 0.0;
    double mostStress = 0.0;
    double carriedShare = 0.0; // what the elements carry of the load put on them
};
SeamRanges rangesOf(const SeamState& seam);

} // namespace tessaran::stress
