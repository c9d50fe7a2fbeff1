#include "stress/topo_model.h"

#include "stress/model_echo.h"
#include "stress/result_file.h"
#include "stress/stopwatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::stress {
namespace {

constexpr const char* kLogFailed = "Error in Opening Output File - TS1\n";

// One seam under a datum.
struct SeamBelow {
    int number = 1;
    ElementField elements;
    double h = 0.0;       // of the datum above it
    double uniform = 0.0; // what the load's mean becomes at the seam
};

// What both kinds of runs do: relax the datum if any seam needs it, then bring the load to the
// seams.
class TopoSteps {
  public:
    struct Texts {
        std::string entering;
        std::string (*propagating)(int seam);
        std::string (*propagatingLog)(int seam);
        std::string (*propagatingDisplacement)(int seam) = nullptr; // a second line on screen
    };
    struct Rock {
        double modulus, lambda, omega, criterion;
        int maxIterations;
    };

    TopoSteps(const Rock& rock, const ElementField& blocks, const DatumLoad& load, RunWatch& watch,
              LogSink log)
        : rock_(rock), blocks_(blocks), load_(load), watch_(watch), log_(std::move(log)) {}

    TopoRun run(const std::vector<SeamBelow>& seams, const Texts& texts) {
        const Stopwatch clock;
        bool going = !anySpreads(seams) || relax(texts.entering);
        for (std::size_t s = 0; s < seams.size() && going; ++s)
            going = bring(seams[s], texts);
        out_.seconds = clock.seconds();
        return std::move(out_);
    }

  private:
    Reach reach(double h) const { return reachOf(rock_.lambda, blocks_.width, h); }

    bool anySpreads(const std::vector<SeamBelow>& seams) const {
        return std::any_of(seams.begin(), seams.end(),
                           [&](const SeamBelow& s) { return reach(s.h) == Reach::spread; });
    }

    bool log(const std::string& text) { return log_(text) ? true : fail(kLogFailed); }
    bool fail(std::string message) {
        out_.ending = RunReport::Ending::failed;
        out_.message = std::move(message);
        return false;
    }
    bool cancel() {
        out_.ending = RunReport::Ending::cancelled;
        log_("Operations are canceled by user\n\n");
        return false;
    }

    bool relax(const std::string& entering) {
        watch_.status(entering);
        if (!log("Entering Topographic SOR\n\n"))
            return false;
        LoggedRelaxation watch(watch_, log_, rock_.maxIterations);
        DatumDisplacement found =
            relaxDatum(rock_.modulus, rock_.lambda, blocks_, load_.deviation, rock_.omega,
                       rock_.criterion, rock_.maxIterations, watch);
        using Ending = RelaxationOutcome::Ending;
        switch (found.outcome.ending) {
        case Ending::cancelled:
            return cancel();
        case Ending::iterationLimit:
        case Ending::badCode:
            log_(found.outcome.message + "\n");
            return fail(found.outcome.message +
                        " (topographic SOR). Use a larger over-relaxation factor or more "
                        "iterations.");
        case Ending::notFinite:
            return fail("The displacement of the topographic datum grew without bound. Use an "
                        "over-relaxation factor below 2.");
        case Ending::converged:
            break;
        }
        const std::string done = fmt::format("Topographic SOR took {} iterations to converge\n\n",
                                             found.outcome.iterations);
        watch_.status(done);
        out_.relaxed = true;
        out_.iterations = found.outcome.iterations;
        down_ = std::move(found.down);
        return log(done);
    }

    bool bring(const SeamBelow& seam, const Texts& texts) {
        watch_.status(texts.propagating(seam.number));
        if (texts.propagatingDisplacement != nullptr)
            watch_.status(texts.propagatingDisplacement(seam.number));
        if (!log(texts.propagatingLog(seam.number)))
            return false;
        CancelOnly progress(watch_);
        Arrived arrived = reach(seam.h) == Reach::spread
                              ? spreadToSeam({rock_.modulus, rock_.lambda, seam.h}, blocks_, down_,
                                             seam.elements, progress)
                              : asItStands(blocks_, load_.deviation, seam.elements);
        if (arrived.cancelled)
            return cancel();
        for (double& stress : arrived.stress)
            stress += seam.uniform;
        out_.overburden.push_back(std::move(arrived.stress));
        if (arrived.outside > 0 &&
            !warn(fmt::format("{} elements of seam {} lie outside the topographic blocks and take "
                              "what the nearest block gets.",
                              arrived.outside, seam.number)))
            return false;
        if (reach(seam.h) != Reach::spread)
            return true;
        const double edge = std::sqrt(4.0 * rock_.lambda * seam.h);
        const long near = countNearEdge(blocks_, seam.elements, edge);
        return near == 0 ||
               warn(fmt::format("{} elements of seam {} lie within {:.3g} element widths of the "
                                "topographic blocks' edge, where part of the load is missing: "
                                "extend the blocks by that much.",
                                near, seam.number, edge / seam.elements.width));
    }

    bool warn(const std::string& text) {
        out_.warnings.push_back(text);
        watch_.status(text);
        return log(text + "\n\n");
    }

    Rock rock_;
    const ElementField& blocks_;
    const DatumLoad& load_;
    RunWatch& watch_;
    LogSink log_;
    std::vector<double> down_;
    TopoRun out_;
};

double datumAbove(const CModelDat& model, const Seam& seam) {
    return std::abs(seam.z) - std::abs(model.topography->datum);
}

long countNotAboveZero(const std::vector<double>& values) {
    return std::count_if(values.begin(), values.end(), [](double v) { return !(v > 0.0); });
}

} // namespace

// --- inside the solver --------------------------------------------------------------------------

