#pragma once

// Overburden stress under an uneven surface.
//
// The ground above a level, the datum, loads it block by block. Between the datum and a seam the
// laminated overburden spreads that load: the datum's displacement w under the load p obeys
//   laplacian(w) = -(2 / (lambda E)) p,
// and what a block of area A that moved down by w brings to a point at the distance h below it is
//   E A w / (8 pi lambda h^2) (1 - z) exp(-z),        z = r^2 / (4 lambda h),
// the influence function of the seams with the sign of a load. A load q cos(k x) arrives as
// q exp(-lambda k^2 h) cos(k x). The blocks' edges are held at 0, so only the load's deviation from
// its mean is relaxed; the mean arrives as it is.
//
// Consistent units (stress/model.h). Blocks run column by column, as elements do.

#include "base/progress.h"
#include "stress/influence.h"
#include "stress/relaxation.h"

#include <string>
#include <vector>

namespace tessaran::stress {

// What makes the blocks unusable (no blocks, no width, a block without a value); empty when they
// can be used.
std::string blocksFault(const TopographicGrid& grid);

// The load on the datum: its mean, and what each block differs from it.
struct DatumLoad {
    double mean = 0.0;
    std::vector<double> deviation;
};
DatumLoad datumLoad(const std::vector<double>& stress);

// How the load of blocks so wide reaches a seam at the distance h below their datum.
enum class Reach {
    asItStands, // |h| is at most half a block: the block over the element is what counts
    spread,
    datumBelowSeam, // refused: by more than half a block
    blocksTooWide,  // refused: 4 lambda h is below the block width squared
};
Reach reachOf(double lambda, double blockWidth, double h);
// The refusal as a sentence; empty for the others.
std::string refusalOf(Reach reach, double lambda, double blockWidth, double h);

// Displacement of the datum under the load's deviation, blocks' edges held, positive downward.
struct DatumDisplacement {
    RelaxationOutcome outcome;
    std::vector<double> down;
};
DatumDisplacement relaxDatum(double modulus, double lambda, const ElementField& blocks,
                             const std::vector<double>& deviation, double omega, double criterion,
                             int maxIterations, RelaxationWatch& watch);

// What arrives at the receivers' centres, above the mean.
struct Arrived {
    bool cancelled = false;
    long outside = 0; // receivers outside the blocks: they take what the nearest block gets
    std::vector<double> stress;
};
Arrived spreadToSeam(const Influence& influence, const ElementField& blocks,
                     const std::vector<double>& down, const ElementField& receivers,
                     base::Progress& progress);
// Receivers whose centre lies inside the blocks and nearer than `edge` to one of their outer sides:
// what is beyond the blocks adds nothing there.
long countNearEdge(const ElementField& blocks, const ElementField& receivers, double edge);
Arrived asItStands(const ElementField& blocks, const std::vector<double>& deviation,
                   const ElementField& receivers);

} // namespace tessaran::stress
