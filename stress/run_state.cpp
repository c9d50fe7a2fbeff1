#include "stress/run_state.h"

#include "stress/result_file.h"

#include <algorithm>
#include <cmath>

namespace tessaran::stress {
namespace {

RelaxationProblem problemOf(const CModelDat& model) {
    RelaxationProblem out;
    out.modulus = model.modulus;
    out.lambda = laminationConstant(model);
    out.width = model.elementWidth;
    out.omega = model.overRelaxation;
    out.criterion = model.convergenceCriterion;
    out.maxIterations = model.maxIterations;
    out.boundaries = model.boundaries;
    out.materials = model.materials;
    return out;
}

} // namespace

RunState::RunState(const CModelDat& m, std::filesystem::path basePath, RunWatch& runWatch)
    : model(m), base(std::move(basePath)), watch(runWatch), problem(problemOf(m)) {
    for (const Seam& seam : model.seams) {
        SeamState state(model.nX, model.nY);
        std::fill(state.overburden.begin(), state.overburden.end(),
                  model.gradient * std::abs(seam.z));
        seams.push_back(std::move(state));
        fields.push_back({seam.x, seam.y, model.elementWidth, model.nX, model.nY});
    }
}

bool RunState::fail(std::string why) {
    ending = RunReport::Ending::failed;
    message = std::move(why);
    return false;
}

bool RunState::cancel() {
    ending = RunReport::Ending::cancelled;
    return false;
}

bool RunState::log(const std::string& text) {
    const auto written = appendText(base.string() + ".out", text, false);
    return written ? true : fail("Error in Opening Output File - M1\n" + written.error().text);
}

bool RunState::append(const std::filesystem::path& path, const std::string& text,
                      const char* failure) {
    const auto written = appendText(path, text, step == 1);
    return written ? true : fail(failure + written.error().message());
}

} // namespace tessaran::stress
