#include "desktop/history_view.h"

#include "desktop/qt_text.h"

#include <fmt/format.h>

#include <QFontDatabase>
#include <QScrollBar>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr int kMostLines = 2000;
constexpr int kBetweenFlushes = 60; // milliseconds
constexpr long kMostPending = 1000; // lines that may come between two

} // namespace

HistoryView::HistoryView(QWidget* parent) : QPlainTextEdit(parent) {
    setReadOnly(true);
    setUndoRedoEnabled(false);
    setMaximumBlockCount(kMostLines);
    setLineWrapMode(QPlainTextEdit::WidgetWidth);
    setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
    setFocusPolicy(Qt::ClickFocus);
    timer_.setSingleShot(true);
    timer_.setInterval(kBetweenFlushes);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { flush(); });
}

void HistoryView::append(std::string_view text) {
    pending_ += text;
    pendingLines_ += std::ranges::count(text, '\n');
    if (pendingLines_ > kMostPending)
        shorten();
    if (!timer_.isActive())
        timer_.start();
}

// Keeps the later half, from a line's beginning.
void HistoryView::shorten() {
    const auto half = pending_.begin() + static_cast<std::ptrdiff_t>(pending_.size() / 2);
    const auto end = std::find(half, pending_.end(), '\n');
    const auto cut = end == pending_.end() ? half : end + 1;
    const auto gone = std::count(pending_.begin(), cut, '\n');
    pendingLeftOut_ += gone;
    pendingLines_ -= gone;
    pending_.erase(pending_.begin(), cut);
}

void HistoryView::flush() {
    timer_.stop();
    if (pending_.empty())
        return;
    std::string text;
    if (pendingLeftOut_ > 0)
        text = fmt::format("\n... {} lines are not shown ...\n", pendingLeftOut_);
    text += pending_;
    leftOut_ += pendingLeftOut_;
    pendingLeftOut_ = 0;
    pendingLines_ = 0;
    pending_.clear();
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(qt(text));
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

} // namespace tessaran::desktop
