#include "stress/relaxation.h"

#include <cmath>
#include <limits>

namespace tessaran::stress {
namespace {

constexpr int kReportEvery = 100;

// The largest change of a sweep; of equal ones the first met.
struct Change {
    double value = 0.0;
    double size = -1.0;
    int x = 0;
    int y = 0;
};

// Mirrors the edges whose boundary is 1, over the whole border with its corners, in the order
// north, east, south, west. Ghosts of rigid edges stay 0.
void applyBoundaries(const Boundaries& b, SeamState& s) {
    std::vector<double>& u = s.convergence;
    const std::size_t stride = s.stride();
    const auto nX = static_cast<std::size_t>(s.nX);
    const auto nY = static_cast<std::size_t>(s.nY);
    if (b.north == 1)
        for (std::size_t i = 0; i <= nX + 1; ++i)
            u[i * stride + nY + 1] = u[i * stride + nY];
    if (b.east == 1)
        for (std::size_t j = 0; j <= nY + 1; ++j)
            u[(nX + 1) * stride + j] = u[nX * stride + j];
    if (b.south == 1)
        for (std::size_t i = 0; i <= nX + 1; ++i)
            u[i * stride] = u[i * stride + 1];
    if (b.west == 1)
        for (std::size_t j = 0; j <= nY + 1; ++j)
            u[j] = u[stride + j];
}

// One sweep. stressOf(element, u) gives what the element carries at its convergence before the
// sweep: it depends on nothing that the sweep has changed, so it is evaluated on the way.
template <class StressOf>
Change sweep(const RelaxationProblem& problem, SeamState& s, const StressOf& stressOf) {
    const double k = problem.omega / 4.0;
    const double c = (2.0 / (problem.lambda * problem.modulus)) * problem.width * problem.width * k;
    const double keep = 1.0 - problem.omega;
    const std::size_t stride = s.stride();
    Change largest;
    std::size_t element = 0;
    for (int i = 0; i < s.nX; ++i) {
        double* u = s.convergence.data() + s.ghosted(i, 0);
        for (int j = 0; j < s.nY; ++j, ++u, ++element) {
            const double old = *u;
            const double net = stressOf(element, old) - s.overburden[element] -
                               s.multiple[element] - s.surface[element];
            const double sum = *(u - stride) + *(u + stride) + *(u - 1) + *(u + 1);
            const double next = k * sum + keep * old - c * net;
            *u = next;
            const double change = next - old;
            const double size = std::abs(change);
            if (size > largest.size || size != size) {
                largest = {change, size != size ? std::numeric_limits<double>::infinity() : size,
                           i + 1, j + 1};
            }
        }
    }
    return largest;
}

// Sweeps until the largest change is within the criterion.
template <class StressOf>
RelaxationOutcome iterate(const RelaxationProblem& problem, SeamState& s, RelaxationWatch& watch,
                          const StressOf& stressOf) {
    RelaxationOutcome out;
    using Ending = RelaxationOutcome::Ending;
    const double c = problem.criterion;
    if (problem.maxIterations < 1 || !(std::abs(c + 1.0) > c))
        return out;
    for (int n = 1;; ++n) {
        if (watch.cancelled()) {
            out.ending = Ending::cancelled;
            return out;
        }
        applyBoundaries(problem.boundaries, s);
        const Change change = sweep(problem, s, stressOf);
        out.largestChange = change.value;
        if (n % kReportEvery == 0)
            watch.report(n, change.value, change.x, change.y);
        if (!std::isfinite(change.size)) {
            out.ending = Ending::notFinite;
            return out;
        }
        if (n == problem.maxIterations) {
            out.ending = Ending::iterationLimit;
            out.message = "Maximum Number of Iterations Reached - SOR1";
            return out;
        }
        if (!(change.size > c)) {
            out.iterations = n - 1;
            return out;
        }
    }
}

} // namespace

ElementLaws lawsOf(const ElementCodes& codes, int nX, int nY, int materialCount) {
    ElementLaws out;
    out.law.resize(codes.size(), kOpenEntry);
    std::size_t element = 0;
    for (int i = 0; i < nX; ++i) {
        for (int j = 0; j < nY; ++j, ++element) {
            const CodeMeaning meaning = meaningOf(codes[element], materialCount);
            if (meaning.kind == CodeMeaning::Kind::material)
                out.law[element] = static_cast<std::uint8_t>(meaning.material);
            else if (meaning.kind == CodeMeaning::Kind::invalid && out.refusal.empty())
                out.refusal = codeRefusal(meaning, i + 1, j + 1);
        }
    }
    return out;
}

namespace {

// What an element carries at a convergence; open entries remember and renew their contact stress.
class StressOfElement {
  public:
    StressOfElement(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                    RelaxationWatch& watch)
        : problem_(problem), laws_(laws), state_(state), watch_(watch) {}

    double operator()(std::size_t element, double convergence) const {
        const double strain = convergence / problem_.thickness;
        const std::uint8_t law = laws_.law[element];
        if (law != kOpenEntry)
            return elementStress(problem_.materials[law], strain);
        double& remembered = state_.total[element];
        remembered = contactStress(problem_.modulus, strain, remembered);
        if (strain > 1.0) {
            const auto nY = static_cast<std::size_t>(state_.nY);
            watch_.overClosed(static_cast<int>(element / nY) + 1,
                              static_cast<int>(element % nY) + 1);
        }
        return remembered;
    }

  private:
    const RelaxationProblem& problem_;
    const ElementLaws& laws_;
    SeamState& state_;
    RelaxationWatch& watch_;
};

} // namespace

void evaluateStresses(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                      RelaxationWatch& watch) {
    const StressOfElement stressOf(problem, laws, state, watch);
    std::size_t element = 0;
    for (int i = 0; i < state.nX; ++i)
        for (int j = 0; j < state.nY; ++j, ++element)
            state.total[element] = stressOf(element, state.convergenceAt(i, j));
}

RelaxationOutcome relax(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                        RelaxationWatch& watch) {
    if (!laws.refusal.empty()) {
        RelaxationOutcome out;
        out.ending = RelaxationOutcome::Ending::badCode;
        out.message = laws.refusal;
        return out;
    }
    RelaxationOutcome out =
        iterate(problem, state, watch, StressOfElement(problem, laws, state, watch));
    if (out.ending == RelaxationOutcome::Ending::converged)
        evaluateStresses(problem, laws, state, watch);
    return out;
}

RelaxationOutcome relaxUnderLoad(const RelaxationProblem& problem, const std::vector<double>& load,
                                 SeamState& state, RelaxationWatch& watch) {
    return iterate(problem, state, watch,
                   [&load](std::size_t element, double) { return -load[element]; });
}

} // namespace tessaran::stress
