#include "stress/model_run.h"

#include "base/file.h"
#include "stress/model_echo.h"
#include "stress/model_reader.h"
#include "stress/result_file.h"
#include "stress/topo_model.h"
#include "stress/topo_stress_file.h"

#include <fmt/format.h>

#include <algorithm>
#include <numeric>

namespace tessaran::stress {
namespace {

double sumOf(const std::vector<double>& values) {
    return std::accumulate(values.begin(), values.end(), 0.0);
}

// The elements' convergence without the ghost border.
std::pair<double, double> convergenceRange(const SeamState& seam) {
    double low = seam.convergenceAt(0, 0);
    double high = low;
    for (int i = 0; i < seam.nX; ++i) {
        for (int j = 0; j < seam.nY; ++j) {
            low = std::min(low, seam.convergenceAt(i, j));
            high = std::max(high, seam.convergenceAt(i, j));
        }
    }
    return {low, high};
}

std::string seamSummary(const CModelDat& model, const SeamState& seam, int number) {
    const Units& units = model.units();
    const auto [low, high] = convergenceRange(seam);
    const auto [least, most] = std::minmax_element(seam.total.begin(), seam.total.end());
    const double carried = sumOf(seam.total);
    const double put = sumOf(seam.overburden) + sumOf(seam.multiple) + sumOf(seam.surface);
    return fmt::format("Seam {}: convergence {:.5g} to {:.5g} {}, stress {:.5g} to {:.5g} {}, "
                       "elements carry {:.3f} % of the load put on them\n",
                       number, low * units.lengthFactor, high * units.lengthFactor, units.length,
                       *least * units.stressFactor, *most * units.stressFactor, units.stress,
                       put != 0.0 ? 100.0 * carried / put : 0.0);
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

} // namespace

base::Result<PreparedRun> prepareRun(const std::filesystem::path& input) {
    ModelReading reading = readModel(input.string());
    if (!reading.ok())
        return base::formatError(reading.message, input.string(), reading.line);
    if (const std::string fault = modelFault(reading.model); !fault.empty())
        return base::formatError(fault, input.string());
    PreparedRun run{std::move(reading.model), input, {}};
    run.base.replace_extension();
    if (const auto topography = addTopography(run); !topography)
        return topography.error();
    const auto echoed = appendText(run.base.string() + ".out", modelEcho(run.model), true);
    if (!echoed)
        return base::Error{base::ErrorKind::io, "Error in Opening Output File - PI1\n",
                           echoed.error().file, 0, echoed.error().cause};
    return run;
}

std::string runSummary(const CModelDat& model, const RunReport& report) {
    std::string out = fmt::format("{} of {} steps solved\n", report.stepsDone, model.steps);
    int number = 0;
    for (const SeamState& seam : report.seams)
        out += seamSummary(model, seam, ++number);
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
