#include "stress/influence.h"

#include "base/parallel.h"
#include "stress/arrays.h"
#include "stress/weighted_sums.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessaran::stress {
namespace {

constexpr double kStressWindow = 10.0; // vertical distances to each side
constexpr double kEverywhere = std::numeric_limits<double>::infinity();
// Beyond this z a term adds less than 1e-18 of the peak. Leaving it out narrows the sums where the
// layers are thin, and keeps subnormal numbers out of the tables.
constexpr double kLargestZ = 46.0;

// Along one axis: at every receiver the weights exp(-z) and z exp(-z) of the sources that reach it.
class AxisWeights {
  public:
    // `window`: how far a source reaches, in vertical distances.
    AxisWeights(double sourceOrigin, double sourceWidth, int sources, double receiverOrigin,
                double receiverWidth, int receivers, const Influence& influence, double window)
        : sourceOrigin_(sourceOrigin), sourceWidth_(sourceWidth), receiverOrigin_(receiverOrigin),
          receiverWidth_(receiverWidth), receivers_(receivers),
          spread_(4.0 * influence.lambda * std::abs(influence.h)),
          window_(window * std::abs(influence.h) / receiverWidth) {
        for (int k = 0; k < sources; ++k)
            reach_.push_back(reachOf(k));
    }

    int blocks() const { return (receivers_ + WeightBlock::kRows - 1) / WeightBlock::kRows; }

    // The weights of a few receivers; set(g, zg) turns the two factors into the tables' weights.
    template <class Set>
    WeightBlock block(int number, int tables, const Set& set) const {
        WeightBlock out;
        out.firstReceiver = number * WeightBlock::kRows;
        out.receivers = std::min(WeightBlock::kRows, receivers_ - out.firstReceiver);
        const int endReceiver = out.firstReceiver + out.receivers;
        // Reaches move on with the sources.
        const auto first = std::partition_point(reach_.begin(), reach_.end(), [&](const Reach& r) {
            return r.to <= out.firstReceiver;
        });
        const auto end = std::partition_point(first, reach_.end(),
                                              [&](const Reach& r) { return r.from < endReceiver; });
        out.firstSource = static_cast<int>(first - reach_.begin());
        out.sources = static_cast<int>(end - first);
        for (int table = 0; table < tables; ++table)
            out.weights[table] = allocatedArray<double>(
                ArrayKind::dvector, static_cast<std::size_t>(out.sources) * WeightBlock::kRows);
        for (int s = 0; s < out.sources; ++s)
            fill(out, s, set);
        return out;
    }

  private:
    struct Reach {
        int from = 0; // receivers [from, to)
        int to = 0;
    };

    double centreOf(int source) const { return sourceOrigin_ + (source + 0.5) * sourceWidth_; }

    // The receivers within the window, rounded outward and clipped; of those the ones whose z
    // counts (a little more: fill() looks at each).
    Reach reachOf(int source) const {
        // The centre in receiver indices that count from 1 at the first centre.
        const double p = (centreOf(source) - receiverOrigin_) / receiverWidth_ + 0.5;
        const double counts = std::sqrt(kLargestZ * spread_) / receiverWidth_ + 1.0;
        const double most = receivers_;
        Reach out;
        out.from = static_cast<int>(
            std::clamp(std::max(std::floor(p - window_), std::floor(p - counts)) - 1.0, 0.0, most));
        out.to = static_cast<int>(
            std::clamp(std::min(std::ceil(p + window_), std::ceil(p + counts)), 0.0, most));
        out.to = std::max(out.from, out.to);
        return out;
    }

    template <class Set>
    void fill(WeightBlock& out, int s, const Set& set) const {
        const int source = out.firstSource + s;
        const Reach& reach = reach_[static_cast<std::size_t>(source)];
        const int end = std::min(reach.to, out.firstReceiver + out.receivers);
        for (int i = std::max(reach.from, out.firstReceiver); i < end; ++i) {
            const double r = receiverOrigin_ + (i + 0.5) * receiverWidth_ - centreOf(source);
            const double z = r * r / spread_;
            if (z > kLargestZ)
                continue;
            const double g = std::exp(-z);
            const std::size_t at = static_cast<std::size_t>(s) * WeightBlock::kRows +
                                   static_cast<std::size_t>(i - out.firstReceiver);
            set(g, z * g, at, out);
        }
    }

