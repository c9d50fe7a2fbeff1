#include "stress/seam_ranges.h"

#include <algorithm>

namespace tessaran::stress {

SeamRanges rangesOf(const SeamState& seam) {
    SeamRanges out;
    out.leastConvergence = out.mostConvergence = seam.convergenceAt(0, 0);
    out.leastStress = out.mostStress = seam.total.front();
    double carried = 0.0;
    double put = 0.0;
    std::size_t element = 0;
    for (int i = 0; i < seam.nX; ++i)
        for (int j = 0; j < seam.nY; ++j, ++element) {
            const double u = seam.convergenceAt(i, j);
            const double stress = seam.total[element];
            out.leastConvergence = std::min(out.leastConvergence, u);
            out.mostConvergence = std::max(out.mostConvergence, u);
            out.leastStress = std::min(out.leastStress, stress);
            out.mostStress = std::max(out.mostStress, stress);
            carried += stress;
            put += seam.overburden[element] + seam.multiple[element] + seam.surface[element];
        }
    out.carriedShare = put != 0.0 ? carried / put : 0.0;
    return out;
}

} // namespace tessaran::stress
