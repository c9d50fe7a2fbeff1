// Compiled once for each width of vector; sweepKernel() takes the widest at run time.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "stress/sweep_kernel.cpp"
// SSSE3 has nothing over the plain code that SSE4 has not.
#define HWY_DISABLED_TARGETS (HWY_SSSE3 | HWY_SVE | HWY_SVE2 | HWY_SVE_256 | HWY_SVE2_128 | HWY_RVV)
#include <hwy/foreach_target.h>
// foreach_target.h goes first
#include "stress/exponential.h"
#include "stress/sweep_kernel.h"

#include <hwy/highway.h>

HWY_BEFORE_NAMESPACE();
namespace tessaran::stress {
namespace HWY_NAMESPACE {
namespace hn = hwy::HWY_NAMESPACE;

using D = hn::CappedTag<double, 8>;
using V = hn::Vec<D>;
using M = hn::Mask<D>;
constexpr D kD;
constexpr int kLanes = HWY_LANES(double) < 8 ? HWY_LANES(double) : 8;

// --- moving by a lane: `first` or `last` fills in ------------------------------------------------

#if HWY_TARGET == HWY_AVX3
HWY_INLINE V lanesUp(V v, V first) {
    return V{_mm512_castsi512_pd(
        _mm512_alignr_epi64(_mm512_castpd_si512(v.raw), _mm512_castpd_si512(first.raw), 7))};
}
HWY_INLINE V lanesDown(V v, V last) {
    return V{_mm512_castsi512_pd(
        _mm512_alignr_epi64(_mm512_castpd_si512(last.raw), _mm512_castpd_si512(v.raw), 1))};
}
#elif HWY_TARGET == HWY_AVX2
HWY_INLINE V lanesUp(V v, V first) {
    return V{_mm256_blend_pd(_mm256_permute4x64_pd(v.raw, 0x90), first.raw, 1)};
}
HWY_INLINE V lanesDown(V v, V last) {
    return V{_mm256_blend_pd(_mm256_permute4x64_pd(v.raw, 0x39), last.raw, 8)};
}
#elif HWY_TARGET == HWY_SCALAR
HWY_INLINE V lanesUp(V, V first) {
    return first;
}
HWY_INLINE V lanesDown(V, V last) {
    return last;
}
#else
HWY_INLINE V lanesUp(V v, V first) {
    return hn::InterleaveLower(kD, first, v);
}
HWY_INLINE V lanesDown(V v, V last) {
    return hn::InterleaveUpper(kD, v, last);
}
#endif

// --- the laws of a vector's elements -------------------------------------------------------------

#if HWY_TARGET == HWY_AVX3
// Tables held in registers; a long table takes the upper half of the laws by the index's bit 4.
template <bool kLong>
class Laws {
  public:
    HWY_INLINE explicit Laws(const LawTable& table) : table_(table) {}

    HWY_INLINE void look(const std::uint8_t* laws, V* values) const {
        const __m512i index =
            _mm512_cvtepu8_epi64(_mm_loadl_epi64(reinterpret_cast<const __m128i*>(laws)));
        const __mmask8 upper = kLong ? _mm512_test_epi64_mask(index, _mm512_set1_epi64(16)) : 0;
        for (std::size_t value = 0; value < kLawValues; ++value) {
            const double* of = table_.byValue[value].data();
            __m512d found =
                _mm512_permutex2var_pd(_mm512_load_pd(of), index, _mm512_load_pd(of + 8));
            if constexpr (kLong)
                found = _mm512_mask_mov_pd(found, upper,
                                           _mm512_permutex2var_pd(_mm512_load_pd(of + 16), index,
                                                                  _mm512_load_pd(of + 24)));
            values[value] = V{found};
        }
    }

  private:
    const LawTable& table_;
};
#elif HWY_TARGET == HWY_SCALAR
template <bool kLong>
class Laws {
  public:
    HWY_INLINE explicit Laws(const LawTable& table) : table_(table) {}

    HWY_INLINE void look(const std::uint8_t* laws, V* values) const {
        for (std::size_t value = 0; value < kLawValues; ++value)
            values[value] = hn::Set(kD, table_.byLaw[*laws][value]);
    }

  private:
    const LawTable& table_;
};
#else
// Each element's values are a row; pairs of columns are transposed.
template <bool kLong>
class Laws {
  public:
    HWY_INLINE explicit Laws(const LawTable& table) : table_(table) {}

    HWY_INLINE void look(const std::uint8_t* laws, V* values) const {
        const hn::CappedTag<double, 2> pair;
        for (std::size_t value = 0; value < kLawValues; value += 2) {
            const auto of = [&](int lane) {
                return hn::Load(pair, table_.byLaw[laws[lane]].data() + value);
            };
#if HWY_TARGET == HWY_AVX2
            const V even = hn::Combine(kD, of(2), of(0));
            const V odd = hn::Combine(kD, of(3), of(1));
#else
            const V even = of(0);
            const V odd = of(1);
#endif
            values[value] = hn::InterleaveLower(kD, even, odd);
            values[value + 1] = hn::InterleaveUpper(kD, even, odd);
        }
    }

