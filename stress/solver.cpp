#include "stress/solver.h"

#include "stress/influence.h"
#include "stress/relaxation_log.h"
#include "stress/result_file.h"
#include "stress/step_files.h"
#include "stress/stopwatch.h"
#include "stress/topo_model.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <new>
#include <stdexcept>

namespace tessaran::stress {
namespace {

// A level whose passes do not settle: above 0 it hands on to the next finer one, at 0 it is a
// failure.
constexpr int kMostPassesAboveLevel0 = 50;
constexpr int kMostPassesAtLevel0 = 500;

// What ends a run early.
struct Stop {
    RunReport::Ending ending = RunReport::Ending::finished;
    std::string message{};
};

class Run {
  public:
    Run(const CModelDat& model, std::filesystem::path base, RunWatch& watch)
        : model_(model), base_(std::move(base)), watch_(watch), total_(model.seams.size()) {}

    RunReport run() {
        const bool done = begin() && steps();
        if (done)
            log(fmt::format("Total Time for Topographic Stress Calculations was {:g} secs.\n\n",
                            topographicSeconds_) +
                fmt::format("Total Time for Off-Seam Displacement Calculations was {:g} "
                            "secs.\n\n",
                            offSeamSeconds_) +
                "Final Cumulative Profile Information for all Steps and Seams.\n" +
                profileTables(total_) +
                fmt::format("Total program running time was {} secs\n\n", clock_.wholeSeconds()));
        if (!stop_.message.empty())
            watch_.message(stop_.message);
        RunReport report;
        report.ending = stop_.ending;
        report.message = stop_.message;
        report.profile = total_;
        report.stepsDone = stepsDone_;
        report.seams = std::move(seams_);
        report.ranges = std::move(ranges_);
        report.pillars = std::move(pillars_);
        return report;
    }

  private:
    // --- ends
    // -------------------------------------------------------------------------------------
    bool fail(std::string message) {
        stop_ = {RunReport::Ending::failed, std::move(message)};
        return false;
    }
    bool cancel() {
        stop_ = {RunReport::Ending::cancelled, {}};
        return false;
    }

    bool log(const std::string& text) {
        const auto written = appendText(base_.string() + ".out", text, false);
        return written ? true : fail("Error in Opening Output File - M1\n" + written.error().text);
    }
    bool append(const std::filesystem::path& path, const std::string& text, const char* message) {
        const auto written = appendText(path, text, step_ == 1);
        return written ? true : fail(message + written.error().message());
    }

    // --- the run's course
    // ---------------------------------------------------------------------------
    bool begin() {
        watch_.status("Initializing Data");
        problem_.modulus = model_.modulus;
        problem_.lambda = laminationConstant(model_);
        problem_.width = model_.elementWidth;
        problem_.omega = model_.overRelaxation;
        problem_.criterion = model_.convergenceCriterion;
        problem_.maxIterations = model_.maxIterations;
        problem_.boundaries = model_.boundaries;
        problem_.materials = model_.materials;
        for (const Seam& seam : model_.seams) {
            SeamState state(model_.nX, model_.nY);
            std::fill(state.overburden.begin(), state.overburden.end(),
                      model_.gradient * std::abs(seam.z));
            seams_.push_back(std::move(state));
            fields_.push_back({seam.x, seam.y, model_.elementWidth, model_.nX, model_.nY});
        }
        return log("") && (!model_.topographicStress || topographicStress());
    }

    bool topographicStress() {
        TopoRun topo = topographicOverburden(model_, watch_,
                                             [this](const std::string& text) { return log(text); });
        topographicSeconds_ = topo.seconds;
        if (!topo.ok()) {
            stop_ = {topo.ending, topo.message};
            return false;
        }
        for (std::size_t s = 0; s < seams_.size(); ++s)
            seams_[s].overburden = std::move(topo.overburden[s]);
        return true;
    }

