#pragma once

// A run behind the progress window.

#include "base/progress.h"
#include "host/progress_window.h"
#include "stress/solver.h"

#include <optional>
#include <string>

namespace tessaran::stress {

class WindowWatch final : public RunWatch {
  public:
    // With `meterText` the status bar follows a relaxation too.
    WindowWatch(host::Host& host, const std::string& title, const std::string& meterText = {});

    void status(const std::string& text) override;
    void progress(int percent) override;
    void message(const std::string& text) override;
    bool cancelled() override;

  private:
    host::Host& host_;
    host::CProgressWnd window_;
    std::optional<base::ProgressRun> meter_;
};

} // namespace tessaran::stress