std::string topographyFault(const CModelDat& model) {
    if (!model.topography)
        return "The model asks for topographic stress and has none";
    if (std::string fault = blocksFault(*model.topography); !fault.empty())
        return fault;
    const double lambda = laminationConstant(model);
    const double width = model.topography->blocks.width;
    for (int s = 0; s < model.seamCount(); ++s) {
        const double h = datumAbove(model, model.seams[static_cast<std::size_t>(s)]);
        if (const auto refusal = refusalOf(reachOf(lambda, width, h), lambda, width, h);
            !refusal.empty())
            return fmt::format("Seam {}: {}", s + 1, refusal);
    }
    return {};
}

std::vector<std::string> topographyWarnings(const CModelDat& model) {
    if (!model.topography)
        return {};
    const long count = countNotAboveZero(model.topography->values);
    if (count == 0)
        return {};
    return {fmt::format("{} topographic blocks have a stress of 0 or less.", count)};
}

TopoRun topographicOverburden(const CModelDat& model, RunWatch& watch, const LogSink& log) {
    TopoRun refused;
    refused.message = topographyFault(model);
    if (!refused.message.empty()) {
        refused.ending = RunReport::Ending::failed;
        return refused;
    }
    watch.status("Topographic stress calculation");
    const TopographicGrid& topography = *model.topography;
    const DatumLoad load = datumLoad(topography.values);
    std::vector<SeamBelow> seams;
    for (const Seam& seam : model.seams) {
        const double h = datumAbove(model, seam);
        seams.push_back({static_cast<int>(seams.size()) + 1,
                         {seam.x, seam.y, model.elementWidth, model.nX, model.nY},
                         h,
                         load.mean + model.gradient * h});
    }
    TopoSteps steps({model.modulus, laminationConstant(model), model.overRelaxation,
                     model.convergenceCriterion, model.maxIterations},
                    topography.blocks, load, watch, log);
    TopoRun out = steps.run(
        seams, {"Entering Topographic SOR\n\n",
                [](int s) { return fmt::format("Propogating Topographic Stress to Seam {}", s); },
                [](int s) {
                    return fmt::format("Propogating the topo. disp. to seam {} stresses\n\n", s);
                },
                [](int s) {
                    return fmt::format("Propogating the topographic disp. to seam {} stresses!", s);
                }});
    if (out.ok() && !log(fmt::format("Total Time for Topographic Stress Calculations was {} "
                                     "secs.\n\n",
                                     static_cast<long>(out.seconds)))) {
        out.ending = RunReport::Ending::failed;
        out.message = kLogFailed;
    }
    return out;
}

// --- by itself ----------------------------------------------------------------------------------

std::string topoModelFault(const CTopoModelDat& data) {
    if (std::string fault = blocksFault(data.depths); !fault.empty())
        return fault;
    const double lambda = laminationConstant(data.poissonsRatio, data.laminationThickness);
    const double width = data.depths.blocks.width;
    const double h = data.depths.datum;
    return refusalOf(reachOf(lambda, width, h), lambda, width, h);
}

namespace {

std::string echoOf(const CTopoModelDat& d, const Seam& seam) {
    CModelDat model;
    model.poissonsRatio = d.poissonsRatio;
    model.modulus = d.modulus;
    model.laminationThickness = d.laminationThickness;
    model.unitSystem = d.unitSystem;
    model.elementWidth = d.seam.width;
    model.nX = d.seam.nX;
    model.nY = d.seam.nY;
    model.gradient = d.gradient;
    model.seams.push_back(seam);
    model.overRelaxation = d.overRelaxation;
    model.maxIterations = d.maxIterations;
    model.convergenceCriterion = d.convergenceCriterion;
    model.topographicStress = true;
    const ElementField& b = d.depths.blocks;
    return rockMassBlock(model) + gridBlock(model) + kSeamsHeading +
           fmt::format("{:12.2f}{:12.2f}\n", d.seam.x, d.seam.y) + controlBlock(model) +
           topographicBlock(
               {b.x, b.y, seam.z + d.depths.datum, d.depths.datum, b.width, b.nX, b.nY});
}

} // namespace

TopoRun runTopoModel(const CTopoModelDat& data, const Seam& seam,
                     const std::filesystem::path& logFile, RunWatch& watch) {
    TopoRun out;
    out.ending = RunReport::Ending::failed;
    out.message = topoModelFault(data);
    if (!out.message.empty())
        return out;
    std::string trouble; // why the log could not be written
    const auto log = [&](const std::string& text, bool fresh) {
        const auto written = appendText(logFile, text, fresh);
        if (!written)
            trouble = written.error().text;
        return written.ok();
    };
    if (!log(echoOf(data, seam), true)) {
        out.message = kLogFailed + trouble;
        return out;
    }
    watch.status("Topographic Stress Calculation");
    const double h = data.depths.datum;
    const DatumLoad depth = datumLoad(data.depths.values);
    // The load on the datum is gradient x (depth - h); h of cover comes back at the seam.
    DatumLoad load{data.gradient * (depth.mean - h), depth.deviation};
    for (double& stress : load.deviation)
        stress *= data.gradient;
    TopoSteps steps({data.modulus, laminationConstant(data.poissonsRatio, data.laminationThickness),
                     data.overRelaxation, data.convergenceCriterion, data.maxIterations},
                    data.depths.blocks, load, watch,
                    [&](const std::string& text) { return log(text, false); });
    out = steps.run(
        {{1, data.seam, h, data.gradient * depth.mean}},
        {"Successive Over Relaxation Iterating",
         [](int) { return std::string("Stress Propogating to Seam"); },
         [](int) { return std::string("Propogating the topo. disp. to seam stresses\n\n"); },
         nullptr});
    out.message += trouble;
    return out;
}

} // namespace tessaran::stress
