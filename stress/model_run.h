#pragma once

// A run of the solver from its input file, as every front end does it: read, check, echo, solve,
// sum up.

#include "base/result.h"
#include "stress/solver.h"

#include <filesystem>
#include <string>

namespace tessaran::stress {

struct PreparedRun {
    CModelDat model;
    std::filesystem::path base; // the input's path without its extension
    std::vector<std::string> warnings;
};

// Reads and checks the input file and begins the log BASE.out with the echo of it. The error's text
// is the message to show; nothing is written for an input that cannot be solved.
base::Result<PreparedRun> prepareRun(const std::filesystem::path& input);

// What an engineer looks at first: convergence and stress ranges of each seam after the last step,
// the load balance, iterations and seconds at each level.
std::string runSummary(const CModelDat& model, const RunReport& report);

} // namespace tessaran::stress
