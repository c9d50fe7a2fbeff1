#include "stress/off_seam.h"

#include "stress/influence.h"
#include "stress/relaxation_log.h"
#include "stress/result_file.h"
#include "stress/stopwatch.h"

#include <fmt/format.h>

#include <cmath>

namespace tessaran::stress {
namespace {

bool displace(RunState& run, int s, double h, double sign, std::vector<double>& displacement) {
    const OffSeamGrid& grid = run.model.offSeam;
    CancelOnly progress(run.watch);
    return addInfluenceDisplacement(
               {run.model.modulus, run.problem.lambda, h}, sign, run.fields[RunState::index(s)],
               run.seams[RunState::index(s)].plainConvergence(),
               {grid.x, grid.y, grid.blockWidth, grid.nX, grid.nY}, displacement, progress)
               ? true
               : run.cancel();
}

// A seam's closure spreads from it, downward above the seam and upward below it, and so does its
// image above the ground surface.
bool displaceBySeam(RunState& run, int s, std::vector<double>& displacement) {
    const double depth = std::abs(run.z(s));
    const double level = std::abs(run.model.offSeam.z);
    run.watch.status(fmt::format("Calculating Off-Seam Disp. from Seam {}", s + 1));
    if (!displace(run, s, depth - level, depth > level ? 1.0 : -1.0, displacement))
        return false;
    if (!run.model.surfaceEffects)
        return true;
    run.watch.status(fmt::format("Calculating Off-Seam Disp. from Mirror Seam {}", s + 1));
    return displace(run, s, depth + level, 1.0, displacement);
}

} // namespace

bool writeOffSeam(RunState& run, double& seconds) {
    run.watch.status("Off-Seam displacements");
    run.watch.status("Calculating Off-Seam displacements ...");
    const Stopwatch clock;
    const OffSeamGrid& grid = run.model.offSeam;
    std::vector<double> displacement = dmatrix(RunState::index(grid.nX), RunState::index(grid.nY));
    for (int s = 0; s < run.seamCount(); ++s)
        if (!displaceBySeam(run, s, displacement))
            return false;
    seconds += clock.seconds();
    const std::string text = (run.step == 1 ? offSeamHeader(run.model) : std::string{}) +
                             offSeamStep(run.model, displacement);
    return run.append(offSeamPath(run.base), text,
                      "Error in Opening Off-Seam Output File - OS1\n") &&
           run.log(fmt::format("Time for Off-Seam Disp. Calc. for Step {} was {} secs.\n\n",
                               run.step, clock.wholeSeconds()));
}

} // namespace tessaran::stress
