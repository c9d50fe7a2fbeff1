#include "stress/sweep_pipeline.h"

#include "stress/arrays.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <cmath>
#include <optional>
#include <system_error>
#include <thread>

namespace tessaran::stress {
namespace {

constexpr int kDepth = 4; // iterations that one thread has under way
constexpr int kReportEvery = 100;
constexpr int kSpinsBeforeYield = 64;

using Clock = std::chrono::steady_clock;

// One iteration under way. A slot is taken again by the iteration `slots` later.
struct alignas(64) Slot {
    // Strips done over all its iterations so far, so that it only ever grows.
    std::atomic<long long> done{0};
    std::atomic<bool> exceeds{false}; // some element has changed by more than the criterion

    // Of the present iteration, written by the thread that sweeps it.
    LargestChange change{};
    bool finite = true;
    long overClosed = 0;
    std::vector<int> newOverClosed{};

    // Where the sweeping thread is.
    int iteration = 0;
    int strip = 0;
};

class Pipeline {
  public:
    Pipeline(SkewedSeam& seam, const SweepKernel& kernel, const SweepConstants& constants,
             const Boundaries& boundaries, const SweepLimits& limits, RelaxationWatch& watch)
        : seam_(seam), kernel_(kernel), constants_(constants), tracked_(constants),
          boundaries_(boundaries), limits_(limits), watch_(watch), strips_(seam.strips()),
          slots_(static_cast<std::size_t>(limits.threads * kDepth)) {
        tracked_.trackElement = true;
        int iteration = 0;
        for (Slot& slot : slots_)
            slot.iteration = ++iteration;
    }

    // Nothing, and no strip swept, when the system has no such number of threads.
    std::optional<RelaxationOutcome> run() {
        Helpers helpers(*this);
        if (!helpers.complete())
            return std::nullopt;
        admit();
        lead();
        helpers.end();
        if (noMemory_.load(std::memory_order_acquire))
            throw AllocationFailure(ArrayKind::ivector, AllocationFailure::Cause::refused);
        return std::move(outcome_);
    }

  private:
    // The other threads; they wait for iterations to be admitted.
    class Helpers {
      public:
        explicit Helpers(Pipeline& pipeline) : pipeline_(pipeline) {
            try {
                for (int k = 1; k < pipeline.limits_.threads; ++k)
                    threads_.emplace_back([&pipeline, k] { pipeline.help(k); });
                complete_ = true;
            } catch (const std::system_error&) {
                end();
            }
        }
        Helpers(const Helpers&) = delete;
        Helpers& operator=(const Helpers&) = delete;
        ~Helpers() { end(); }

        bool complete() const { return complete_; }
        void end() {
            pipeline_.stop_.store(true, std::memory_order_release);
            pipeline_.callHelpers();
            for (std::thread& thread : threads_)
                if (thread.joinable())
                    thread.join();
        }

      private:
        Pipeline& pipeline_;
        std::vector<std::thread> threads_;
        bool complete_ = false;
    };

    Slot& slotOf(int iteration) {
        return slots_[static_cast<std::size_t>(iteration - 1) % slots_.size()];
    }
    bool hasDone(int iteration, int strips) {
        const int before = (iteration - 1) / static_cast<int>(slots_.size());
        return slotOf(iteration).done.load(std::memory_order_acquire) >=
               static_cast<long long>(before) * strips_ + strips;
    }
    bool stopped() const { return stop_.load(std::memory_order_acquire); }

    // --- the calling thread: begins and ends iterations ------------------------------------------
    void lead() {
        while (!stopped()) {
            const bool worked =
                leading_ ? round(0, static_cast<int>(slots_.size())) : round(0, kDepth);
            takeCompleted();
            if (stopped())
                return;
            admit();
            weighThreads(worked);
        }
    }

    // Iterations that are known to be needed.
    void admit() {
        int admitted = admitted_.load(std::memory_order_relaxed);
        const int most =
            std::min(limits_.maxIterations, completed_ + static_cast<int>(slots_.size()));
        while (admitted < most && mayFollow(admitted)) {
            if (watch_.cancelled())
                return end(RelaxationOutcome::Ending::cancelled);
            Slot& slot = slotOf(++admitted);
            slot.change = {};
            slot.finite = true;
            slot.overClosed = 0;
            slot.newOverClosed.clear();
            slot.exceeds.store(false, std::memory_order_relaxed);
            admitted_.store(admitted, std::memory_order_release);
        }
    }

