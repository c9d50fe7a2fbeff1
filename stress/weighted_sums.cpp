// Compiled once for each width of vector; the widest is taken at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stress/weighted_sums.cpp"
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#include <hwy/foreach_target.h>
// foreach_target.h goes first
#include "stress/weighted_sums.h"

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaran::stress {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using Wide = hn::CappedTag<double, 8>;
constexpr std::size_t kWide = HWY_LANES(double) < 8 ? HWY_LANES(double) : 8;
constexpr int kRows = WeightBlock::kRows;

// kVectors vectors of every receiver row at column c.
template <class D, int kVectors, int kFields>
HWY_INLINE void sumColumns(D d, const WeightBlock& block, const Rows* fields, double factor,
                           std::size_t c, double* out) {
    using V = hn::Vec<D>;
    constexpr std::size_t kLanes = sizeof(V) == sizeof(double) ? 1 : kWide;
    V sum[kRows][kVectors];
    for (auto& row : sum)
        for (V& v : row)
            v = hn::Zero(d);
    for (int s = 0; s < block.sources; ++s) {
        for (int f = 0; f < kFields; ++f) {
            const double* source = fields[f].row(block.firstSource + s) + c;
            const double* weight = block.weights[f].data() + static_cast<std::size_t>(s) * kRows;
            for (int v = 0; v < kVectors; ++v) {
                const V value = hn::LoadU(d, source + static_cast<std::size_t>(v) * kLanes);
                for (int r = 0; r < kRows; ++r)
                    sum[r][v] = hn::Add(sum[r][v], hn::Mul(hn::Set(d, weight[r]), value));
            }
        }
    }
    for (int r = 0; r < block.receivers; ++r) {
        double* to = out + static_cast<std::size_t>(block.firstReceiver + r) * fields[0].length + c;
        for (int v = 0; v < kVectors; ++v, to += kLanes)
            hn::StoreU(hn::Add(hn::LoadU(d, to), hn::Mul(hn::Set(d, factor), sum[r][v])), d, to);
    }
}

template <int kFields>
void addFields(const WeightBlock& block, const Rows* fields, ColumnRange columns, double factor,
               double* out) {
    constexpr int kVectors = 3;
    std::size_t c = columns.begin;
    for (; c + kVectors * kWide <= columns.end; c += kVectors * kWide)
        sumColumns<Wide, kVectors, kFields>(Wide(), block, fields, factor, c, out);
    for (; c + kWide <= columns.end; c += kWide)
        sumColumns<Wide, 1, kFields>(Wide(), block, fields, factor, c, out);
    for (; c < columns.end; ++c)
        sumColumns<hn::CappedTag<double, 1>, 1, kFields>(hn::CappedTag<double, 1>(), block, fields,
                                                         factor, c, out);
}

void add(const WeightBlock& block, const Rows* fields, int fieldCount, ColumnRange columns,
         double factor, double* out) {
    if (fieldCount == 2)
        addFields<2>(block, fields, columns, factor, out);
    else
        addFields<1>(block, fields, columns, factor, out);
}

} // namespace HWY_NAMESPACE
} // namespace tessaran::stress
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tessaran::stress {

HWY_EXPORT(add);

void addWeightedSums(const WeightBlock& block, const Rows* fields, int fieldCount,
                     ColumnRange columns, double factor, double* out) {
    HWY_DYNAMIC_DISPATCH(add)(block, fields, fieldCount, columns, factor, out);
}

} // namespace tessaran::stress
#endif
