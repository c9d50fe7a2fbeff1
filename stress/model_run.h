#pragma once

// A run of the solver from its input file, as every front end does it: read, check, echo, solve,
// sum up.

#include "base/folder_lock.h"
#include "base/result.h"
#include "stress/solver.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::stress {

struct PreparedRun {
    CModelDat model;
    std::filesystem::path base; // the input's path without its extension
    std::vector<std::string> warnings;
    std::string outlook;                  // lines to look at before it is started
    std::optional<base::FolderLock> lock; // on the input's folder: its step files are this run's
};

// Reads and checks the input file, writes its step files and begins the log BASE.out with the echo
// of it. The error's text is the message to show; for an input that cannot be solved no more than
// step files is written. Throws an AllocationFailure for codes that memory cannot hold. Refused
// while another run has step files in that folder. The model's codes are in the step files then,
// not in memory.
base::Result<PreparedRun> prepareRun(const std::filesystem::path& input);

// What an engineer looks at first: convergence and stress ranges of each seam after each step, the
// load balance, iterations and seconds at each level.
std::string runSummary(const CModelDat& model, const RunReport& report);

// The pillars of the finished steps in BASE_pillars.csv; the file's path.
base::Result<std::filesystem::path> writePillars(const PreparedRun& run, const RunReport& report);

} // namespace tessaran::stress
