#pragma once

// One mining step brought to rest: every seam relaxed by itself, then at each level of detail from
// the coarsest to the finest in passes of external stresses and relaxations, until a pass changes
// little.

#include "stress/run_state.h"

namespace tessaran::stress {

// False when the run ends here.
bool settleStep(RunState& run);

} // namespace tessaran::stress
