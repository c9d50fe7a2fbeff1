#include "stress/relaxation.h"

#include "base/parallel.h"
#include "stress/skewed_seam.h"
#include "stress/sweep_pipeline.h"

#include <algorithm>
#include <cmath>
#include <optional>
#include <thread>

namespace tessaran::stress {
namespace {

constexpr int kMostThreads = 8;
// Strips that a thread should have to itself for its iterations not to stand in each other's way.
constexpr int kStripsPerThread = 8;
// Below this, waking threads takes longer than what they save.
constexpr int kElementsWorthThreads = 20'000;

int threadsFor(const RelaxationProblem& problem, const SkewedSeam& seam, int elements) {
    if (problem.threads > 0)
        return problem.threads;
    if (elements < kElementsWorthThreads)
        return 1;
    const int cores = static_cast<int>(std::thread::hardware_concurrency());
    return std::clamp(std::min(cores, seam.strips() / kStripsPerThread), 1, kMostThreads);
}

SweepConstants constantsOf(const RelaxationProblem& problem, int nY) {
    SweepConstants out;
    out.k = problem.omega / 4.0;
    out.keep = 1.0 - problem.omega;
    out.c = (2.0 / (problem.lambda * problem.modulus)) * problem.width * problem.width * out.k;
    out.thickness = problem.thickness;
    out.modulus = problem.modulus;
    out.lineLength = nY;
    return out;
}

// An iteration limit of 0, or a criterion too large to be told from it plus 1: nothing is done.
bool beginsAtAll(const RelaxationProblem& problem) {
    const double c = problem.criterion;
    return problem.maxIterations >= 1 && std::abs(c + 1.0) > c;
}

// What is taken off the stress of an element, in this order.
struct ExternalStresses {
    std::optional<double> shared; // an overburden stress that is the same everywhere
    std::vector<const double*> fields;
};

bool isEverywhere(const std::vector<double>& values, double value) {
    return std::all_of(values.begin(), values.end(), [&](double v) { return v == value; });
}

// Stresses that are 0 everywhere are left out: taking nothing off changes nothing.
ExternalStresses externalStresses(const SeamState& state) {
    ExternalStresses out;
    if (isEverywhere(state.overburden, state.overburden.front()))
        out.shared = state.overburden.front();
    else
        out.fields.push_back(state.overburden.data());
    for (const std::vector<double>* field : {&state.multiple, &state.surface})
        if (!isEverywhere(*field, 0.0))
            out.fields.push_back(field->data());
    return out;
}

// The laws that a seam's elements follow, numbered as the sweep knows them: only materials that
// stand in the map take a place in the table.
struct LawsInUse {
    LawTable table = basicLaws();
    std::vector<std::uint8_t> law; // by element
};

LawsInUse lawsInUse(const RelaxationProblem& problem, const ElementLaws& laws,
                    const SeamState& state) {
    LawsInUse out;
    std::array<std::uint8_t, kOpenEntry + 1> number{};
    for (const std::uint8_t law : laws.law)
        number[law] = 1;
    for (std::size_t k = 0; k < problem.materials.size(); ++k) {
        if (number[k] == 0)
            continue;
        number[k] = static_cast<std::uint8_t>(out.table.count);
        out.table.add(lawValues(problem.materials[k]));
    }
    number[kOpenEntry] = kOpenLaw;
    out.law = allocatedArray<std::uint8_t>(ArrayKind::cmatrix, laws.law.size());
    // Without a branch: openings stand as they please.
    static_assert(kContactLaw == kOpenLaw + 1);
    base::parallelRanges(
        0, static_cast<int>(laws.law.size()), kElementsWorthThreads, [&](int begin, int end) {
            for (auto k = static_cast<std::size_t>(begin); k < static_cast<std::size_t>(end); ++k) {
                const unsigned contact =
                    (laws.law[k] == kOpenEntry ? 1U : 0U) & (state.total[k] != 0.0 ? 1U : 0U);
                out.law[k] = static_cast<std::uint8_t>(number[laws.law[k]] + contact);
            }
        });
    return out;
}

// One relaxation: the seam brought into the order of the sweeps, swept, and brought back.
class Relaxation {
  public:
    Relaxation(const RelaxationProblem& problem, SeamState& state, RelaxationWatch& watch,
               const ExternalStresses& external, LawsInUse laws, RelaxationMemory& memory)
        : laws_(std::move(laws)), problem_(problem), state_(state), watch_(watch), memory_(memory),
          told_(allocatedArray<std::uint8_t>(ArrayKind::cmatrix, laws_.law.size())),
          seam_(state.nX, state.nY, kernel_.lanes, static_cast<int>(external.fields.size()),
                std::move(memory.values)),
          constants_(constantsOf(problem, state.nY)) {
        constants_.streams = static_cast<int>(external.fields.size());
        constants_.hasShared = external.shared.has_value();
        constants_.shared = external.shared.value_or(0.0);
        constants_.laws = &laws_.table;
        constants_.remembered = state.total.data();
        constants_.told = told_.data();
        seam_.load(state.convergence, external.fields, laws_.law);
    }

