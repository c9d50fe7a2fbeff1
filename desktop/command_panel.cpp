#include "desktop/command_panel.h"

#include "base/text.h"
#include "desktop/qt_text.h"

#include <QVBoxLayout>
#include <algorithm>

namespace tessaran::desktop {

namespace {
constexpr int kNarrowestLine = 200; // pixels
}

std::string shortPrompt(const PromptState& prompt) {
    if (prompt.kind == PromptState::Kind::command)
        return "Command";
    std::string text = prompt.message;
    std::replace(text.begin(), text.end(), '\n', ' ');
    std::string_view shown = base::trimmed(text);
    while (shown.ends_with(':') || shown.ends_with(' '))
        shown.remove_suffix(1);
    return std::string(shown);
}

CommandPanel::CommandPanel(QWidget* parent)
    : QWidget(parent), history_(new HistoryView(this)), prompt_(new QLabel(this)),
      keywords_(new QWidget(this)), keywordRow_(new QHBoxLayout(keywords_)),
      line_(new CommandLine(this)) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->setSpacing(0);
    column->addWidget(history_, 1);
    auto* bar = new QWidget(this);
    bar->setObjectName("commandBar");
    bar->setAutoFillBackground(true);
    bar->setBackgroundRole(QPalette::Base);
    auto* row = new QHBoxLayout(bar);
    row->setContentsMargins(6, 2, 6, 2);
    row->setSpacing(6);
    prompt_->setObjectName("promptLabel");
    QFont bold = prompt_->font();
    bold.setBold(true);
    prompt_->setFont(bold);
    prompt_->setMinimumWidth(1); // a long prompt gives way to the line; the history holds it whole
    row->addWidget(prompt_);
    row->addWidget(line_, 1);
    keywords_->setAutoFillBackground(true);
    keywords_->setBackgroundRole(QPalette::Base);
    keywordRow_->setContentsMargins(6, 2, 6, 0);
    keywordRow_->setSpacing(3);
    keywordRow_->setAlignment(Qt::AlignLeft);
    keywordRow_->setSizeConstraint(
        QLayout::SetNoConstraint); // many of them do not widen the window
    column->addWidget(keywords_);
    column->addWidget(bar);
    line_->setFont(history_->font());
    line_->setMinimumWidth(kNarrowestLine);
    keywords_->hide();
}

void CommandPanel::showPrompt(const PromptState& prompt) {
    history_->flush();
    prompt_->setText(qt(shortPrompt(prompt)) + ":");
    line_->setEnabled(true);
    line_->setPlaceholderText(prompt.kind == PromptState::Kind::command ? "Type a command"
                                                                        : QString());
    showKeywords(prompt.keywords);
}

void CommandPanel::showBusy() {
    prompt_->setText("Working ...");
    showKeywords({});
}

void CommandPanel::showKeywords(const std::vector<host::Keyword>& keywords) {
    while (QLayoutItem* item = keywordRow_->takeAt(0)) {
        item->widget()->hide();
        item->widget()->deleteLater();
        delete item;
    }
    keywords_->setVisible(!keywords.empty());
    for (const host::Keyword& keyword : keywords) {
        auto* button = new QToolButton(keywords_);
        button->setText(qt(keyword.name));
        button->setObjectName("keyword_" + qt(keyword.name));
        button->setFocusPolicy(Qt::NoFocus);
        QObject::connect(button, &QToolButton::clicked, this, [this, name = keyword.name] {
            if (chosen_)
                chosen_(name);
        });
        keywordRow_->addWidget(button);
        button->show();
    }
}

} // namespace tessaran::desktop
