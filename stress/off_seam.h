#pragma once

// Displacements of a level between, above or below the seams.

#include "stress/run_state.h"

namespace tessaran::stress {

// Adds the present step's displacements to the off-seam file. False when the run ends here;
// `seconds` grows by what the computation took.
bool writeOffSeam(RunState& run, double& seconds);

} // namespace tessaran::stress