  private:
    const LawTable& table_;
};
#endif

// The vector twin of exponential().
HWY_NOINLINE V exponentials(V x) {
    const hn::RebindToUnsigned<D> bits;
    const V shifted = hn::Add(hn::Mul(x, hn::Set(kD, kLog2E)), hn::Set(kD, kRounder));
    const V n = hn::Sub(shifted, hn::Set(kD, kRounder));
    const V r =
        hn::Sub(hn::Sub(x, hn::Mul(n, hn::Set(kD, kLn2High))), hn::Mul(n, hn::Set(kD, kLn2Low)));
    const V rr = hn::Mul(r, r);
    V even = hn::Set(kD, kExpSeries[12]);
    V odd = hn::Set(kD, kExpSeries[13]);
    for (std::size_t k = 12; k >= 2; k -= 2) {
        even = hn::Add(hn::Mul(even, rr), hn::Set(kD, kExpSeries[k - 2]));
        odd = hn::Add(hn::Mul(odd, rr), hn::Set(kD, kExpSeries[k - 1]));
    }
    const V series = hn::Add(hn::Mul(odd, r), even);
    V out = hn::BitCast(kD, hn::Add(hn::BitCast(bits, series),
                                    hn::ShiftLeft<kMantissaBits>(hn::BitCast(bits, shifted))));
    out = hn::IfThenElse(hn::Gt(x, hn::Set(kD, kExpMost)),
                         hn::Set(kD, std::numeric_limits<double>::infinity()), out);
    return hn::IfThenElse(hn::Lt(x, hn::Set(kD, kExpLeast)), hn::Zero(kD), out);
}

// --- a strip's walk ------------------------------------------------------------------------------

struct Factors {
    HWY_INLINE explicit Factors(const SweepConstants& s)
        : k(hn::Set(kD, s.k)), keep(hn::Set(kD, s.keep)), c(hn::Set(kD, s.c)),
          thickness(hn::Set(kD, s.thickness)), inverse(hn::Set(kD, 1.0 / s.thickness)),
          shared(hn::Set(kD, s.shared)) {}

    // u / thickness, correctly rounded: with the divisor's reciprocal at hand a multiplication and
    // two fused steps do (N. Brisebarre, J.-M. Muller, S. K. Raina, Accelerating correctly rounded
    // floating-point division when the divisor is known in advance, IEEE Trans. Computers 53,
    // 2004).
    HWY_INLINE V strain(V u) const {
#if HWY_NATIVE_FMA
        const V quotient = hn::Mul(u, inverse);
        return hn::MulAdd(hn::NegMulAdd(quotient, thickness, u), inverse, quotient);
#else
        return hn::Div(u, thickness);
#endif
    }

