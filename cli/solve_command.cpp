#include "base/text.h"
#include "cli/options.h"
#include "cli/subcommands.h"
#include "console/progress.h"
#include "stress/arrays.h"
#include "stress/model_run.h"

#include <fmt/format.h>

#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace tessaran::cli {
namespace {

// Set by Ctrl-C; a signal handler can reach nothing else.
volatile std::sig_atomic_t interrupted = 0;

void onInterrupt(int /*signal*/) {
    interrupted = 1;
}

// A bar on a terminal, lines otherwise.
class TerminalWatch final : public stress::RunWatch {
  public:
    TerminalWatch() : onTerminal_(isatty(STDERR_FILENO) != 0), bar_(onTerminal_) {}
    ~TerminalWatch() override { bar_.clear(); }

    void status(const std::string& text) override {
        // The bar goes on to say which seam and level an iteration is of.
        const std::string line(base::trimmed(text));
        const bool iteration = line.starts_with("iteration number");
        if (!iteration)
            stage_ = line;
        text_ = onTerminal_ && iteration ? stage_ + ": " + line : line;
        if (onTerminal_)
            bar_.show(text_, percent_ / 100.0);
        else
            fmt::print(stderr, "{}\n", text_);
    }
    void progress(int percent) override {
        percent_ = percent;
        bar_.show(text_, percent / 100.0);
    }
    bool cancelled() override { return interrupted != 0; }

  private:
    bool onTerminal_;
    console::ProgressBar bar_;
    std::string text_;
    std::string stage_;
    int percent_ = 0;
};

int ended(const stress::RunReport& report) {
    switch (report.ending) {
    case stress::RunReport::Ending::finished:
        return kDone;
    case stress::RunReport::Ending::cancelled:
        fmt::print(stderr, "Cancelled. What the finished steps wrote is kept.\n");
        return kFailed;
    case stress::RunReport::Ending::failed:
        break;
    }
    fmt::print(stderr, "{}\n", report.message);
    return kFailed;
}

int solveFile(const std::string& model) {
    const auto prepared = stress::prepareRun(model);
    if (!prepared) {
        fmt::print(stderr, "{}\n", base::trimmed(prepared.error().message()));
        return kFailed;
    }
    for (const std::string& warning : prepared->warnings)
        fmt::print(stderr, "{}\n", warning);
    fmt::print("{}", prepared->outlook);
    std::fflush(stdout);
    std::signal(SIGINT, onInterrupt);
    stress::RunReport report;
    {
        TerminalWatch watch;
        report = stress::solve(prepared->model, prepared->base, watch);
    }
    fmt::print("{}", stress::runSummary(prepared->model, report));
    if (report.stepsDone > 0) {
        const auto pillars = stress::writePillars(*prepared, report);
        if (pillars)
            fmt::print("Pillars: {}\n", pillars->string());
        else
            fmt::print(stderr, "{}\n", pillars.error().message());
    }
    return ended(report);
}

} // namespace

int solveModel(const SolveOptions& options) {
    try {
        return solveFile(options.model);
    } catch (const std::bad_alloc& failure) {
        fmt::print(stderr, "{}", stress::messageOf(failure));
        return kFailed;
    }
}

} // namespace tessaran::cli
