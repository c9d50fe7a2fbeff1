#include "stress/model_run.h"

#include "base/file.h"
#include "stress/model_echo.h"
#include "stress/model_reader.h"
#include "stress/result_file.h"
#include "stress/run_outlook.h"
#include "stress/step_files.h"
#include "stress/topo_model.h"
#include "stress/topo_stress_file.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

std::string rangesText(const CModelDat& model, const SeamRanges& r, std::size_t step, int seam) {
    const Units& u = model.units();
    return fmt::format("Step {}, seam {}: convergence {:.5g} to {:.5g} {}, stress {:.5g} to {:.5g} "
                       "{}, elements carry {:.3f} % of the load put on them\n",
                       step, seam, r.leastConvergence * u.lengthFactor,
                       r.mostConvergence * u.lengthFactor, u.length, r.leastStress * u.stressFactor,
                       r.mostStress * u.stressFactor, u.stress, 100.0 * r.carriedShare);
}

// The stresses of the file BASE.top, where the model asks for them.
base::Result<void> addTopography(PreparedRun& run) {
    if (!run.model.topographicStress)
        return {};
    const std::string file = run.base.string() + ".top";
    TopoReading reading = readTopoStress(file);
    if (!reading.ok())
        return base::formatError(reading.message, file, reading.line);
    if (reading.holdsDepths())
        run.warnings.push_back(file + " says \"Overburden Depth\": a file of depths is taken for "
                                      "one of stresses.");
    run.model.topography = std::move(reading.grid);
    if (const std::string fault = topographyFault(run.model); !fault.empty())
        return base::formatError(fault, file);
    for (std::string& warning : topographyWarnings(run.model))
        run.warnings.push_back(std::move(warning));
    return {};
}

// The step files of the steps that were read whole, in a folder that no other run works in.
base::Result<void> keepCodes(PreparedRun& run) {
    if (run.model.codes.empty())
        return {};
    const std::filesystem::path folder = run.base.parent_path();
    base::Result<base::FolderLock> lock = base::FolderLock::take(folder);
    if (!lock)
        return base::Error{base::ErrorKind::state,
                           "Error writing the fine mesh codes - RI10c\nAnother run works on step "
                           "files in this folder; wait for its end, or run in another folder.",
                           folder.string()};
    run.lock = std::move(*lock);
    const auto written = writeStepFiles(folder, run.model);
    if (written)
        return {};
    return base::Error{base::ErrorKind::io,
                       "Error writing the fine mesh codes - RI10c\n" + written.error().text,
                       written.error().file, 0, written.error().cause};
}

base::Error echoError(const base::Error& why) {
    const bool full = why.cause == base::IoCause::diskFull;
    return {
        base::ErrorKind::io,
        (full ? "Trouble Printing Input File - PI2\n" : "Error in Opening Output File - PI1\n") +
            why.text,
        why.file, 0, why.cause};
}

} // namespace

base::Result<PreparedRun> prepareRun(const std::filesystem::path& input) {
    ModelReading reading = readModel(input.string());
    PreparedRun run{std::move(reading.model), input, {}, {}, {}};
    run.base.replace_extension();
    if (const auto codes = keepCodes(run); !codes)
        return codes.error();
    if (!reading.ok())
        return base::formatError(reading.message, input.string(), reading.line);
    if (const ModelFault fault = modelFault(run.model, reading.lines))
        return base::Error{base::ErrorKind::range, fault.text, input.string(), fault.line};
    if (const auto topography = addTopography(run); !topography)
        return topography.error();
    if (const auto echoed = appendText(run.base.string() + ".out", modelEcho(run.model), true);
        !echoed)
        return echoError(echoed.error());
    run.outlook = runOutlook(run.model);
    run.model.codes = {};
    return run;
}

base::Result<std::filesystem::path> writePillars(const PreparedRun& run, const RunReport& report) {
    const std::filesystem::path path = run.base.string() + "_pillars.csv";
    const auto written = base::writeFile(path, pillarText(run.model, report.pillars));
    if (!written)
        return written.error();
    return path;
}

std::string runSummary(const CModelDat& model, const RunReport& report) {
    std::string out = fmt::format("{} of {} steps solved\n", report.stepsDone, model.steps);
    for (std::size_t step = 0; step < report.ranges.size(); ++step) {
        int seam = 0;
        for (const SeamRanges& ranges : report.ranges[step])
            out += rangesText(model, ranges, step + 1, ++seam);
    }
    for (int level = kCoarsestLevel; level >= 0; --level) {
        LevelProfile sum;
        for (const SeamProfile& seam : report.profile)
            sum += seam[static_cast<std::size_t>(level)];
        out += fmt::format("Level {}: {} passes, {} iterations, {:.2f} s relaxing, {:.2f} s "
                           "between seams, {:.2f} s from the surface\n",
                           level, sum.loops, sum.iterations, sum.relaxationSeconds,
                           sum.interseamSeconds, sum.surfaceSeconds);
    }
    return out;
}

} // namespace tessaran::stress
