#pragma once

// A whole run of the laminated model: every mining step's seam convergence and stresses, seams and
// surface acting on one another, written to the run's files.

#include "stress/pillars.h"
#include "stress/profile.h"
#include "stress/seam_ranges.h"
#include "stress/seam_state.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tessaran::stress {

// Where a run tells what it does and asks whether to go on.
class RunWatch {
  public:
    virtual ~RunWatch() = default;
    virtual void status(const std::string& /*text*/) {}  // what is being computed
    virtual void progress(int /*percent*/) {}            // of the present relaxation
    virtual void message(const std::string& /*text*/) {} // what ends the run
    virtual bool cancelled() { return false; }
};

struct RunReport {
    enum class Ending { finished, failed, cancelled };
    Ending ending = Ending::finished;
    std::string message{};              // why it failed
    std::vector<SeamProfile> profile{}; // of all steps
    int stepsDone = 0;
    std::vector<SeamState> seams{};                // as the last finished step left them
    std::vector<std::vector<SeamRanges>> ranges{}; // [step][seam], of the finished steps
    PillarTable pillars{};                         // [step][seam]

    // As the solver has always answered: 0 for success, 1 for failure or cancel.
    int code() const { return ending == Ending::finished ? 0 : 1; }
};

// Solves the model; `base` is the run's path without extension. Element codes come from the model,
// or, where it holds none, from the step files in the base's folder. The log BASE.out is appended
// to, result files BASE.f1 ... and BASE.off are begun at step 1 and grow by step; what was written
// before a cancel or failure stays. Throws an AllocationFailure (stress/arrays.h) for an array that
// cannot be had.
RunReport solve(const CModelDat& model, const std::filesystem::path& base, RunWatch& watch);

} // namespace tessaran::stress