    bool steps() {
        for (step_ = 1; step_ <= model_.steps; ++step_) {
            profile_.assign(model_.seams.size(), {});
            const bool solved = readCodes() && firstRelaxation() && levels();
            if (!solved || !finishStep())
                return false;
            stepsDone_ = step_;
        }
        return true;
    }

    bool readCodes() {
        laws_.clear();
        std::vector<ElementCodes> fromFile;
        if (model_.codes.empty()) {
            auto read = readStepFile(base_.parent_path(), step_, model_);
            if (!read)
                return fail("Error reading the fine mesh codes - RC2\n" + read.error().message());
            fromFile = std::move(*read);
        }
        const auto& codes = model_.codes.empty() ? fromFile : model_.codes[index(step_ - 1)];
        for (int s = 0; s < seamCount(); ++s) {
            if (!log(fmt::format("Reading in material codes for Step {}, Seam {}\n\n", step_,
                                 s + 1)))
                return false;
            laws_.push_back(lawsOf(codes[index(s)], model_.nX, model_.nY,
                                   static_cast<int>(model_.materials.size())));
            // What over-closed entries remember starts anew with each step.
            std::fill(seams_[index(s)].total.begin(), seams_[index(s)].total.end(), 0.0);
        }
        overClosed_.assign(model_.seams.size(),
                           std::vector<bool>(static_cast<std::size_t>(model_.elements()), false));
        return true;
    }

    bool firstRelaxation() {
        int most = 0;
        for (int s = 0; s < seamCount(); ++s)
            if (!relaxSeam(s, kCoarsestLevel, most))
                return false;
        return true;
    }

    bool levels() {
        for (int level = kCoarsestLevel; level >= 0; --level)
            if (!settle(level))
                return false;
        return true;
    }

    // What one level hands to the next: the external stresses are computed anew there.
    struct Kept {
        std::vector<double> convergence;
        std::vector<double> total;
    };
    std::vector<Kept> kept() const {
        std::vector<Kept> out;
        for (const SeamState& seam : seams_)
            out.push_back({seam.convergence, seam.total});
        return out;
    }
    void restore(const std::vector<Kept>& before) {
        for (std::size_t s = 0; s < seams_.size(); ++s) {
            seams_[s].convergence = before[s].convergence;
            seams_[s].total = before[s].total;
        }
    }

    // Passes at one level until no seam needs more iterations than the level's limit.
    bool settle(int level) {
        const std::vector<Kept> before = level > 0 ? kept() : std::vector<Kept>{};
        const int mostPasses = level > 0 ? kMostPassesAboveLevel0 : kMostPassesAtLevel0;
        const int limit = kDetailLevels[index(level)].iterationLimit;
        for (int pass = 1; pass <= mostPasses; ++pass) {
            watch_.status(fmt::format(
                "Solving for external stresses stabilize -- Step {}, Level {}", step_, level));
            if (interacting() && !externalStresses(level))
                return false;
            watch_.status("Calculating Seam Displacements ...");
            int most = 0;
            for (int s = 0; s < seamCount(); ++s) {
                watch_.status(fmt::format("Calculating Seam {} Displacements", s + 1));
                ++profile_[index(s)][index(level)].loops;
                if (!relaxSeam(s, level, most))
                    return false;
            }
            if (most <= limit)
                return true;
        }
        if (level == 0)
            return fail(fmt::format("The external stresses did not settle in {} passes at level 0 "
                                    "of step {}. Try a smaller over-relaxation factor.",
                                    kMostPassesAtLevel0, step_));
        restore(before);
        const std::string line =
            fmt::format("The external stresses did not settle in {} passes at level {} of step {}; "
                        "going on with the next finer level.\n\n",
                        kMostPassesAboveLevel0, level, step_);
        watch_.status(line);
        return log(line);
    }

    bool interacting() const { return seamCount() > 1 || model_.surfaceEffects; }

    // --- one relaxation ------------------------------------------------------------------------

