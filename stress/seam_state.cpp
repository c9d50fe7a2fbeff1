#include "stress/seam_state.h"

#include <algorithm>

namespace tessaran::stress {

std::vector<double> SeamState::plainConvergence() const {
    std::vector<double> out = field();
    for (int i = 0; i < nX; ++i)
        std::copy_n(convergence.data() + ghosted(i, 0), nY, out.data() + plain(i, 0));
    return out;
}

} // namespace tessaran::stress