    bool mayFollow(int iteration) {
        return iteration <= completed_ || slotOf(iteration).exceeds.load(std::memory_order_acquire);
    }

    void takeCompleted() {
        while (completed_ < admitted_.load(std::memory_order_relaxed) && !stopped() &&
               hasDone(completed_ + 1, strips_)) {
            ++completed_;
            complete(completed_, slotOf(completed_));
        }
    }

    void complete(int iteration, Slot& slot) {
        using Ending = RelaxationOutcome::Ending;
        outcome_.overClosed += slot.overClosed;
        tellOverClosed(slot.newOverClosed, constants_.lineLength, watch_);
        outcome_.largestChange = slot.change.size;
        if (!slot.finite)
            return end(Ending::notFinite);
        if (iteration % kReportEvery == 0)
            watch_.report(iteration, slot.change.value, slot.change.line + 1,
                          slot.change.element + 1);
        if (iteration == limits_.maxIterations) {
            outcome_.message = "Maximum Number of Iterations Reached - SOR1";
            return end(Ending::iterationLimit);
        }
        if (!(slot.change.size > limits_.criterion)) {
            outcome_.iterations = iteration - 1;
            return end(Ending::converged);
        }
    }

    void end(RelaxationOutcome::Ending ending) {
        outcome_.ending = ending;
        stop_.store(true, std::memory_order_release);
    }

    // --- the other threads -----------------------------------------------------------------------
    void help(int thread) {
        try {
            helpOn(thread);
        } catch (const std::bad_alloc&) { // the list of over-closed elements
            noMemory_.store(true, std::memory_order_release);
            stop_.store(true, std::memory_order_release);
        }
    }

    void helpOn(int thread) {
        int idle = 0;
        while (!stopped()) {
            const int call = call_.load(std::memory_order_acquire);
            if (isRest(call)) {
                resting_.fetch_add(1, std::memory_order_release);
                call_.wait(call, std::memory_order_acquire);
                continue;
            }
            if (round(thread * kDepth, (thread + 1) * kDepth))
                idle = 0;
            else if (++idle > kSpinsBeforeYield)
                std::this_thread::yield();
        }
    }

    // Where the calling thread waits most of the time, the others do not get their cores: it sends
    // them to rest, goes on alone, and calls them again later.
    void weighThreads(bool worked) {
        if (limits_.threads == 1)
            return;
        if (leading_) {
            if (Clock::now() >= callAgain_) {
                leading_ = false;
                resting_.store(0, std::memory_order_relaxed);
                callHelpers();
                startWindow();
            }
            return;
        }
        if (isRest(call_.load(std::memory_order_relaxed))) {
            leading_ = resting_.load(std::memory_order_acquire) == limits_.threads - 1;
            if (!leading_ && !worked)
                std::this_thread::yield();
            return;
        }
        if (worked) {
            idle_ = 0;
            return;
        }
        if (++idle_ <= kSpinsBeforeYield)
            return;
        const auto before = Clock::now();
        std::this_thread::yield();
        const auto after = Clock::now();
        waited_ += after - before;
        if (after - windowStart_ < kWindow)
            return;
        if (2 * waited_ > after - windowStart_) {
            call_.fetch_add(1, std::memory_order_release);
            callAgain_ = after + rest_;
            rest_ = std::min<Clock::duration>(2 * rest_, kLongestRest);
        }
        startWindow();
    }

    static bool isRest(int call) { return call % 2 != 0; }
    // Out of their rest, if they have one.
    void callHelpers() {
        if (!isRest(call_.load(std::memory_order_relaxed)))
            return;
        call_.fetch_add(1, std::memory_order_release);
        call_.notify_all();
    }

    void startWindow() {
        windowStart_ = Clock::now();
        waited_ = {};
    }