    double sourceOrigin_;
    double sourceWidth_;
    double receiverOrigin_;
    double receiverWidth_;
    int receivers_;
    double spread_;
    double window_;
    std::vector<Reach> reach_;
};

// values[k * n + m] to out[m * count + k].
std::vector<double> transposed(const std::vector<double>& values, int count, int n) {
    constexpr int kTile = 16;
    std::vector<double> out = allocatedArray<double>(ArrayKind::dmatrix, values.size());
    base::parallelRanges(0, (n + kTile - 1) / kTile, 4, [&](int begin, int end) {
        for (int k0 = 0; k0 < count; k0 += kTile)
            for (int m = begin * kTile; m < std::min(n, end * kTile); ++m)
                for (int k = k0; k < std::min(count, k0 + kTile); ++k)
                    out[static_cast<std::size_t>(m) * static_cast<std::size_t>(count) +
                        static_cast<std::size_t>(k)] =
                        values[static_cast<std::size_t>(k) * static_cast<std::size_t>(n) +
                               static_cast<std::size_t>(m)];
    });
    return out;
}

// The field spread along Y: with exp(-zy), and with zy exp(-zy); source columns by receiver rows.
struct SpreadAlongY {
    std::vector<double> g;
    std::vector<double> zg;
};

// Blocks of receivers whose sources a tile of columns is summed over while it stays in the cache.
constexpr int kBlocksTogether = 32;
constexpr int kTileColumns = 96;

// Adds the weighted sums of all receivers, some blocks after the others; before each, goOn() is
// asked. use(block, columns) sums.
template <class Set, class GoOn, class Use>
bool sumOverBlocks(const AxisWeights& axis, int tables, std::size_t columns, const Set& set,
                   const GoOn& goOn, const Use& use) {
    const int tiles = static_cast<int>((columns + kTileColumns - 1) / kTileColumns);
    std::vector<WeightBlock> blocks(kBlocksTogether);
    for (int first = 0; first < axis.blocks(); first += kBlocksTogether) {
        if (!goOn())
            return false;
        const int count = std::min(kBlocksTogether, axis.blocks() - first);
        base::parallelRanges(0, count, 4, [&](int begin, int end) {
            for (int b = begin; b < end; ++b)
                blocks[static_cast<std::size_t>(b)] = axis.block(first + b, tables, set);
        });
        base::parallelRanges(0, tiles, 1, [&](int begin, int end) {
            for (int tile = begin; tile < end; ++tile) {
                const std::size_t from = static_cast<std::size_t>(tile) * kTileColumns;
                const ColumnRange range{from, std::min(columns, from + kTileColumns)};
                for (int b = 0; b < count; ++b)
                    use(blocks[static_cast<std::size_t>(b)], range);
            }
        });
    }
    return true;
}

SpreadAlongY spreadAlongY(const ElementField& sources, const std::vector<double>& field,
                          const AxisWeights& y, int receiverRows) {
    const std::vector<double> rows = transposed(field, sources.nX, sources.nY);
    const Rows from{rows.data(), static_cast<std::size_t>(sources.nX)};
    const auto spread = [&](bool timesZ) {
        std::vector<double> out = dmatrix(static_cast<std::size_t>(receiverRows), from.length);
        sumOverBlocks(
            y, 1, from.length,
            [&](double g, double zg, std::size_t at, WeightBlock& block) {
                block.weights[0][at] = timesZ ? zg : g;
            },
            [] { return true; },
            [&](const WeightBlock& block, ColumnRange columns) {
                addWeightedSums(block, &from, 1, columns, 1.0, out.data());
            });
        return transposed(out, receiverRows, sources.nX);
    };
    return {spread(false), spread(true)};
}

struct Weights {
    Weights(const Influence& influence, double window, const ElementField& sources,
            const ElementField& receivers)
        : x(sources.x, sources.width, sources.nX, receivers.x, receivers.width, receivers.nX,
            influence, window),
          y(sources.y, sources.width, sources.nY, receivers.y, receivers.width, receivers.nY,
            influence, window) {}
    AxisWeights x;
    AxisWeights y;
};

// Adds the weighted columns of the spread fields to every receiver column.
template <class Set>
bool gatherAlongX(const AxisWeights& x, const Rows* fields, int fieldCount,
                  std::vector<double>& out, double factor, base::Progress& progress,
                  const Set& set) {
    return sumOverBlocks(
        x, fieldCount, fields[0].length, set, [&] { return !progress.cancelled(); },
        [&](const WeightBlock& block, ColumnRange columns) {
            addWeightedSums(block, fields, fieldCount, columns, factor, out.data());
        });
}

} // namespace

