#pragma once

// Seam convergence by successive over-relaxation.
//
// Between two seams the laminated overburden is a stack of plates without friction between them;
// the convergence u of a seam element of width a obeys, in differences,
//   u = (u_W + u_E + u_S + u_N) / 4 - (2 / (lambda E)) (a^2 / 4) (sigma(u) - q),
// sigma being what the element carries and q its external stress. The iteration sweeps the elements
// in place, X outer and Y inner, and over-relaxes by omega.

#include "stress/aligned_doubles.h"
#include "stress/material.h"
#include "stress/seam_state.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tessaran::stress {

// What does not change while one seam is relaxed.
struct RelaxationProblem {
    double modulus = 0.0;   // E of the host rock
    double lambda = 0.0;    // lamination constant
    double width = 0.0;     // of an element
    double thickness = 0.0; // of the seam
    double omega = 1.0;     // over-relaxation factor
    double criterion = 0.0; // largest change of convergence at which the iteration ends
    int maxIterations = 0;
    Boundaries boundaries;
    std::vector<Material> materials;
    int threads = 0; // 0: as many as the machine has and the seam is worth
};

// Told from time to time how far a relaxation is, and asked whether to go on.
class RelaxationWatch {
  public:
    virtual ~RelaxationWatch() = default;
    virtual bool cancelled() { return false; } // once an iteration
    // Every 100th iteration: the largest change and its element (from 1).
    virtual void report(int /*iteration*/, double /*change*/, int /*x*/, int /*y*/) {}
    // An open entry whose roof has met its floor, once an element and relaxation (from 1).
    virtual void overClosed(int /*x*/, int /*y*/) {}
};

struct RelaxationOutcome {
    enum class Ending {
        converged,
        iterationLimit, // "Maximum Number of Iterations Reached - SOR1"
        cancelled,
        badCode,   // `message` names the element
        notFinite, // the convergence grew without bound: the factor is too large
    };
    Ending ending = Ending::converged;
    int iterations = 0; // done less one, as it is counted; 0 unless converged
    std::string message{};
    double largestChange = 0.0; // of the last iteration, without its sign
    long overClosed = 0;        // evaluations of open entries at a strain above 1
};

// Which law each element of a code map follows: a material's number, or kOpenEntry.
inline constexpr std::uint8_t kOpenEntry = 255;
struct ElementLaws {
    std::vector<std::uint8_t> law;
    std::string refusal; // of the first code that is none, in sweep order; empty when all are
};
ElementLaws lawsOf(const ElementCodes& codes, int nX, int nY, int materialCount);

// What relaxations after one another work in, so that the system need not clear it for each.
struct RelaxationMemory {
    AlignedDoubles values;
};

// Relaxes the seam from its present convergence. `state.total` holds what over-closed entries
// remember when it starts, and the element stresses of the final convergence when it has converged.
// Values, number of iterations and reports are those of the plain double loop with elementStress(),
// bit for bit, whatever the width of the machine's vectors and the number of threads.
RelaxationOutcome relax(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                        RelaxationWatch& watch, RelaxationMemory& memory);
RelaxationOutcome relax(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                        RelaxationWatch& watch);

// The same difference equation with a load given for each element instead of a material and
// external stresses: the convergence of a level under `load` (nX * nY), rigid or mirrored edges as
// the problem says.
RelaxationOutcome relaxUnderLoad(const RelaxationProblem& problem, const std::vector<double>& load,
                                 SeamState& state, RelaxationWatch& watch);

} // namespace tessaran::stress
