#pragma once

// What a run tells of a relaxation while it goes on: every 100th iteration on screen and in the
// log.

#include "base/progress.h"
#include "stress/relaxation.h"
#include "stress/solver.h"

#include <functional>
#include <string>

namespace tessaran::stress {

using LogSink = std::function<bool(const std::string&)>;

class LoggedRelaxation : public RelaxationWatch {
  public:
    LoggedRelaxation(RunWatch& watch, LogSink log, int maxIterations)
        : watch_(watch), log_(std::move(log)), maxIterations_(maxIterations) {}

    bool cancelled() override { return watch_.cancelled(); }
    void report(int iteration, double change, int x, int y) override;

  private:
    RunWatch& watch_;
    LogSink log_;
    int maxIterations_;
};

// Cancel alone of a run's watch, for computations that report nothing else.
class CancelOnly final : public base::Progress {
  public:
    explicit CancelOnly(RunWatch& watch) : watch_(watch) {}
    void begin(std::string_view, long, long) override {}
    void setPosition(long) override {}
    void end() override {}
    bool cancelled() override { return watch_.cancelled(); }

  private:
    RunWatch& watch_;
};

} // namespace tessaran::stress
