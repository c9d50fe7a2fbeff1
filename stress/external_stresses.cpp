#include "stress/external_stresses.h"

#include "stress/influence.h"
#include "stress/relaxation_log.h"
#include "stress/stopwatch.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::stress {
namespace {

// The convergence of each seam as the level sees it.
using Sources = std::vector<std::vector<double>>;

class Propagation {
  public:
    Propagation(RunState& run, int level) : run_(run), level_(level) {
        const int factor = kDetailLevels[RunState::index(level)].aggregation;
        for (std::size_t s = 0; s < run.seams.size(); ++s)
            sources_.push_back(blockMeans(run.fields[s], run.seams[s].plainConvergence(), factor));
    }

    bool interseam(int from, int to) {
        run_.watch.status(fmt::format("Calculating Multi-Seam Stresses-  {} -> {}, Level {}",
                                      from + 1, to + 1, level_));
        return timed({"Calculating Interseam Stresses", "Interseam Stress Calculation"}, from, to,
                     run_.z(from) - run_.z(to), &SeamState::multiple,
                     &LevelProfile::interseamSeconds);
    }

    bool mirror(int from, int to) {
        run_.watch.status("Mirror-Image Stresses");
        run_.watch.status(
            fmt::format("Calculating Mirror-Image Stresses, {} -> {}", from + 1, to + 1));
        return timed({"Calculating Mirror-Image Stresses", "Mirror Stress Calculation"}, from, to,
                     run_.z(from) + run_.z(to), &SeamState::surface, &LevelProfile::surfaceSeconds);
    }

  private:
    struct Texts {
        const char* begins;
        const char* took;
    };

    bool timed(const Texts& texts, int from, int to, double h,
               std::vector<double> SeamState::*stress, double LevelProfile::*seconds) {
        const std::string place = fmt::format("Step {}, Seam {} on Seam {}, Level {}", run_.step,
                                              from + 1, to + 1, level_);
        if (!run_.log(fmt::format("{} - {}\n\n", texts.begins, place)))
            return false;
        const Stopwatch clock;
        if (!spread(from, to, h, run_.seams[RunState::index(to)].*stress))
            return false;
        run_.profile[RunState::index(to)][RunState::index(level_)].*seconds += clock.seconds();
        return run_.log(
            fmt::format("{} - {} took {} secs.\n\n", texts.took, place, clock.wholeSeconds()));
    }

    bool spread(int from, int to, double h, std::vector<double>& stress) {
        run_.watch.status("Stress Propogating");
        CancelOnly progress(run_.watch);
        const ElementField coarse = coarser(run_.fields[RunState::index(from)],
                                            kDetailLevels[RunState::index(level_)].aggregation);
        return addInfluenceStress({run_.model.modulus, run_.problem.lambda, h}, coarse,
                                  sources_[RunState::index(from)], run_.fields[RunState::index(to)],
                                  stress, progress)
                   ? true
                   : run_.cancel();
    }

    RunState& run_;
    int level_;
    Sources sources_;
};

} // namespace

bool renewExternalStresses(RunState& run, int level) {
    for (SeamState& seam : run.seams) {
        std::fill(seam.surface.begin(), seam.surface.end(), 0.0);
        std::fill(seam.multiple.begin(), seam.multiple.end(), 0.0);
    }
    Propagation propagation(run, level);
    for (int from = 0; from < run.seamCount(); ++from)
        for (int to = 0; to < run.seamCount(); ++to)
            if (from != to && !propagation.interseam(from, to))
                return false;
    if (!run.model.surfaceEffects)
        return true;
    run.watch.status("Calculating Surface Effect Stresses");
    for (int from = 0; from < run.seamCount(); ++from)
        for (int to = 0; to < run.seamCount(); ++to)
            if (!propagation.mirror(from, to))
                return false;
    return true;
}

} // namespace tessaran::stress