bool addInfluenceStress(const Influence& influence, const ElementField& sources,
                        const std::vector<double>& convergence, const ElementField& receivers,
                        std::vector<double>& stress, base::Progress& progress) {
    const Weights weights(influence, kStressWindow, sources, receivers);
    const SpreadAlongY spread = spreadAlongY(sources, convergence, weights.y, receivers.nY);
    const auto rows = static_cast<std::size_t>(receivers.nY);
    const double factor = influence.modulus * sources.width * sources.width /
                          (8.0 * std::numbers::pi * influence.lambda * influence.h * influence.h);
    // (zx + zy - 1) gx gy = (zx gx - gx) gy + gx (zy gy)
    const Rows fields[] = {{spread.g.data(), rows}, {spread.zg.data(), rows}};
    return gatherAlongX(weights.x, fields, 2, stress, factor, progress,
                        [](double gx, double zgx, std::size_t at, WeightBlock& out) {
                            out.weights[0][at] = zgx - gx;
                            out.weights[1][at] = gx;
                        });
}

bool addInfluenceDisplacement(const Influence& influence, double sign, const ElementField& sources,
                              const std::vector<double>& convergence, const ElementField& receivers,
                              std::vector<double>& displacement, base::Progress& progress) {
    const Weights weights(influence, kEverywhere, sources, receivers);
    const SpreadAlongY spread = spreadAlongY(sources, convergence, weights.y, receivers.nY);
    const double factor = sign * sources.width * sources.width /
                          (8.0 * std::numbers::pi * influence.lambda * std::abs(influence.h));
    const Rows field{spread.g.data(), static_cast<std::size_t>(receivers.nY)};
    return gatherAlongX(weights.x, &field, 1, displacement, factor, progress,
                        [](double gx, double /*zgx*/, std::size_t at, WeightBlock& out) {
                            out.weights[0][at] = gx;
                        });
}

ElementField coarser(const ElementField& fine, int factor) {
    return {fine.x, fine.y, fine.width * factor, fine.nX / factor, fine.nY / factor};
}

std::vector<double> blockMeans(const ElementField& fine, const std::vector<double>& values,
                               int factor) {
    const ElementField coarse = coarser(fine, factor);
    std::vector<double> out =
        dmatrix(static_cast<std::size_t>(coarse.nX), static_cast<std::size_t>(coarse.nY));
    std::size_t block = 0;
    for (int i = 0; i < coarse.nX; ++i) {
        for (int j = 0; j < coarse.nY; ++j) {
            double sum = 0.0;
            for (int di = 0; di < factor; ++di)
                for (int dj = 0; dj < factor; ++dj)
                    sum += values[static_cast<std::size_t>(i * factor + di) *
                                      static_cast<std::size_t>(fine.nY) +
                                  static_cast<std::size_t>(j * factor + dj)];
            out[block++] = sum / (factor * factor);
        }
    }
    return out;
}

} // namespace tessaran::stress
