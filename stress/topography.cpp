#include "stress/topography.h"

#include "base/tolerance.h"
#include "stress/arrays.h"

#include <fmt/format.h>

#include <algorithm>
#include <cmath>
#include <functional>

namespace tessaran::stress {
namespace {

std::vector<double> field(const ElementField& of) {
    return dmatrix(static_cast<std::size_t>(std::max(0, of.nX)),
                   static_cast<std::size_t>(std::max(0, of.nY)));
}

// Along one axis, the block that holds each receiver's centre or is nearest to it.
struct Nearest {
    std::vector<int> block;
    std::vector<bool> outside;
};

Nearest nearestAlong(double from, double width, int count, double receiversFrom,
                     double receiverWidth, int receivers) {
    Nearest out;
    for (int k = 0; k < receivers; ++k) {
        const double at = (receiversFrom + (k + 0.5) * receiverWidth - from) / width;
        out.block.push_back(static_cast<int>(std::clamp(std::floor(at), 0.0, count - 1.0)));
        out.outside.push_back(at < 0.0 || at > count);
    }
    return out;
}

// Calls visit(receiver, block, outside) for every receiver in order.
template <class Visit>
void eachNearest(const ElementField& blocks, const ElementField& receivers, const Visit& visit) {
    const Nearest x =
        nearestAlong(blocks.x, blocks.width, blocks.nX, receivers.x, receivers.width, receivers.nX);
    const Nearest y =
        nearestAlong(blocks.y, blocks.width, blocks.nY, receivers.y, receivers.width, receivers.nY);
    std::size_t receiver = 0;
    for (std::size_t i = 0; i < x.block.size(); ++i)
        for (std::size_t j = 0; j < y.block.size(); ++j, ++receiver)
            visit(receiver,
                  static_cast<std::size_t>(x.block[i]) * static_cast<std::size_t>(blocks.nY) +
                      static_cast<std::size_t>(y.block[j]),
                  x.outside[i] || y.outside[j]);
}

long countOutside(const ElementField& blocks, const ElementField& receivers) {
    long count = 0;
    eachNearest(blocks, receivers,
                [&](std::size_t, std::size_t, bool outside) { count += outside ? 1 : 0; });
    return count;
}

} // namespace

std::string blocksFault(const TopographicGrid& grid) {
    const ElementField& blocks = grid.blocks;
    if (blocks.nX < 1 || blocks.nY < 1)
        return "The topographic grid needs at least one block in each direction";
    if (!(blocks.width > 0.0))
        return "The width of the topographic blocks must be larger than 0";
    for (int i = 0; i < blocks.nX; ++i)
        for (int j = 0; j < blocks.nY; ++j)
            if (!std::isfinite(grid.at(i, j)) || !base::hasValue(grid.at(i, j)))
                return fmt::format("The topographic block in column {} and row {} has no value",
                                   i + 1, j + 1);
    return {};
}

// The mean is taken from the first value on, so that equal values have exactly that mean.
DatumLoad datumLoad(const std::vector<double>& stress) {
    DatumLoad out;
    if (stress.empty())
        return out;
    const double first = stress.front();
    double sum = 0.0;
    for (const double s : stress)
        sum += s - first;
    out.mean = first + sum / static_cast<double>(stress.size());
    out.deviation = allocatedArray<double>(ArrayKind::dmatrix, stress.size());
    std::transform(stress.begin(), stress.end(), out.deviation.begin(),
                   [&](double s) { return s - out.mean; });
    return out;
}

Reach reachOf(double lambda, double blockWidth, double h) {
    if (std::abs(h) <= 0.5 * blockWidth)
        return Reach::asItStands;
    if (h < 0.0)
        return Reach::datumBelowSeam;
    return 4.0 * lambda * h < blockWidth * blockWidth ? Reach::blocksTooWide : Reach::spread;
}

std::string refusalOf(Reach reach, double lambda, double blockWidth, double h) {
    if (reach == Reach::datumBelowSeam)
        return fmt::format("The topographic datum lies {:g} below the seam, more than half a "
                           "block",
                           -h);
    if (reach == Reach::blocksTooWide)
        return fmt::format("The topographic blocks are too wide for a datum {:g} above the seam: "
                           "their width of {:g} must not exceed {:g}, the root of 4 lambda h. "
                           "Use narrower blocks, or a datum farther above the seam or at it",
                           h, blockWidth, std::sqrt(4.0 * lambda * h));
    return {};
}

DatumDisplacement relaxDatum(double modulus, double lambda, const ElementField& blocks,
                             const std::vector<double>& deviation, double omega, double criterion,
                             int maxIterations, RelaxationWatch& watch) {
    RelaxationProblem problem;
    problem.modulus = modulus;
    problem.lambda = lambda;
    problem.width = blocks.width;
    problem.omega = omega;
    problem.criterion = criterion;
    problem.maxIterations = maxIterations;
    SeamState state(blocks.nX, blocks.nY);
    DatumDisplacement out;
    out.outcome = relaxUnderLoad(problem, deviation, state, watch);
    out.down = state.plainConvergence();
    return out;
}

// A block that moves down loads what is below it, other than a seam that closes: the sign turns.
Arrived spreadToSeam(const Influence& influence, const ElementField& blocks,
                     const std::vector<double>& down, const ElementField& receivers,
                     base::Progress& progress) {
    Arrived out;
    out.stress = field(receivers);
    out.outside = countOutside(blocks, receivers);
    std::vector<double> closing = field(blocks);
    std::transform(down.begin(), down.end(), closing.begin(), std::negate<>());
    out.cancelled =
        !addInfluenceStress(influence, blocks, closing, receivers, out.stress, progress);
    if (out.cancelled || out.outside == 0)
        return out;
    std::vector<double> atBlocks = field(blocks);
    out.cancelled = !addInfluenceStress(influence, blocks, closing, blocks, atBlocks, progress);
    eachNearest(blocks, receivers, [&](std::size_t receiver, std::size_t block, bool outside) {
        if (outside)
            out.stress[receiver] = atBlocks[block];
    });
    return out;
}

long countNearEdge(const ElementField& blocks, const ElementField& receivers, double edge) {
    const auto inside = [](double from, double width, int count, double at, double margin) {
        return at > from + margin && at < from + width * count - margin;
    };
    long near = 0;
    for (int i = 0; i < receivers.nX; ++i) {
        const double x = receivers.x + (i + 0.5) * receivers.width;
        for (int j = 0; j < receivers.nY; ++j) {
            const double y = receivers.y + (j + 0.5) * receivers.width;
            const auto within = [&](double margin) {
                return inside(blocks.x, blocks.width, blocks.nX, x, margin) &&
                       inside(blocks.y, blocks.width, blocks.nY, y, margin);
            };
            near += within(0.0) && !within(edge) ? 1 : 0;
        }
    }
    return near;
}

Arrived asItStands(const ElementField& blocks, const std::vector<double>& deviation,
                   const ElementField& receivers) {
    Arrived out;
    out.stress = field(receivers);
    eachNearest(blocks, receivers, [&](std::size_t receiver, std::size_t block, bool outside) {
        out.outside += outside ? 1 : 0;
        out.stress[receiver] = deviation[block];
    });
    return out;
}

} // namespace tessaran::stress