    V k;
    V keep;
    V c;
    V thickness;
    V inverse;
    V shared;
};

// Which lanes hold elements of the seam.
HWY_INLINE M lanesInside(const SweepConstants& s, int lines, int t) {
    const V lane = hn::Iota(kD, 0.0);
    const V element = hn::Sub(hn::Set(kD, static_cast<double>(t)), lane);
    return hn::And(hn::And(hn::Ge(element, hn::Zero(kD)),
                           hn::Lt(element, hn::Set(kD, static_cast<double>(s.lineLength)))),
                   hn::Lt(lane, hn::Set(kD, static_cast<double>(lines))));
}

// Exponential materials by vector, contacts lane by lane.
HWY_NOINLINE V stressAside(const SweepConstants& s, StripSweep& strip, int t, std::uint8_t* laws,
                           M inside, V strain, V stress, const V* values) {
    const M aside = hn::And(hn::IsNaN(stress), inside);
    const M hardening = hn::And(aside, hn::Eq(values[kSlope1], hn::Set(kD, 1.0)));
    if (!hn::AllFalse(kD, hardening)) {
        const V grown = exponentials(hn::Mul(values[kSlope0], strain));
        stress = hn::IfThenElse(hardening,
                                hn::Mul(values[kBase2], hn::Sub(grown, hn::Set(kD, 1.0))), stress);
    }
    const M contact = hn::AndNot(hardening, aside);
    if (hn::AllFalse(kD, contact))
        return stress;
    HWY_ALIGN double strains[kLanes];
    HWY_ALIGN double stresses[kLanes];
    HWY_ALIGN double chosen[kLanes];
    hn::Store(strain, kD, strains);
    hn::Store(stress, kD, stresses);
    hn::Store(hn::IfThenElseZero(contact, hn::Set(kD, 1.0)), kD, chosen);
    for (int r = 0; r < kLanes; ++r)
        if (chosen[r] != 0.0)
            stresses[r] =
                contactInLane(s, strip, laws[r], (strip.firstLine + r) * s.lineLength + t - r,
                              strains[r], stresses[r]);
    return hn::Load(kD, stresses);
}

template <bool kMasked, class LawsT>
HWY_INLINE V stressOf(const SweepConstants& s, const Factors& f, const LawsT& laws,
                      StripSweep& strip, int t, V u, M inside) {
    V values[kLawValues];
    std::uint8_t* codes = strip.laws + static_cast<std::ptrdiff_t>(t) * kLanes;
    laws.look(codes, values);
    const V strain = f.strain(u);
    const M second = hn::Ge(strain, values[kBreak1]);
    const V slope = hn::IfThenElse(second, values[kSlope1], values[kSlope0]);
    const V from = hn::IfThenElse(second, hn::Sub(strain, values[kBreak1]), strain);
    V stress = hn::Add(hn::IfThenElseZero(second, values[kBase1]), hn::Mul(slope, from));
    stress = hn::IfThenElse(hn::Ge(strain, values[kBreak2]), values[kBase2], stress);
    M aside = hn::IsNaN(stress);
    if constexpr (kMasked)
        aside = hn::And(aside, inside);
    if (HWY_UNLIKELY(!hn::AllFalse(kD, aside)))
        stress = stressAside(
            s, strip, t, codes,
            kMasked ? inside
                    : hn::MaskFromVec(hn::BitCast(kD, hn::Set(hn::RebindToUnsigned<D>(), ~0ULL))),
            strain, stress, values);
    return stress;
}

// Where a strip's sweep is.
class Walk {
  public:
    HWY_INLINE Walk(const SweepConstants& s, StripSweep& strip)
        : strip_(strip), recordLength_((1 + s.streams) * kLanes),
          last_(hn::Load(kD, strip.records - recordLength_)), old_(hn::Load(kD, strip.records)),
          size_(hn::Set(kD, -1.0)), value_(hn::Zero(kD)), at_(hn::Zero(kD)) {}

    template <bool kMasked, class Variant, class LawsT>
    HWY_INLINE void step(const SweepConstants& s, const Factors& f, const LawsT& laws, int t) {
        constexpr std::ptrdiff_t kRecord = (1 + Variant::kStreams) * kLanes;
        double* record = strip_.records + t * kRecord;
        M inside{};
        if constexpr (kMasked)
            inside = lanesInside(s, strip_.lines, t);
        V net = stressOf<kMasked>(s, f, laws, strip_, t, old_, inside);
        if constexpr (Variant::kShared)
            net = hn::Sub(net, f.shared);
        for (int k = 1; k <= Variant::kStreams; ++k)
            net = hn::Sub(net, hn::Load(kD, record + k * kLanes));
        const V north = hn::Load(kD, record + kRecord);
        const V east = lanesDown(north, hn::Set(kD, strip_.after[t * kRecord]));
        const V west = lanesUp(last_, hn::Set(kD, strip_.before[t * kRecord]));
        const V sum = hn::Add(hn::Add(hn::Add(west, east), last_), north);
        V next = hn::Sub(hn::Add(hn::Mul(f.k, sum), hn::Mul(f.keep, old_)), hn::Mul(f.c, net));
        if constexpr (kMasked)
            next = hn::IfThenElse(inside, next, old_);
        hn::Store(next, kD, record);
        note<kMasked, Variant::kTracked>(hn::Sub(next, old_), t, inside);
        last_ = next;
        old_ = north;
    }

    // The largest change over the lanes, the lines in their order.
    HWY_INLINE void finish(const SweepConstants& s) {
        HWY_ALIGN double size[kLanes];
        HWY_ALIGN double value[kLanes];
        HWY_ALIGN double at[kLanes];
        hn::Store(size_, kD, size);
        hn::Store(value_, kD, value);
        hn::Store(at_, kD, at);
        for (int r = 0; r < strip_.lines; ++r) {
            strip_.change.take(
                {size[r], value[r], strip_.firstLine + r, static_cast<int>(at[r]) - r});
            // What is not a number spreads to the end of its line.
            const double end = strip_.records[(s.lineLength - 1 + r) * recordLength_ + r];
            strip_.finite = strip_.finite && end - end == 0.0 && size[r] - size[r] == 0.0;
        }
    }

  private:
    template <bool kMasked, bool kTracked>
    HWY_INLINE void note(V change, int t, M inside) {
        V size = hn::Abs(change);
        if constexpr (kMasked)
            size = hn::IfThenElse(inside, size, hn::Set(kD, -1.0));
        if constexpr (kTracked) {
            const M larger = hn::Gt(size, size_);
            value_ = hn::IfThenElse(larger, change, value_);
            at_ = hn::IfThenElse(larger, hn::Set(kD, static_cast<double>(t)), at_);
        }
        size_ = hn::Max(size, size_);
    }

