#include "desktop/command_line.h"

#include "desktop/qt_text.h"

#include <QCoreApplication>
#include <QKeyEvent>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr qsizetype kMostPast = 500;

} // namespace

CommandLine::CommandLine(QWidget* parent) : QLineEdit(parent) {
    setObjectName("commandLine");
    setFrame(false);
    setPlaceholderText("Type a command");
}

void CommandLine::take(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape || event->key() == Qt::Key_Return ||
        event->key() == Qt::Key_Enter)
        return keyPressEvent(event);
    setFocus(Qt::OtherFocusReason);
    QCoreApplication::sendEvent(this, event);
}

bool CommandLine::event(QEvent* event) {
    if (event->type() == QEvent::KeyPress && static_cast<QKeyEvent*>(event)->key() == Qt::Key_Tab) {
        completeNext();
        return true;
    }
    return QLineEdit::event(event);
}

void CommandLine::keyPressEvent(QKeyEvent* event) {
    completion_ = {};
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
        return submit();
    case Qt::Key_Escape:
        clear();
        if (listener_.escaped)
            listener_.escaped();
        return;
    case Qt::Key_Up:
        return recall(-1);
    case Qt::Key_Down:
        return recall(1);
    default:
        QLineEdit::keyPressEvent(event);
    }
}

void CommandLine::submit() {
    const QString line = text();
    clear();
    if (!line.isEmpty() && (past_.isEmpty() || past_.back() != line))
        past_.push_back(line);
    while (past_.size() > kMostPast)
        past_.pop_front();
    at_ = past_.size();
    if (listener_.submitted)
        listener_.submitted(utf8(line));
}

void CommandLine::recall(qsizetype step) {
    at_ = std::clamp<qsizetype>(at_ + step, 0, past_.size());
    setText(at_ < past_.size() ? past_[at_] : QString());
}

void CommandLine::completeNext() {
    if (completion_.candidates.empty()) {
        typed_ = utf8(text());
        completion_ = console::complete(typed_, listener_.context ? listener_.context()
                                                                  : console::CompletionContext{});
        shown_ = 0;
    } else {
        shown_ = (shown_ + 1) % completion_.candidates.size();
    }
    if (completion_.candidates.empty())
        return;
    setText(qt(typed_.substr(0, completion_.from) + completion_.candidates[shown_]));
    const std::size_t count = completion_.candidates.size();
    setToolTip(count > 1 ? QString("%1 of %2").arg(shown_ + 1).arg(count) : QString());
}

} // namespace tessaran::desktop