    Relaxation(const Relaxation&) = delete;
    Relaxation& operator=(const Relaxation&) = delete;
    ~Relaxation() { memory_.values = seam_.takeMemory(); }

    SweepConstants& constants() { return constants_; }

    RelaxationOutcome sweep() {
        const SweepLimits limits{problem_.criterion, problem_.maxIterations,
                                 threadsFor(problem_, seam_, state_.nX * state_.nY)};
        RelaxationOutcome out =
            sweepUntilSettled(seam_, kernel_, constants_, problem_.boundaries, limits, watch_);
        seam_.storeConvergence(state_.convergence);
        return out;
    }

    // The stresses at the present convergence into state.total.
    void evaluate(RelaxationOutcome& out) {
        std::vector<std::vector<int>> overClosed(static_cast<std::size_t>(seam_.strips()));
        std::vector<long> counts(overClosed.size(), 0);
        base::parallelRanges(0, seam_.strips(), 4, [&](int begin, int end) {
            for (int strip = begin; strip < end; ++strip) {
                const auto at = static_cast<std::size_t>(strip);
                StripSweep sweep = seam_.sweepOf(strip);
                sweep.newOverClosed = &overClosed[at];
                kernel_.evaluate(constants_, sweep);
                counts[at] = sweep.overClosed;
            }
        });
        for (std::size_t strip = 0; strip < overClosed.size(); ++strip) {
            out.overClosed += counts[strip];
            tellOverClosed(overClosed[strip], state_.nY, watch_);
        }
        seam_.storeStresses(state_.total);
    }

  private:
    LawsInUse laws_;
    const RelaxationProblem& problem_;
    SeamState& state_;
    RelaxationWatch& watch_;
    RelaxationMemory& memory_;
    std::vector<std::uint8_t> told_;
    SweepKernel kernel_ = sweepKernel();
    SkewedSeam seam_;
    SweepConstants constants_;
};

} // namespace

ElementLaws lawsOf(const ElementCodes& codes, int nX, int nY, int materialCount) {
    ElementLaws out;
    out.law = allocatedArray(ArrayKind::cmatrix, codes.size(), kOpenEntry);
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

RelaxationOutcome relax(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                        RelaxationWatch& watch) {
    RelaxationMemory memory;
    return relax(problem, laws, state, watch, memory);
}

RelaxationOutcome relax(const RelaxationProblem& problem, const ElementLaws& laws, SeamState& state,
                        RelaxationWatch& watch, RelaxationMemory& memory) {
    RelaxationOutcome out;
    if (!laws.refusal.empty()) {
        out.ending = RelaxationOutcome::Ending::badCode;
        out.message = laws.refusal;
        return out;
    }
    Relaxation relaxation(problem, state, watch, externalStresses(state),
                          lawsInUse(problem, laws, state), memory);
    if (beginsAtAll(problem))
        out = relaxation.sweep();
    if (out.ending == RelaxationOutcome::Ending::converged)
        relaxation.evaluate(out);
    return out;
}

RelaxationOutcome relaxUnderLoad(const RelaxationProblem& problem, const std::vector<double>& load,
                                 SeamState& state, RelaxationWatch& watch) {
    if (!beginsAtAll(problem))
        return {};
    LawsInUse laws;
    laws.law = allocatedArray(ArrayKind::cmatrix, state.elements(), kNoLaw);
    RelaxationMemory memory;
    Relaxation relaxation(problem, state, watch, {std::nullopt, {load.data()}}, std::move(laws),
                          memory);
    relaxation.constants().thickness = 1.0; // no strain is asked for
    return relaxation.sweep();
}

} // namespace tessaran::stress
