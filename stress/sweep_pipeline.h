#pragma once

// Sweeps of a seam until the largest change is within the criterion, several of them under way at a
// time.
//
// A strip of iteration n may be swept once the strip before it is done in iteration n, and the
// strip behind it in iteration n - 1: then it finds the values that one sweep after the other would
// give. Iteration n + 1 may begin as soon as one element of iteration n has changed by more than
// the criterion, for then n cannot be the last; so none is ever begun that should not have been,
// and values, count and report are those of the plain loop.
//
// Each thread keeps kDepth iterations that follow one another in hand and sweeps two strips at a
// time. Where the other threads do not get a core, the calling thread goes on alone for a while.

#include "stress/relaxation.h"
#include "stress/skewed_seam.h"

namespace tessaran::stress {

struct SweepLimits {
    double criterion = 0.0;
    int maxIterations = 0;
    int threads = 1;
};

// Watch calls come from the calling thread, iteration by iteration.
RelaxationOutcome sweepUntilSettled(SkewedSeam& seam, const SweepKernel& kernel,
                                    const SweepConstants& constants, const Boundaries& boundaries,
                                    const SweepLimits& limits, RelaxationWatch& watch);

// Tells the watch of over-closed elements, given by their index, in the order of the sweep.
void tellOverClosed(std::vector<int>& elements, int nY, RelaxationWatch& watch);

} // namespace tessaran::stress
