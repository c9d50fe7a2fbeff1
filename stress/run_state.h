#pragma once

// What the parts of one run of the solver share: the model, its seams as they stand, where the run
// is, its log and how it ends.

#include "stress/relaxation.h"
#include "stress/solver.h"

#include <filesystem>
#include <string>
#include <vector>

namespace tessaran::stress {

class RunState {
  public:
    RunState(const CModelDat& model, std::filesystem::path base, RunWatch& watch);

    const CModelDat& model;
    const std::filesystem::path base; // the run's path without extension
    RunWatch& watch;

    RelaxationProblem problem;
    RelaxationMemory memory;
    std::vector<SeamState> seams;
    std::vector<ElementField> fields;
    // Of the present step:
    int step = 1;
    std::vector<ElementLaws> laws;
    std::vector<std::vector<char>> overClosed; // [seam][element]: told of
    std::vector<SeamProfile> profile;

    // What ends the run early; both return false, as does whatever they end.
    RunReport::Ending ending = RunReport::Ending::finished;
    std::string message{};
    bool fail(std::string why);
    bool cancel();

    // To the end of the log; a failure ends the run.
    bool log(const std::string& text);
    // To the end of another file, its beginning at the first step.
    bool append(const std::filesystem::path& path, const std::string& text, const char* failure);

    int seamCount() const { return model.seamCount(); }
    double z(int seam) const { return model.seams[index(seam)].z; }
    double thickness(int seam) const { return model.seams[index(seam)].thickness; }
    // Whether stresses go from seam to seam, or to the surface and back.
    bool interacting() const { return seamCount() > 1 || model.surfaceEffects; }

    static std::size_t index(int k) { return static_cast<std::size_t>(k); }
};

} // namespace tessaran::stress