    // Log and progress of one seam's relaxation.
    class SeamWatch final : public LoggedRelaxation {
      public:
        SeamWatch(Run& run, int seam)
            : LoggedRelaxation(
                  run.watch_, [&run](const std::string& text) { return run.log(text); },
                  run.model_.maxIterations),
              run_(run), seam_(seam) {}
        void overClosed(int x, int y) override {
            const std::size_t element = index(x - 1) * index(run_.model_.nY) + index(y - 1);
            std::vector<bool>& seen = run_.overClosed_[index(seam_)];
            if (seen[element])
                return;
            seen[element] = true;
            run_.log(fmt::format("Material Strain Greater Than 1 in Element Stress Routine - ES1a\n"
                                 "i = {}, j = {}, integer code = {}\n",
                                 x, y, 27));
        }

      private:
        Run& run_;
        int seam_;
    };

    bool relaxSeam(int s, int level, int& mostIterations) {
        const std::string place = fmt::format("Step {}, Seam {}, Level {}", step_, s + 1, level);
        const std::string entering = "Entering SOR - " + place + "\n";
        watch_.status(entering);
        if (!log(entering))
            return false;
        const Stopwatch clock;
        problem_.thickness = model_.seams[index(s)].thickness;
        SeamWatch seamWatch(*this, s);
        const RelaxationOutcome outcome =
            relax(problem_, laws_[index(s)], seams_[index(s)], seamWatch);
        LevelProfile& profile = profile_[index(s)][index(level)];
        profile.relaxationSeconds += clock.seconds();
        profile.iterations += outcome.iterations;
        mostIterations = std::max(mostIterations, outcome.iterations);
        if (outcome.ending != RelaxationOutcome::Ending::converged)
            return relaxationFailed(outcome, place);
        std::string done = fmt::format("SOR took {} iterations {} secs to converge - {}\n\n",
                                       outcome.iterations, clock.wholeSeconds(), place);
        if (outcome.overClosed > 0)
            done += fmt::format("Strains greater than 1 were met {} times - {}\n\n",
                                outcome.overClosed, place);
        return log(done);
    }

    bool relaxationFailed(const RelaxationOutcome& outcome, const std::string& place) {
        using Ending = RelaxationOutcome::Ending;
        switch (outcome.ending) {
        case Ending::cancelled:
            return cancel();
        case Ending::badCode:
            log(outcome.message);
            return fail(outcome.message);
        case Ending::notFinite:
            return fail("The seam convergence grew without bound (" + place +
                        "). Use a smaller over-relaxation factor.");
        case Ending::iterationLimit:
        case Ending::converged:
            break;
        }
        log(outcome.message + "\n");
        return fail(outcome.message + " (" + place +
                    "). Use a smaller over-relaxation factor or more iterations.");
    }

    // --- influence -----------------------------------------------------------------------------

    std::vector<double> convergenceOf(int s) const {
        const SeamState& seam = seams_[index(s)];
        std::vector<double> out;
        out.reserve(seam.elements());
        for (int i = 0; i < seam.nX; ++i)
            for (int j = 0; j < seam.nY; ++j)
                out.push_back(seam.convergenceAt(i, j));
        return out;
    }

    bool externalStresses(int level) {
        for (SeamState& seam : seams_) {
            std::fill(seam.surface.begin(), seam.surface.end(), 0.0);
            std::fill(seam.multiple.begin(), seam.multiple.end(), 0.0);
        }
        const int factor = kDetailLevels[index(level)].aggregation;
        std::vector<std::vector<double>> sources;
        for (int s = 0; s < seamCount(); ++s)
            sources.push_back(blockMeans(fields_[index(s)], convergenceOf(s), factor));
        for (int from = 0; from < seamCount(); ++from)
            for (int to = 0; to < seamCount(); ++to)
                if (from != to && !interseam(from, to, level, sources[index(from)]))
                    return false;
        if (!model_.surfaceEffects)
            return true;
        watch_.status("Calculating Surface Effect Stresses");
        for (int from = 0; from < seamCount(); ++from)
            for (int to = 0; to < seamCount(); ++to)
                if (!mirror(from, to, level, sources[index(from)]))
                    return false;
        return true;
    }

