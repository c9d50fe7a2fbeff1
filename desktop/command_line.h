#pragma once

// The line at the bottom that is typed into: with the lines typed before (Up, Down), completion
// (Tab goes through what may be meant) and Escape.

#include "console/completion.h"

#include <QLineEdit>
#include <QStringList>
#include <functional>

namespace tessaran::desktop {

class CommandLine final : public QLineEdit {
  public:
    explicit CommandLine(QWidget* parent);

    struct Listener {
        std::function<void(const std::string&)> submitted{};
        std::function<void()> escaped{};
        std::function<console::CompletionContext()> context{};
    };
    void setListener(Listener listener) { listener_ = std::move(listener); }

    const QStringList& past() const { return past_; }
    void setPast(QStringList lines) {
        past_ = std::move(lines);
        at_ = past_.size();
    }
    // A key pressed elsewhere that belongs here.
    void take(QKeyEvent* event);

  protected:
    bool event(QEvent* event) override; // Tab is a key like any other here
    void keyPressEvent(QKeyEvent* event) override;

  private:
    void submit();
    void recall(qsizetype step);
    void completeNext();

    Listener listener_;
    QStringList past_;
    qsizetype at_ = 0; // of the line recalled; past_.size(): none
    // The completion under way: what was typed, and what may stand there.
    std::string typed_;
    console::Completion completion_;
    std::size_t shown_ = 0;
};

} // namespace tessaran::desktop
