#pragma once

// A seam's elements in the order in which vectors sweep them (sweep_kernel.h): strips of as many
// lines as a vector has lanes, each strip's vectors skewed, values and external stresses of a
// vector side by side in a record. Ghost lines and elements around the seam have their places too.

#include "stress/aligned_doubles.h"
#include "stress/law_table.h"
#include "stress/seam_state.h"
#include "stress/sweep_kernel.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace tessaran::stress {

class SkewedSeam {
  public:
    // Room for a seam in vectors of `lanes` with so many external stresses; takes over the memory
    // of `scratch` where it is large enough.
    SkewedSeam(int nX, int nY, int lanes, int streams, AlignedDoubles scratch = {});

    // The convergence with its ghosts, the external stresses in their order, and the law of each
    // element (plain order).
    void load(const std::vector<double>& convergence, const std::vector<const double*>& external,
              const std::vector<std::uint8_t>& laws);
    // The convergence with the ghosts that the sweeps have seen.
    void storeConvergence(std::vector<double>& convergence) const;
    // What evaluate() left in place of the convergence.
    void storeStresses(std::vector<double>& stresses) const;

    int strips() const { return strips_; }
    int linesOf(int strip) const;
    StripSweep sweepOf(int strip);
    // Mirrors the edges that touch a strip, as each sweep does before it begins.
    void mirrorEdges(const Boundaries& boundaries, int strip);

    AlignedDoubles takeMemory() { return std::move(memory_); }

  private:
    double* record(int strip, int t);
    const double* record(int strip, int t) const;
    double& element(int line, int j);
    template <int kLanes>
    void loadStrip(int strip, const std::vector<double>& convergence,
                   const std::vector<const double*>& external,
                   const std::vector<std::uint8_t>& laws);
    template <int kLanes>
    void storeStrip(int strip, std::vector<double>& convergence) const;
    template <class Work>
    void withLanes(const Work& work) const;

    int nX_;
    int nY_;
    int lanes_;
    int streams_;
    int strips_;
    int vectors_; // in a strip, those before its first and behind its last element included
    AlignedDoubles memory_;
    std::vector<std::uint8_t> laws_;
};

} // namespace tessaran::stress
