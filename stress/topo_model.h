#pragma once

// Runs of the topographic stress model: by itself from depths of the overburden, and inside a run
// of the solver from stresses at a datum.

#include "stress/model.h"
#include "stress/relaxation_log.h"
#include "stress/topo_input.h"

#include <filesystem>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::stress {

// How a run ended and what it gives: the overburden stress of each seam, element by element.
struct TopoRun {
    RunReport::Ending ending = RunReport::Ending::finished;
    std::string message{}; // why it failed
    std::vector<std::vector<double>> overburden{};
    std::vector<std::string> warnings{};
    bool relaxed = false; // whether the datum had to be relaxed, and in how many iterations
    int iterations = 0;
    double seconds = 0.0;

    bool ok() const { return ending == RunReport::Ending::finished; }
};

// Why the seams of a model cannot take their stresses from its topography; empty when they can.
std::string topographyFault(const CModelDat& model);
std::vector<std::string> topographyWarnings(const CModelDat& model);

// Overburden stresses of all seams of a model that has a topography.
TopoRun topographicOverburden(const CModelDat& model, RunWatch& watch, const LogSink& log);

// Why the topographic model cannot be run; empty when it can.
std::string topoModelFault(const CTopoModelDat& data);

// The echo of the input with `seam` (Z of the seam among others, where the blocks truly lie) in the
// log OUT, then the run; one seam.
TopoRun runTopoModel(const CTopoModelDat& data, const Seam& seam,
                     const std::filesystem::path& logFile, RunWatch& watch);

} // namespace tessaran::stress
