#pragma once

// What seams do to one another: the stresses that their convergence puts on the other seams, and by
// their images above the ground surface on all of them.

#include "stress/run_state.h"

namespace tessaran::stress {

// Computes the multiple-seam and surface-effect stresses of all seams anew, from sources as coarse
// as the level. False when the run ends here.
bool renewExternalStresses(RunState& run, int level);

} // namespace tessaran::stress
