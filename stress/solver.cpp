#include "stress/solver.h"

#include "stress/level_passes.h"
#include "stress/off_seam.h"
#include "stress/result_file.h"
#include "stress/run_state.h"
#include "stress/step_files.h"
#include "stress/stopwatch.h"
#include "stress/topo_model.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::stress {
namespace {

// The course of a run: topographic stress, then step by step codes, rest and results.
class Run {
  public:
    explicit Run(RunState& state) : run_(state), total_(state.model.seams.size()) {}

    RunReport run() {
        if (begin() && steps())
            run_.log(summary());
        if (!run_.message.empty())
            run_.watch.message(run_.message);
        RunReport report;
        report.ending = run_.ending;
        report.message = run_.message;
        report.profile = total_;
        report.stepsDone = stepsDone_;
        report.seams = std::move(run_.seams);
        report.ranges = std::move(ranges_);
        report.pillars = std::move(pillars_);
        return report;
    }

  private:
    bool begin() {
        if (run_.model.unitSystem < 0 || run_.model.unitSystem >= static_cast<int>(kUnits.size()))
            return run_.fail(kUnitsOutOfRange);
        return run_.log("") && (!run_.model.topographicStress || topographicStress());
    }

    bool topographicStress() {
        TopoRun topo = topographicOverburden(
            run_.model, run_.watch, [this](const std::string& text) { return run_.log(text); });
        topographicSeconds_ = topo.seconds;
        if (!topo.ok()) {
            run_.ending = topo.ending;
            run_.message = topo.message + run_.message; // the log's own trouble, if it had one
            return false;
        }
        for (std::size_t s = 0; s < run_.seams.size(); ++s)
            run_.seams[s].overburden = std::move(topo.overburden[s]);
        return true;
    }

    bool steps() {
        for (run_.step = 1; run_.step <= run_.model.steps; ++run_.step) {
            run_.profile.assign(run_.seams.size(), {});
            if (!readCodes() || !settleStep(run_) || !finishStep())
                return false;
            stepsDone_ = run_.step;
        }
        return true;
    }

    bool readCodes() {
        const CModelDat& model = run_.model;
        std::vector<ElementCodes> fromFile;
        if (model.codes.empty()) {
            auto read = readStepFile(run_.base.parent_path(), run_.step, model);
            if (!read)
                return run_.fail("Error reading the fine mesh codes - RC2\n" +
                                 read.error().message());
            fromFile = std::move(*read);
        }
        const auto& codes =
            model.codes.empty() ? fromFile : model.codes[RunState::index(run_.step - 1)];
        run_.laws.clear();
        run_.overClosed.clear();
        for (int s = 0; s < run_.seamCount(); ++s)
            if (!takeCodes(s, codes[RunState::index(s)]))
                return false;
        return true;
    }

    bool takeCodes(int s, const ElementCodes& codes) {
        const CModelDat& model = run_.model;
        if (!run_.log(fmt::format("Reading in material codes for Step {}, Seam {}\n\n", run_.step,
                                  s + 1)))
            return false;
        run_.laws.push_back(
            lawsOf(codes, model.nX, model.nY, static_cast<int>(model.materials.size())));
        SeamState& seam = run_.seams[RunState::index(s)];
        run_.overClosed.push_back(allocatedArray<char>(ArrayKind::cmatrix, seam.elements()));
        // What over-closed entries remember starts anew with each step.
        std::fill(seam.total.begin(), seam.total.end(), 0.0);
        return true;
    }

    bool finishStep() {
        for (std::size_t s = 0; s < total_.size(); ++s)
            for (std::size_t level = 0; level < kDetailLevels.size(); ++level)
                total_[s][level] += run_.profile[s][level];
        if (!run_.log(fmt::format("Profile Information for Step {}\n\n", run_.step) +
                      profileTables(run_.profile)))
            return false;
        for (int s = 0; s < run_.seamCount(); ++s)
            if (!writeResults(s))
                return false;
        keepFigures();
        return !run_.model.offSeamDisplacements || writeOffSeam(run_, offSeamSeconds_);
    }

    bool writeResults(int s) {
        const std::string text = (run_.step == 1 ? resultHeader(run_.model, s) : std::string{}) +
                                 resultStep(run_.model, run_.seams[RunState::index(s)]);
        return run_.append(resultPath(run_.base, s + 1), text,
                           "Error in Opening Output File - PES1\n");
    }

    void keepFigures() {
        std::vector<SeamRanges> ranges;
        std::vector<std::vector<Pillar>> pillars;
        for (std::size_t s = 0; s < run_.seams.size(); ++s) {
            ranges.push_back(rangesOf(run_.seams[s]));
            pillars.push_back(
                pillarsOf(run_.model.materials, run_.laws[s], run_.seams[s], run_.fields[s]));
        }
        ranges_.push_back(std::move(ranges));
        pillars_.push_back(std::move(pillars));
    }

    std::string summary() const {
        return fmt::format("Total Time for Topographic Stress Calculations was {:g} secs.\n\n"
                           "Total Time for Off-Seam Displacement Calculations was {:g} secs.\n\n",
                           topographicSeconds_, offSeamSeconds_) +
               "Final Cumulative Profile Information for all Steps and Seams.\n" +
               profileTables(total_) +
               fmt::format("Total program running time was {} secs\n\n", clock_.wholeSeconds());
    }

    RunState& run_;
    std::vector<SeamProfile> total_;
    std::vector<std::vector<SeamRanges>> ranges_;
    PillarTable pillars_;
    Stopwatch clock_;
    double topographicSeconds_ = 0.0;
    double offSeamSeconds_ = 0.0;
    int stepsDone_ = 0;
};

} // namespace

RunReport solve(const CModelDat& model, const std::filesystem::path& base, RunWatch& watch) {
    watch.status("Initializing Data");
    RunState state(model, base, watch);
    return Run(state).run();
}

} // namespace tessaran::stress
