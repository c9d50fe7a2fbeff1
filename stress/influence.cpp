#include "stress/influence.h"

#include "base/parallel.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numbers>

namespace tessaran::stress {
namespace {

constexpr double kWindow = 10.0; // vertical distances to each side
// Beyond this z a term adds less than 1e-18 of the peak; leaving it out keeps the tables free of
// subnormal numbers.
constexpr double kLargestZ = 46.0;

// Along one axis: which receivers each source reaches, and exp(-z) and z exp(-z) at them.
class AxisWeights {
  public:
    struct Reach {
        int from = 0; // receivers [from, to)
        int to = 0;
        std::size_t at = 0; // of the first one in the tables
    };

    AxisWeights(double sourceOrigin, double sourceWidth, int sources, double receiverOrigin,
                double receiverWidth, int receivers, double lambda, double h) {
        const double spread = 4.0 * lambda * std::abs(h);
        const double window = kWindow * std::abs(h) / receiverWidth;
        for (int k = 0; k < sources; ++k) {
            const double centre = sourceOrigin + (k + 0.5) * sourceWidth;
            // The centre in receiver indices that count from 1 at the first centre.
            const double p = (centre - receiverOrigin) / receiverWidth + 0.5;
            Reach reach;
            reach.from = static_cast<int>(
                std::clamp(std::floor(p - window) - 1.0, 0.0, static_cast<double>(receivers)));
            reach.to = static_cast<int>(
                std::clamp(std::ceil(p + window), 0.0, static_cast<double>(receivers)));
            reach.to = std::max(reach.from, reach.to);
            reach.at = g_.size();
            for (int i = reach.from; i < reach.to; ++i) {
                const double r = receiverOrigin + (i + 0.5) * receiverWidth - centre;
                const double z = r * r / spread;
                const double g = z > kLargestZ ? 0.0 : std::exp(-z);
                g_.push_back(g);
                zg_.push_back(z * g);
            }
            reach_.push_back(reach);
        }
    }

    const Reach& reach(int source) const { return reach_[static_cast<std::size_t>(source)]; }
    const double* g(const Reach& reach) const { return g_.data() + reach.at; }
    const double* zg(const Reach& reach) const { return zg_.data() + reach.at; }

    // Which sources reach a receiver: [from, to), as reaches move on with the sources.
    Reach sourcesOf(int receiver) const {
        const auto first = std::partition_point(reach_.begin(), reach_.end(),
                                                [&](const Reach& r) { return r.to <= receiver; });
        const auto last = std::partition_point(first, reach_.end(),
                                               [&](const Reach& r) { return r.from <= receiver; });
        return {static_cast<int>(first - reach_.begin()), static_cast<int>(last - reach_.begin()),
                0};
    }
    double gAt(int source, int receiver) const {
        const Reach& r = reach(source);
        return g(r)[receiver - r.from];
    }
    double zgAt(int source, int receiver) const {
        const Reach& r = reach(source);
        return zg(r)[receiver - r.from];
    }

