#pragma once

// A run behind the progress window.

#include "host/progress_window.h"
#include "stress/solver.h"

#include <string>

namespace tessaran::stress {

class WindowWatch final : public RunWatch {
  public:
    WindowWatch(host::Host& host, const std::string& title);

    void status(const std::string& text) override;
    void progress(int percent) override { window_.setPosition(percent); }
    void message(const std::string& text) override;
    bool cancelled() override;

  private:
    host::Host& host_;
    host::CProgressWnd window_;
};

} // namespace tessaran::stress
