#include "stress/skewed_seam.h"

#include "base/parallel.h"
#include "stress/arrays.h"

#include <algorithm>

namespace tessaran::stress {
namespace {

// Vectors in a strip, the ones around it included: lanes lag behind by up to lanes - 1, and the
// strip before is read that far ahead.
int vectorsOf(int nY, int lanes, int recordLength) {
    int vectors = nY + 3 * lanes;
    // Two strips are swept side by side: their places within a page of memory should differ.
    constexpr std::size_t kPage = 4096;
    const auto offset = [&] {
        return 2 * static_cast<std::size_t>(vectors) * static_cast<std::size_t>(recordLength) *
               sizeof(double) % kPage;
    };
    for (int tries = 0; tries < 64 && (offset() < kPage / 4 || offset() > 3 * kPage / 4); ++tries)
        ++vectors;
    return vectors;
}

} // namespace

SkewedSeam::SkewedSeam(int nX, int nY, int lanes, int streams, AlignedDoubles scratch)
    : nX_(nX), nY_(nY), lanes_(lanes), streams_(streams), strips_((nX + lanes - 1) / lanes),
      vectors_(vectorsOf(nY, lanes, (1 + streams) * lanes)), memory_(std::move(scratch)) {
    // A strip before and one behind hold the ghost lines.
    const std::size_t vectors =
        static_cast<std::size_t>(strips_ + 2) * static_cast<std::size_t>(vectors_);
    const std::size_t needed = vectors * static_cast<std::size_t>((1 + streams_) * lanes_);
    if (memory_.size() < needed)
        memory_ = AlignedDoubles(needed);
    laws_ = allocatedArray<std::uint8_t>(ArrayKind::cmatrix,
                                         vectors * static_cast<std::size_t>(lanes_));
}

double* SkewedSeam::record(int strip, int t) {
    return const_cast<double*>(static_cast<const SkewedSeam*>(this)->record(strip, t));
}

const double* SkewedSeam::record(int strip, int t) const {
    const std::ptrdiff_t vector = static_cast<std::ptrdiff_t>(strip + 1) * vectors_ + lanes_ + t;
    return memory_.data() + vector * ((1 + streams_) * lanes_);
}

double& SkewedSeam::element(int line, int j) {
    const int strip = (line + lanes_) / lanes_ - 1;
    const int lane = line - strip * lanes_;
    return record(strip, j + lane)[lane];
}

int SkewedSeam::linesOf(int strip) const {
    return std::min(lanes_, nX_ - strip * lanes_);
}

StripSweep SkewedSeam::sweepOf(int strip) {
    StripSweep out;
    out.records = record(strip, 0);
    out.before = record(strip - 1, lanes_ - 1) + (lanes_ - 1);
    out.after = record(strip + 1, 1 - lanes_);
    out.laws = laws_.data() + (static_cast<std::ptrdiff_t>(strip + 1) * vectors_ + lanes_) * lanes_;
    out.firstLine = strip * lanes_;
    out.lines = linesOf(strip);
    return out;
}

template <class Work>
void SkewedSeam::withLanes(const Work& work) const {
    switch (lanes_) {
    case 1:
        return work.template operator()<1>();
    case 2:
        return work.template operator()<2>();
    case 4:
        return work.template operator()<4>();
    default:
        return work.template operator()<8>();
    }
}

template <int kLanes>
void SkewedSeam::loadStrip(int strip, const std::vector<double>& convergence,
                           const std::vector<const double*>& external,
                           const std::vector<std::uint8_t>& laws) {
    const auto stride = std::ptrdiff_t{nY_} + 2;
    const int firstLine = strip * kLanes;
    // Lanes whose lines have ghosts or elements, and those with elements.
    const auto ghosted = [&](int line) { return line >= -1 && line <= nX_; };
    const auto inSeam = [&](int line) { return line >= 0 && line < nX_; };
    const bool wholeStrip = inSeam(firstLine) && inSeam(firstLine + kLanes - 1);
    std::uint8_t* law = laws_.data() + (static_cast<std::ptrdiff_t>(strip + 1) * vectors_) * kLanes;
    for (int t = -kLanes; t < vectors_ - kLanes; ++t, law += kLanes) {
        double* out = record(strip, t);
        if (wholeStrip && t >= kLanes - 1 && t < nY_) {
            const std::ptrdiff_t plain = static_cast<std::ptrdiff_t>(firstLine) * nY_ + t;
            const double* u = convergence.data() + (firstLine + 1) * stride + t + 1;
            for (int r = 0; r < kLanes; ++r) {
                out[r] = u[r * (stride - 1)];
                law[r] = laws[static_cast<std::size_t>(plain + r * (nY_ - 1))];
            }
            for (std::size_t k = 0; k < external.size(); ++k)
                for (int r = 0; r < kLanes; ++r)
                    out[(k + 1) * kLanes + r] = external[k][plain + r * (nY_ - 1)];
            continue;
        }
        for (int r = 0; r < kLanes; ++r) {
            const int line = firstLine + r;
            const int j = t - r;
            const bool known = ghosted(line) && j >= -1 && j <= nY_;
            const bool inside = inSeam(line) && j >= 0 && j < nY_;
            const std::ptrdiff_t plain = static_cast<std::ptrdiff_t>(line) * nY_ + j;
            out[r] =
                known ? convergence[static_cast<std::size_t>((line + 1) * stride + j + 1)] : 0.0;
            law[r] = inside ? laws[static_cast<std::size_t>(plain)] : kNoLaw;
            for (std::size_t k = 0; k < external.size(); ++k)
                out[(k + 1) * kLanes + r] = inside ? external[k][plain] : 0.0;
        }
    }
}

void SkewedSeam::load(const std::vector<double>& convergence,
                      const std::vector<const double*>& external,
                      const std::vector<std::uint8_t>& laws) {
    withLanes([&]<int kLanes>() {
        base::parallelRanges(-1, strips_ + 1, 4, [&](int begin, int end) {
            for (int strip = begin; strip < end; ++strip)
                loadStrip<kLanes>(strip, convergence, external, laws);
        });
    });
}

template <int kLanes>
void SkewedSeam::storeStrip(int strip, std::vector<double>& convergence) const {
    const auto stride = std::ptrdiff_t{nY_} + 2;
    const int firstLine = strip * kLanes;
    for (int t = -1; t < nY_ + kLanes; ++t) {
        const double* from = record(strip, t);
        const int first = std::max({0, t - nY_, -1 - firstLine});
        const int end = std::min({kLanes, t + 2, nX_ + 1 - firstLine});
        double* u = convergence.data() + (firstLine + 1) * stride + t + 1;
        for (int r = first; r < end; ++r)
            u[r * (stride - 1)] = from[r];
    }
}

void SkewedSeam::storeConvergence(std::vector<double>& convergence) const {
    withLanes([&]<int kLanes>() {
        base::parallelRanges(-1, strips_ + 1, 4, [&](int begin, int end) {
            for (int strip = begin; strip < end; ++strip)
                storeStrip<kLanes>(strip, convergence);
        });
    });
}

void SkewedSeam::storeStresses(std::vector<double>& stresses) const {
    base::parallelRanges(0, strips_, 4, [&](int begin, int end) {
        for (int strip = begin; strip < end; ++strip) {
            for (int t = 0; t < nY_ + lanes_ - 1; ++t) {
                const double* from = record(strip, t);
                const int endLane = std::min(linesOf(strip), t + 1);
                for (int r = std::max(0, t - nY_ + 1); r < endLane; ++r)
                    stresses[static_cast<std::size_t>(strip * lanes_ + r) *
                                 static_cast<std::size_t>(nY_) +
                             static_cast<std::size_t>(t - r)] = from[r];
            }
        }
    });
}

void SkewedSeam::mirrorEdges(const Boundaries& b, int strip) {
    const std::ptrdiff_t next = (1 + streams_) * lanes_;
    for (int r = 0; r < linesOf(strip); ++r) {
        double* first = record(strip, r) + r;
        double* last = first + (nY_ - 1) * next;
        if (b.north == 1)
            last[next] = last[0];
        if (b.south == 1)
            first[-next] = first[0];
    }
    const auto mirrorLine = [&](int ghost, int line) {
        for (int j = 0; j < nY_; ++j)
            element(ghost, j) = element(line, j);
    };
    if (strip == strips_ - 1 && b.east == 1)
        mirrorLine(nX_, nX_ - 1);
    if (strip == 0 && b.west == 1)
        mirrorLine(-1, 0);
}

} // namespace tessaran::stress