  private:
    std::vector<Reach> reach_;
    std::vector<double> g_;
    std::vector<double> zg_;
};

void addScaled(double factor, const double* values, double* sum, int count) {
    for (int n = 0; n < count; ++n)
        sum[n] += factor * values[n];
}

// Sources by receiver rows: the field spread along Y only.
struct SpreadAlongY {
    std::vector<double> g;  // with exp(-zy)
    std::vector<double> zg; // with zy exp(-zy)
};

SpreadAlongY spreadAlongY(const ElementField& sources, const std::vector<double>& field,
                          const AxisWeights& y, int receiverRows) {
    const auto rows = static_cast<std::size_t>(receiverRows);
    SpreadAlongY out;
    out.g.resize(static_cast<std::size_t>(sources.nX) * rows);
    out.zg.resize(out.g.size());
    base::parallelRanges(0, sources.nX, 4, [&](int begin, int end) {
        for (int k = begin; k < end; ++k) {
            double* g = out.g.data() + static_cast<std::size_t>(k) * rows;
            double* zg = out.zg.data() + static_cast<std::size_t>(k) * rows;
            const double* column =
                field.data() + static_cast<std::size_t>(k) * static_cast<std::size_t>(sources.nY);
            for (int m = 0; m < sources.nY; ++m) {
                const AxisWeights::Reach& reach = y.reach(m);
                addScaled(column[m], y.g(reach), g + reach.from, reach.to - reach.from);
                addScaled(column[m], y.zg(reach), zg + reach.from, reach.to - reach.from);
            }
        }
    });
    return out;
}

struct Weights {
    Weights(const Influence& influence, const ElementField& sources, const ElementField& receivers)
        : x(sources.x, sources.width, sources.nX, receivers.x, receivers.width, receivers.nX,
            influence.lambda, influence.h),
          y(sources.y, sources.width, sources.nY, receivers.y, receivers.width, receivers.nY,
            influence.lambda, influence.h) {}
    AxisWeights x;
    AxisWeights y;
};

// Adds combine(k, i, ...)-weighted columns of the spread field to every receiver column.
template <class AddColumn>
bool gatherAlongX(const ElementField& receivers, const AxisWeights& x, std::vector<double>& out,
                  double factor, base::Progress& progress, const AddColumn& addColumn) {
    constexpr int kColumnsBetweenPolls = 64;
    const auto rows = static_cast<std::size_t>(receivers.nY);
    for (int first = 0; first < receivers.nX; first += kColumnsBetweenPolls) {
        if (progress.cancelled())
            return false;
        const int last = std::min(receivers.nX, first + kColumnsBetweenPolls);
        base::parallelRanges(first, last, 4, [&](int begin, int end) {
            std::vector<double> sum(rows);
            for (int i = begin; i < end; ++i) {
                std::fill(sum.begin(), sum.end(), 0.0);
                const AxisWeights::Reach sources = x.sourcesOf(i);
                for (int k = sources.from; k < sources.to; ++k)
                    addColumn(k, i, sum.data());
                addScaled(factor, sum.data(), out.data() + static_cast<std::size_t>(i) * rows,
                          receivers.nY);
            }
        });
    }
    return true;
}

} // namespace

bool addInfluenceStress(const Influence& influence, const ElementField& sources,
                        const std::vector<double>& convergence, const ElementField& receivers,
                        std::vector<double>& stress, base::Progress& progress) {
    const Weights weights(influence, sources, receivers);
    const SpreadAlongY spread = spreadAlongY(sources, convergence, weights.y, receivers.nY);
    const auto rows = static_cast<std::size_t>(receivers.nY);
    const double factor = influence.modulus * sources.width * sources.width /
                          (8.0 * std::numbers::pi * influence.lambda * influence.h * influence.h);
    // (zx + zy - 1) gx gy = (zx gx) gy + gx (zy gy - gy)
    return gatherAlongX(receivers, weights.x, stress, factor, progress,
                        [&](int k, int i, double* sum) {
                            const std::size_t at = static_cast<std::size_t>(k) * rows;
                            const double g = weights.x.gAt(k, i);
                            const double lessG = weights.x.zgAt(k, i) - g;
                            const double* gy = spread.g.data() + at;
                            const double* zgy = spread.zg.data() + at;
                            for (std::size_t j = 0; j < rows; ++j)
                                sum[j] += lessG * gy[j] + g * zgy[j];
                        });
}

bool addInfluenceDisplacement(const Influence& influence, double sign, const ElementField& sources,
                              const std::vector<double>& convergence, const ElementField& receivers,
                              std::vector<double>& displacement, base::Progress& progress) {
    const Weights weights(influence, sources, receivers);
    const SpreadAlongY spread = spreadAlongY(sources, convergence, weights.y, receivers.nY);
    const auto rows = static_cast<std::size_t>(receivers.nY);
    const double factor = sign * sources.width * sources.width /
                          (8.0 * std::numbers::pi * influence.lambda * std::abs(influence.h));
    return gatherAlongX(
        receivers, weights.x, displacement, factor, progress, [&](int k, int i, double* sum) {
            addScaled(weights.x.gAt(k, i), spread.g.data() + static_cast<std::size_t>(k) * rows,
                      sum, receivers.nY);
        });
}

ElementField coarser(const ElementField& fine, int factor) {
    return {fine.x, fine.y, fine.width * factor, fine.nX / factor, fine.nY / factor};
}

std::vector<double> blockMeans(const ElementField& fine, const std::vector<double>& values,
                               int factor) {
    const ElementField coarse = coarser(fine, factor);
    std::vector<double> out;
    out.reserve(static_cast<std::size_t>(coarse.nX) * static_cast<std::size_t>(coarse.nY));
    for (int i = 0; i < coarse.nX; ++i) {
        for (int j = 0; j < coarse.nY; ++j) {
            double sum = 0.0;
            for (int di = 0; di < factor; ++di)
                for (int dj = 0; dj < factor; ++dj)
                    sum += values[static_cast<std::size_t>(i * factor + di) *
                                      static_cast<std::size_t>(fine.nY) +
                                  static_cast<std::size_t>(j * factor + dj)];
            out.push_back(sum / (factor * factor));
        }
    }
    return out;
}

} // namespace tessaran::stress