    StripSweep& strip_;
    std::ptrdiff_t recordLength_;
    V last_;
    V old_;
    V size_;
    V value_;
    V at_;
};

// A sweep made for its kind of seam.
template <int kStreamsV, bool kSharedV, bool kTrackedV>
struct Variant {
    static constexpr int kStreams = kStreamsV;
    static constexpr bool kShared = kSharedV;
    static constexpr bool kTracked = kTrackedV;
};

template <class VariantT, class LawsT, class... Walks>
HWY_INLINE void walkStrips(const SweepConstants& s, const LawsT& laws, bool whole,
                           Walks&... walks) {
    const Factors f(s);
    const int end = s.lineLength + kLanes - 1;
    int t = 0;
    for (; t < (whole ? std::min(s.lineLength, kLanes - 1) : end); ++t)
        (walks.template step<true, VariantT>(s, f, laws, t), ...);
    for (; t < s.lineLength; ++t)
        (walks.template step<false, VariantT>(s, f, laws, t), ...);
    for (; t < end; ++t)
        (walks.template step<true, VariantT>(s, f, laws, t), ...);
    (walks.finish(s), ...);
}

template <class VariantT, bool kLong>
void sweepStrips(const SweepConstants& s, StripSweep* const* strips, int count) {
    const Laws<kLong> laws(*s.laws);
    const bool whole = strips[0]->lines == kLanes && strips[count - 1]->lines == kLanes;
    Walk first(s, *strips[0]);
    if (count == 1)
        return walkStrips<VariantT>(s, laws, whole, first);
    Walk second(s, *strips[1]);
    walkStrips<VariantT>(s, laws, whole, first, second);
}

template <int kStreams, bool kShared>
void sweepVariant(const SweepConstants& s, StripSweep* const* strips, int count) {
    // Only the lookup in registers knows long tables; tracking is rare enough to take them always.
    constexpr bool kRegisters = HWY_TARGET == HWY_AVX3;
    if (s.trackElement)
        sweepStrips<Variant<kStreams, kShared, true>, kRegisters>(s, strips, count);
    else if (kRegisters && !s.laws->isShort())
        sweepStrips<Variant<kStreams, kShared, false>, kRegisters>(s, strips, count);
    else
        sweepStrips<Variant<kStreams, kShared, false>, false>(s, strips, count);
}

void sweep(const SweepConstants& s, StripSweep* const* strips, int count) {
    if (s.hasShared) {
        switch (s.streams) {
        case 0:
            return sweepVariant<0, true>(s, strips, count);
        case 1:
            return sweepVariant<1, true>(s, strips, count);
        default:
            return sweepVariant<2, true>(s, strips, count);
        }
    }
    switch (s.streams) {
    case 1:
        return sweepVariant<1, false>(s, strips, count);
    case 2:
        return sweepVariant<2, false>(s, strips, count);
    default:
        return sweepVariant<3, false>(s, strips, count);
    }
}

void evaluate(const SweepConstants& s, StripSweep& strip) {
    const Laws<HWY_TARGET == HWY_AVX3> laws(*s.laws);
    const Factors f(s);
    const std::ptrdiff_t recordLength = (1 + s.streams) * kLanes;
    for (int t = 0; t < s.lineLength + kLanes - 1; ++t) {
        double* record = strip.records + t * recordLength;
        hn::Store(stressOf<true>(s, f, laws, strip, t, hn::Load(kD, record),
                                 lanesInside(s, strip.lines, t)),
                  kD, record);
    }
}

SweepKernel kernel() {
    return {kLanes, hwy::TargetName(HWY_TARGET), sweep, evaluate};
}

} // namespace HWY_NAMESPACE
} // namespace tessaran::stress
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace tessaran::stress {

HWY_EXPORT(kernel);

SweepKernel sweepKernel() {
    return HWY_DYNAMIC_DISPATCH(kernel)();
}

double contactInLane(const SweepConstants& constants, StripSweep& strip, std::uint8_t& law,
                     int element, double strain, double stress) {
    if (law != kOpenLaw && law != kContactLaw)
        return stress;
    double& remembered = constants.remembered[element];
    remembered = contactStress(constants.modulus, strain, remembered);
    law = remembered != 0.0 ? kContactLaw : kOpenLaw;
    if (strain > 1.0) {
        ++strip.overClosed;
        if (constants.told[element] == 0) {
            constants.told[element] = 1;
            strip.newOverClosed->push_back(element);
        }
    }
    return remembered;
}

} // namespace tessaran::stress
#endif