    bool interseam(int from, int to, int level, const std::vector<double>& source) {
        const std::string place =
            fmt::format("Step {}, Seam {} on Seam {}, Level {}", step_, from + 1, to + 1, level);
        watch_.status(fmt::format("Calculating Multi-Seam Stresses-  {} -> {}, Level {}", from + 1,
                                  to + 1, level));
        if (!log("Calculating Interseam Stresses - " + place + "\n\n"))
            return false;
        const Stopwatch clock;
        if (!spread(from, level, source, z(from) - z(to), to, seams_[index(to)].multiple))
            return false;
        profile_[index(to)][index(level)].interseamSeconds += clock.seconds();
        return log(fmt::format("Interseam Stress Calculation - {} took {} secs.\n\n", place,
                               clock.wholeSeconds()));
    }

    bool mirror(int from, int to, int level, const std::vector<double>& source) {
        const std::string place =
            fmt::format("Step {}, Seam {} on Seam {}, Level {}", step_, from + 1, to + 1, level);
        watch_.status("Mirror-Image Stresses");
        watch_.status(fmt::format("Calculating Mirror-Image Stresses, {} -> {}", from + 1, to + 1));
        if (!log("Calculating Mirror-Image Stresses - " + place + "\n\n"))
            return false;
        const Stopwatch clock;
        if (!spread(from, level, source, z(from) + z(to), to, seams_[index(to)].surface))
            return false;
        profile_[index(to)][index(level)].surfaceSeconds += clock.seconds();
        return log(fmt::format("Mirror Stress Calculation - {} took {} secs.\n\n", place,
                               clock.wholeSeconds()));
    }

    bool spread(int from, int level, const std::vector<double>& source, double h, int to,
                std::vector<double>& stress) {
        watch_.status("Stress Propogating");
        CancelOnly progress(watch_);
        const ElementField field =
            coarser(fields_[index(from)], kDetailLevels[index(level)].aggregation);
        return addInfluenceStress({model_.modulus, problem_.lambda, h}, field, source,
                                  fields_[index(to)], stress, progress)
                   ? true
                   : cancel();
    }

    // --- a step's end
    // -----------------------------------------------------------------------------------
    bool finishStep() {
        for (std::size_t s = 0; s < total_.size(); ++s)
            for (std::size_t level = 0; level < kDetailLevels.size(); ++level)
                total_[s][level] += profile_[s][level];
        if (!log(fmt::format("Profile Information for Step {}\n\n", step_) +
                 profileTables(profile_)))
            return false;
        for (int s = 0; s < seamCount(); ++s) {
            const std::string text = (step_ == 1 ? resultHeader(model_, s) : std::string{}) +
                                     resultStep(model_, seams_[index(s)]);
            if (!append(resultPath(base_, s + 1), text, "Error in Opening Output File - PES1\n"))
                return false;
        }
        keepFigures();
        return !model_.offSeamDisplacements || offSeam();
    }

    void keepFigures() {
        std::vector<SeamRanges> ranges;
        std::vector<std::vector<Pillar>> pillars;
        for (std::size_t s = 0; s < seams_.size(); ++s) {
            ranges.push_back(rangesOf(seams_[s]));
            pillars.push_back(pillarsOf(model_.materials, laws_[s], seams_[s], fields_[s]));
        }
        ranges_.push_back(std::move(ranges));
        pillars_.push_back(std::move(pillars));
    }

