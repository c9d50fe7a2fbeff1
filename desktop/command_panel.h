#pragma once

// The panel at the bottom: what was printed, what is asked, its keywords to click, and the command
// line.

#include "desktop/command_line.h"
#include "desktop/history_view.h"
#include "desktop/prompt_board.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QWidget>

namespace tessaran::desktop {

class CommandPanel final : public QWidget {
  public:
    explicit CommandPanel(QWidget* parent);

    HistoryView& history() { return *history_; }
    CommandLine& line() { return *line_; }

    // A click on a keyword.
    void setChosen(std::function<void(const std::string&)> chosen) { chosen_ = std::move(chosen); }
    void showPrompt(const PromptState& prompt);
    void showBusy();

  private:
    void showKeywords(const std::vector<host::Keyword>& keywords);

    HistoryView* history_;
    QLabel* prompt_;
    QWidget* keywords_;
    QHBoxLayout* keywordRow_;
    CommandLine* line_;
    std::function<void(const std::string&)> chosen_;
};

// A prompt's message as one short line: without line breaks, keywords and closing colon.
std::string shortPrompt(const PromptState& prompt);

} // namespace tessaran::desktop
