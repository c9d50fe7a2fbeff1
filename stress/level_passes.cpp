#include "stress/level_passes.h"

#include "stress/external_stresses.h"
#include "stress/relaxation_log.h"
#include "stress/stopwatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <optional>
#include <utility>

namespace tessaran::stress {
namespace {

// A level whose passes do not settle: above 0 it hands on to the next finer one, at 0 it is a
// failure.
constexpr int kMostPassesAboveLevel0 = 50;
constexpr int kMostPassesAtLevel0 = 500;

// Log and progress of one seam's relaxation.
class SeamWatch final : public LoggedRelaxation {
  public:
    SeamWatch(RunState& run, int seam)
        : LoggedRelaxation(
              run.watch, [&run](const std::string& text) { return run.log(text); },
              run.model.maxIterations),
          run_(run), seam_(seam) {}

    void overClosed(int x, int y) override {
        char& told = run_.overClosed[RunState::index(seam_)]
                                    [run_.seams[RunState::index(seam_)].plain(x - 1, y - 1)];
        if (told != 0)
            return;
        told = 1;
        run_.log(fmt::format("Material Strain Greater Than 1 in Element Stress Routine - ES1a\n"
                             "i = {}, j = {}, integer code = {}\n",
                             x, y, 27));
    }

  private:
    RunState& run_;
    int seam_;
};

bool relaxationFailed(RunState& run, const RelaxationOutcome& outcome, const std::string& place) {
    using Ending = RelaxationOutcome::Ending;
    switch (outcome.ending) {
    case Ending::cancelled:
        return run.cancel();
    case Ending::badCode:
        run.log(outcome.message);
        return run.fail(outcome.message);
    case Ending::notFinite:
        return run.fail("The seam convergence grew without bound (" + place +
                        "). Use a smaller over-relaxation factor.");
    case Ending::iterationLimit:
    case Ending::converged:
        break;
    }
    run.log(outcome.message + "\n");
    return run.fail(outcome.message + " (" + place +
                    "). Use a smaller over-relaxation factor or more iterations.");
}

bool relaxSeam(RunState& run, int s, int level, int& mostIterations) {
    const std::size_t seam = RunState::index(s);
    const std::string place = fmt::format("Step {}, Seam {}, Level {}", run.step, s + 1, level);
    const std::string entering = "Entering SOR - " + place + "\n";
    run.watch.status(entering);
    if (!run.log(entering))
        return false;
    const Stopwatch clock;
    run.problem.thickness = run.thickness(s);
    SeamWatch watch(run, s);
    const RelaxationOutcome outcome =
        relax(run.problem, run.laws[seam], run.seams[seam], watch, run.memory);
    LevelProfile& profile = run.profile[seam][RunState::index(level)];
    profile.relaxationSeconds += clock.seconds();
    profile.iterations += outcome.iterations;
    mostIterations = std::max(mostIterations, outcome.iterations);
    if (outcome.ending != RelaxationOutcome::Ending::converged)
        return relaxationFailed(run, outcome, place);
    std::string done = fmt::format("SOR took {} iterations {} secs to converge - {}\n\n",
                                   outcome.iterations, clock.wholeSeconds(), place);
    if (outcome.overClosed > 0)
        done += fmt::format("Strains greater than 1 were met {} times - {}\n\n", outcome.overClosed,
                            place);
    return run.log(done);
}

// What a level starts from; the external stresses are computed anew at the next.
class LevelStart {
  public:
    explicit LevelStart(const std::vector<SeamState>& seams) {
        allocated(ArrayKind::dcubix, [&] {
            for (const SeamState& seam : seams)
                kept_.emplace_back(seam.convergence, seam.total);
        });
    }
    void restore(std::vector<SeamState>& seams) const {
        for (std::size_t s = 0; s < seams.size(); ++s) {
            seams[s].convergence = kept_[s].first;
            seams[s].total = kept_[s].second;
        }
    }

  private:
    std::vector<std::pair<std::vector<double>, std::vector<double>>> kept_;
};

// The iterations of the seam that needed most of them; nothing when the run ends here.
std::optional<int> pass(RunState& run, int level) {
    run.watch.status(fmt::format("Solving for external stresses stabilize -- Step {}, Level {}",
                                 run.step, level));
    if (run.interacting() && !renewExternalStresses(run, level))
        return std::nullopt;
    run.watch.status("Calculating Seam Displacements ...");
    int most = 0;
    for (int s = 0; s < run.seamCount(); ++s) {
        run.watch.status(fmt::format("Calculating Seam {} Displacements", s + 1));
        ++run.profile[RunState::index(s)][RunState::index(level)].loops;
        if (!relaxSeam(run, s, level, most))
            return std::nullopt;
    }
    return most;
}

bool goOnFiner(RunState& run, int level) {
    const std::string line =
        fmt::format("The external stresses did not settle in {} passes at level {} of step {}; "
                    "going on with the next finer level.\n\n",
                    kMostPassesAboveLevel0, level, run.step);
    run.watch.status(line);
    return run.log(line);
}

// Passes until no seam needs more iterations than the level's limit.
bool settle(RunState& run, int level) {
    std::optional<LevelStart> start;
    if (level > 0)
        start.emplace(run.seams);
    const int mostPasses = level > 0 ? kMostPassesAboveLevel0 : kMostPassesAtLevel0;
    for (int k = 0; k < mostPasses; ++k) {
        const std::optional<int> most = pass(run, level);
        if (!most)
            return false;
        if (*most <= kDetailLevels[RunState::index(level)].iterationLimit)
            return true;
    }
    if (level == 0)
        return run.fail(fmt::format("The external stresses did not settle in {} passes at level 0 "
                                    "of step {}. Try a smaller over-relaxation factor.",
                                    kMostPassesAtLevel0, run.step));
    start->restore(run.seams);
    return goOnFiner(run, level);
}

} // namespace

bool settleStep(RunState& run) {
    int most = 0;
    for (int s = 0; s < run.seamCount(); ++s)
        if (!relaxSeam(run, s, kCoarsestLevel, most))
            return false;
    for (int level = kCoarsestLevel; level >= 0; --level)
        if (!settle(run, level))
            return false;
    return true;
}

} // namespace tessaran::stress
