#pragma once

// The status bar's progress meter.

#include "base/progress.h"
#include "desktop/busy.h"

#include <QLabel>
#include <QProgressBar>
#include <functional>

namespace tessaran::desktop {

class StatusMeter final : public QWidget, public base::Progress {
  public:
    StatusMeter(Busy& busy, QWidget* parent);

    // What answers cancelled().
    void setPoll(std::function<bool()> poll) { poll_ = std::move(poll); }

    void begin(std::string_view text, long lower, long upper) override;
    void setPosition(long position) override;
    void end() override;
    bool cancelled() override { return poll_ && poll_(); }

  private:
    Busy& busy_;
    QLabel* text_;
    QProgressBar* bar_;
    std::function<bool()> poll_;
    long lower_ = 0;
    long upper_ = 0;
};

} // namespace tessaran::desktop
