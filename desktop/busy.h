#pragma once

// The window's life while a command computes: it repaints, and hears Escape, but takes no other
// input, so that no second command can start.

#include <QObject>
#include <chrono>

class QWidget;

namespace tessaran::desktop {

class Busy final : public QObject {
  public:
    // Handles what waits, without blocking; costs next to nothing when called often. Input goes
    // only to `allowed` and what is in it.
    void turn();
    void setAllowed(QWidget* allowed) { allowed_ = allowed; }

    // Whether Escape was pressed since the last forget().
    bool escaped() const { return escaped_; }
    void escape() { escaped_ = true; }
    void forget() { escaped_ = false; }

  protected:
    bool eventFilter(QObject* receiver, QEvent* event) override;

  private:
    bool isAllowed(const QObject* receiver) const;

    QWidget* allowed_ = nullptr;
    bool escaped_ = false;
    bool turning_ = false;
    std::chrono::steady_clock::time_point last_{};
};

} // namespace tessaran::desktop