    // --- strips ----------------------------------------------------------------------------------
    // Sweeps the next strip of every slot in [begin, end) that may be swept. False when none may.
    bool round(int begin, int end) {
        std::array<Slot*, 2> pair{};
        int count = 0;
        bool worked = false;
        for (int k = begin; k < end; ++k) {
            Slot& slot = slots_[static_cast<std::size_t>(k)];
            if (!mayRun(slot))
                continue;
            pair[static_cast<std::size_t>(count++)] = &slot;
            worked = true;
            if (count == 2) {
                sweep(pair, 2);
                count = 0;
            }
        }
        if (count > 0)
            sweep(pair, count);
        return worked;
    }

    bool mayRun(const Slot& slot) {
        if (slot.iteration > admitted_.load(std::memory_order_acquire))
            return false;
        if (slot.iteration == 1)
            return true;
        return hasDone(slot.iteration - 1, std::min(slot.strip + 2, strips_));
    }

    void sweep(const std::array<Slot*, 2>& slots, int count) {
        std::array<StripSweep, 2> strips;
        std::array<StripSweep*, 2> given{};
        bool track = false;
        for (std::size_t k = 0; k < static_cast<std::size_t>(count); ++k) {
            Slot& slot = *slots[k];
            seam_.mirrorEdges(boundaries_, slot.strip);
            strips[k] = seam_.sweepOf(slot.strip);
            strips[k].newOverClosed = &slot.newOverClosed;
            given[k] = &strips[k];
            track = track || slot.iteration % kReportEvery == 0;
        }
        kernel_.sweep(track ? tracked_ : constants_, given.data(), count);
        for (std::size_t k = 0; k < static_cast<std::size_t>(count); ++k)
            swept(*slots[k], strips[k]);
    }

    void swept(Slot& slot, const StripSweep& strip) {
        slot.change.take(strip.change);
        slot.finite = slot.finite && strip.finite;
        slot.overClosed += strip.overClosed;
        if (slot.finite && slot.change.size > limits_.criterion)
            slot.exceeds.store(true, std::memory_order_release);
        if (++slot.strip == strips_) {
            slot.strip = 0;
            slot.iteration += static_cast<int>(slots_.size());
        }
        slot.done.store(slot.done.load(std::memory_order_relaxed) + 1, std::memory_order_release);
    }

    static constexpr Clock::duration kWindow = std::chrono::milliseconds(2);
    static constexpr Clock::duration kLongestRest = std::chrono::seconds(2);

    SkewedSeam& seam_;
    const SweepKernel& kernel_;
    const SweepConstants& constants_;
    SweepConstants tracked_;
    const Boundaries& boundaries_;
    const SweepLimits& limits_;
    RelaxationWatch& watch_;
    const int strips_;
    std::vector<Slot> slots_;
    std::atomic<int> admitted_{0};
    std::atomic<bool> stop_{false};
    std::atomic<bool> noMemory_{false};
    std::atomic<int> call_{0};    // odd: the other threads shall rest
    std::atomic<int> resting_{0}; // those that do

    // Of the calling thread.
    int completed_ = 0;
    RelaxationOutcome outcome_;
    bool leading_ = false; // alone, in charge of all slots
    int idle_ = 0;
    Clock::time_point windowStart_ = Clock::now();
    Clock::duration waited_{};
    Clock::duration rest_ = std::chrono::milliseconds(100);
    Clock::time_point callAgain_;
};

} // namespace

RelaxationOutcome sweepUntilSettled(SkewedSeam& seam, const SweepKernel& kernel,
                                    const SweepConstants& constants, const Boundaries& boundaries,
                                    const SweepLimits& limits, RelaxationWatch& watch) {
    SweepLimits alone = limits;
    alone.threads = 1;
    if (auto outcome = Pipeline(seam, kernel, constants, boundaries, limits, watch).run())
        return std::move(*outcome);
    return *Pipeline(seam, kernel, constants, boundaries, alone, watch).run();
}

void tellOverClosed(std::vector<int>& elements, int nY, RelaxationWatch& watch) {
    std::sort(elements.begin(), elements.end());
    for (const int element : elements)
        watch.overClosed(element / nY + 1, element % nY + 1);
}

} // namespace tessaran::stress
