#include "base/file.h"
#include "base/text.h"
#include "cli/options.h"
#include "cli/subcommands.h"
#include "stress/plan_text.h"
#include "stress/run_outlook.h"

#include <fmt/format.h>

#include <cstdio>

namespace tessaran::cli {
namespace {

using base::Result;

int fail(int status, const base::Error& error) {
    fmt::print(stderr, "{}\n", base::trimmed(error.message()));
    return status;
}

// The parts that are written as text.
Result<void> addParts(const InpOptions& options, stress::ModelPlan& plan) {
    for (const std::string& text : options.materials) {
        const auto material = stress::materialOf(text);
        if (!material)
            return material.error();
        plan.materials.push_back(*material);
    }
    for (const std::string& text : options.seams) {
        const auto seam = stress::seamOf(text);
        if (!seam)
            return seam.error();
        plan.seams.push_back(*seam);
    }
    for (const std::string& text : options.codes) {
        const auto code = stress::codeOf(text);
        if (!code)
            return code.error();
        plan.codes[code->first] = code->second;
    }
    for (const std::string& text : options.rings) {
        const auto rings = stress::ringsOf(text);
        if (!rings)
            return rings.error();
        plan.rings.push_back(*rings);
    }
    const auto boundaries = stress::boundariesOf(options.boundaries);
    if (!boundaries)
        return boundaries.error();
    plan.boundaries = *boundaries;
    if (options.offSeam.empty())
        return {};
    const auto offSeam = stress::offSeamOf(options.offSeam);
    if (!offSeam)
        return offSeam.error();
    plan.offSeam = *offSeam;
    return {};
}

Result<stress::ModelPlan> planOf(const InpOptions& o) {
    stress::ModelPlan plan;
    plan.title = o.title;
    plan.unitSystem = o.units;
    plan.poissonsRatio = o.poisson;
    plan.modulus = o.modulus;
    plan.laminationThickness = o.lamination;
    plan.elementWidth = o.width;
    plan.gradient = o.gradient;
    plan.steps = o.steps;
    plan.overRelaxation = o.relaxation;
    plan.convergenceCriterion = o.criterion;
    plan.maxIterations = o.iterations;
    plan.surfaceEffects = o.surfaceEffects;
    plan.topography = o.topography;
    if (const auto added = addParts(o, plan); !added)
        return added.error();
    return plan;
}

} // namespace

int composeInput(const InpOptions& options) {
    const auto plan = planOf(options);
    if (!plan)
        return fail(kWrongUsage, plan.error());
    const std::string file = base::withEnding(options.output, ".inp");
    if (!options.overwrite && base::fileExists(file)) {
        fmt::print(stderr, "{} exists (--overwrite replaces it).\n", file);
        return kFailed;
    }
    const auto composed = stress::composeModel(*plan);
    if (!composed)
        return fail(kFailed, composed.error());
    for (const std::string& warning : composed->warnings)
        fmt::print(stderr, "{}\n", warning);
    if (const auto written = stress::writeComposed(*plan, *composed, file); !written)
        return fail(kFailed, written.error());
    fmt::print("{}Written: {}\n", stress::runOutlook(composed->model), file);
    return kDone;
}

} // namespace tessaran::cli
