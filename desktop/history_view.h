#pragma once

// What the commands printed. The last lines of it: what comes by the million is held to a number
// that can be read, and tells how much was left out.

#include <QPlainTextEdit>
#include <QTimer>
#include <string>
#include <string_view>

namespace tessaran::desktop {

class HistoryView final : public QPlainTextEdit {
  public:
    explicit HistoryView(QWidget* parent);

    void append(std::string_view text);
    // Shows what has come since the last time; otherwise done now and then.
    void flush();
    long leftOut() const { return leftOut_; } // lines, all in all

  private:
    void shorten();

    std::string pending_;
    long pendingLines_ = 0;
    long pendingLeftOut_ = 0;
    long leftOut_ = 0;
    QTimer timer_;
};

} // namespace tessaran::desktop
