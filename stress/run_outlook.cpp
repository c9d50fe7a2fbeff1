#include "stress/run_outlook.h"

#include "stress/profile.h"
#include "stress/relaxation.h"
#include "stress/stopwatch.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>

namespace tessaran::stress {
namespace {

// What a relaxation and a level usually take; runs that differ much say so by their log.
constexpr int kUsualIterations = 300;
constexpr int kUsualPasses = 3;
constexpr int kTimedSweeps = 3;

bool isMined(const CModelDat& model, char code) {
    if (code < 'A' || code > 'Z')
        return true;
    const auto material = static_cast<std::size_t>(code - 'A');
    return material < model.materials.size() &&
           model.materials[material].type >= MaterialType::biLinearHardeningGob;
}

void widen(int& margin, int elements) {
    margin = margin < 0 ? elements : std::min(margin, elements);
}

void addMargins(Margins& margins, const CModelDat& model, const ElementCodes& codes) {
    const auto nY = static_cast<std::size_t>(model.nY);
    for (int i = 0; i < model.nX; ++i)
        for (int j = 0; j < model.nY; ++j) {
            if (!isMined(model,
                         codes[static_cast<std::size_t>(i) * nY + static_cast<std::size_t>(j)]))
                continue;
            widen(margins.west, i);
            widen(margins.east, model.nX - 1 - i);
            widen(margins.south, j);
            widen(margins.north, model.nY - 1 - j);
        }
}

// The smallest vertical distance over which stresses spread; 0 where none do.
double smallestDistance(const CModelDat& model) {
    double least = 0.0;
    const auto take = [&](double h) {
        if (h > 0.0 && (least == 0.0 || h < least))
            least = h;
    };
    for (const Seam& a : model.seams)
        for (const Seam& b : model.seams) {
            take(std::abs(a.z - b.z));
            if (model.surfaceEffects)
                take(std::abs(a.z + b.z));
        }
    return least;
}

double secondsOfSweep(const CModelDat& model) {
    RelaxationProblem problem;
    problem.modulus = model.modulus;
    problem.lambda = laminationConstant(model);
    problem.width = model.elementWidth;
    problem.thickness = model.seams.front().thickness;
    problem.omega = 1.0;
    problem.maxIterations = kTimedSweeps;
    problem.boundaries = model.boundaries;
    problem.materials = model.materials;
    const ElementLaws laws = lawsOf(model.codes.front().front(), model.nX, model.nY,
                                    static_cast<int>(model.materials.size()));
    SeamState state(model.nX, model.nY);
    std::fill(state.overburden.begin(), state.overburden.end(),
              model.gradient * std::abs(model.seams.front().z));
    RelaxationWatch nobody;
    const Stopwatch clock;
    relax(problem, laws, state, nobody);
    return clock.seconds() / kTimedSweeps;
}

std::string timeText(double seconds) {
    if (seconds < 90.0)
        return fmt::format("{:.2g} s", seconds);
    return seconds < 5400.0 ? fmt::format("{:.0f} min", seconds / 60.0)
                            : fmt::format("{:.1f} h", seconds / 3600.0);
}

std::string timeLine(const CModelDat& model) {
    const bool interacting = model.seamCount() > 1 || model.surfaceEffects;
    const int relaxations =
        model.steps * model.seamCount() *
        (1 + static_cast<int>(kDetailLevels.size()) * (interacting ? kUsualPasses : 1));
    const int iterations = std::min(model.maxIterations, kUsualIterations);
    return fmt::format("Time: about {} ({} relaxations, taken as {} iterations each)\n",
                       timeText(secondsOfSweep(model) * iterations * relaxations), relaxations,
                       iterations);
}

std::string widthLine(const CModelDat& model) {
    const double lambda = laminationConstant(model);
    std::string out = fmt::format("Element width: {:.4g} {}, {:.3g} times lambda",
                                  model.elementWidth * model.units().lengthFactor,
                                  model.units().length, model.elementWidth / lambda);
    const double h = smallestDistance(model);
    if (h > 0.0) {
        const double reach = std::sqrt(4.0 * lambda * h);
        out += fmt::format(", {:.3g} times sqrt(4 lambda h) at h = {:.4g} {}",
                           model.elementWidth / reach, h * model.units().lengthFactor,
                           model.units().length);
        if (model.elementWidth > reach)
            out += " (too wide: stresses between seams are coarse)";
    }
    return out + "\n";
}

std::string marginLine(const CModelDat& model) {
    const Margins m = coalMargins(model);
    if (m.north < 0)
        return "Coal around the openings: nothing is mined\n";
    const double width = model.elementWidth * model.units().lengthFactor;
    return fmt::format("Coal around the openings: {:.4g} north, {:.4g} east, {:.4g} south, {:.4g} "
                       "west ({})\n",
                       m.north * width, m.east * width, m.south * width, m.west * width,
                       model.units().length);
}

} // namespace

Margins coalMargins(const CModelDat& model) {
    Margins out;
    for (const auto& step : model.codes)
        for (const ElementCodes& codes : step)
            addMargins(out, model, codes);
    return out;
}

// Each seam's five arrays, twice while a level may have to be taken back, a field of influence,
// codes, and the text of a result.
double memoryOfRun(const CModelDat& model) {
    const double elements = static_cast<double>(model.nX) * model.nY;
    constexpr double kArrays = 5.0 * 2.0 + 1.0;
    constexpr double kResultLine = 70.0;
    return elements * (model.seamCount() * (kArrays * sizeof(double) + 2.0) + kResultLine);
}

std::string runOutlook(const CModelDat& model) {
    const Units& u = model.units();
    const auto byDepth = [](const Seam& a, const Seam& b) { return std::abs(a.z) < std::abs(b.z); };
    const auto [shallow, deep] =
        std::minmax_element(model.seams.begin(), model.seams.end(), byDepth);
    std::string out = fmt::format("Model: {} x {} elements, {} seams, {} steps\n", model.nX,
                                  model.nY, model.seamCount(), model.steps) +
                      fmt::format("Lamination constant lambda: {:.4g} {}\n",
                                  laminationConstant(model) * u.lengthFactor, u.length);
    out += widthLine(model);
    out += fmt::format("Depths: {:.6g} to {:.6g} {}\n", std::abs(shallow->z) * u.lengthFactor,
                       std::abs(deep->z) * u.lengthFactor, u.length);
    out += marginLine(model);
    out += fmt::format("Memory: about {:.3g} MB\n", memoryOfRun(model) / 1e6);
    return out + timeLine(model);
}

} // namespace tessaran::stress