    // Displacements of a level between, above or below the seams: each seam's closure spreads from
    // it, downward above the seam and upward below it, and so does its image above the ground
    // surface.
    bool offSeam() {
        watch_.status("Off-Seam displacements");
        watch_.status("Calculating Off-Seam displacements ...");
        const Stopwatch clock;
        const OffSeamGrid& grid = model_.offSeam;
        const ElementField points{grid.x, grid.y, grid.blockWidth, grid.nX, grid.nY};
        std::vector<double> displacement(index(grid.nX) * index(grid.nY), 0.0);
        for (int s = 0; s < seamCount(); ++s) {
            watch_.status(fmt::format("Calculating Off-Seam Disp. from Seam {}", s + 1));
            const double depth = std::abs(z(s));
            const double above = depth - std::abs(grid.z);
            if (!displace(s, above, above > 0.0 ? 1.0 : -1.0, points, displacement))
                return false;
            if (!model_.surfaceEffects)
                continue;
            watch_.status(fmt::format("Calculating Off-Seam Disp. from Mirror Seam {}", s + 1));
            if (!displace(s, depth + std::abs(grid.z), 1.0, points, displacement))
                return false;
        }
        offSeamSeconds_ += clock.seconds();
        const std::string text = (step_ == 1 ? offSeamHeader(model_) : std::string{}) +
                                 offSeamStep(model_, displacement);
        return append(offSeamPath(base_), text, "Error in Opening Off-Seam Output File - OS1\n") &&
               log(fmt::format("Time for Off-Seam Disp. Calc. for Step {} was {} secs.\n\n", step_,
                               clock.wholeSeconds()));
    }

    bool displace(int s, double h, double sign, const ElementField& points,
                  std::vector<double>& displacement) {
        CancelOnly progress(watch_);
        return addInfluenceDisplacement({model_.modulus, problem_.lambda, h}, sign,
                                        fields_[index(s)], convergenceOf(s), points, displacement,
                                        progress)
                   ? true
                   : cancel();
    }

    // --- small things
    // ---------------------------------------------------------------------------------
    static std::size_t index(int k) { return static_cast<std::size_t>(k); }
    int seamCount() const { return model_.seamCount(); }
    double z(int s) const { return model_.seams[index(s)].z; }

    const CModelDat& model_;
    std::filesystem::path base_;
    RunWatch& watch_;
    RelaxationProblem problem_;
    std::vector<SeamState> seams_;
    std::vector<ElementField> fields_;
    std::vector<ElementLaws> laws_;
    std::vector<std::vector<bool>> overClosed_; // [seam][element]: told of in this step
    std::vector<SeamProfile> profile_;          // of this step
    std::vector<SeamProfile> total_;
    std::vector<std::vector<SeamRanges>> ranges_;
    PillarTable pillars_;
    Stopwatch clock_;
    double topographicSeconds_ = 0.0;
    double offSeamSeconds_ = 0.0;
    Stop stop_;
    int step_ = 1;
    int stepsDone_ = 0;
};

} // namespace

SeamRanges rangesOf(const SeamState& seam) {
    SeamRanges out;
    out.leastConvergence = out.mostConvergence = seam.convergenceAt(0, 0);
    out.leastStress = out.mostStress = seam.total.front();
    double carried = 0.0;
    double put = 0.0;
    std::size_t element = 0;
    for (int i = 0; i < seam.nX; ++i)
        for (int j = 0; j < seam.nY; ++j, ++element) {
            const double u = seam.convergenceAt(i, j);
            const double stress = seam.total[element];
            out.leastConvergence = std::min(out.leastConvergence, u);
            out.mostConvergence = std::max(out.mostConvergence, u);
            out.leastStress = std::min(out.leastStress, stress);
            out.mostStress = std::max(out.mostStress, stress);
            carried += stress;
            put += seam.overburden[element] + seam.multiple[element] + seam.surface[element];
        }
    out.carriedShare = put != 0.0 ? carried / put : 0.0;
    return out;
}

// A seam's arrays are matrices of doubles; nothing else of a run comes near their size.
RunReport solve(const CModelDat& model, const std::filesystem::path& base, RunWatch& watch) {
    try {
        return Run(model, base, watch).run();
    } catch (const std::bad_alloc&) {
    } catch (const std::length_error&) {
    }
    RunReport report;
    report.ending = RunReport::Ending::outOfMemory;
    report.message = "allocation failure 1 in dmatrix()\n...now exiting to the system...\n";
    watch.message(report.message);
    return report;
}

} // namespace tessaran::stress
