#pragma once

// Message boxes, questions, file dialogs and dialogs as Qt shows them, and what was pressed in them
// as lines of the session's script.

#include "desktop/session_recorder.h"
#include "host/dialogs.h"

#include <QWidget>
#include <vector>

namespace tessaran::desktop {

class DialogWindow;

class DialogHost final : public host::Dialogs {
  public:
    explicit DialogHost(QWidget& parent, SessionRecorder* recorder = nullptr)
        : parent_(parent), recorder_(recorder) {}

    void message(const std::string& text) override;
    host::Answer ask(const host::Question& question) override;
    std::optional<std::string> chooseFile(const host::FileRequest& request) override;
    bool run(host::DialogSession& session) override;

  private:
    QWidget* topmost() const;
    void showOpen();
    void record(const std::string& line);

    QWidget& parent_;
    SessionRecorder* recorder_;
    std::vector<DialogWindow*> open_; // each opened by the one before it
};

} // namespace tessaran::desktop
