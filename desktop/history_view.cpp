#include "desktop/history_view.h"

#include "desktop/qt_text.h"

#include <fmt/format.h>

#include <QFontDatabase>
#include <QScrollBar>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr int kMostLines = 2000;
constexpr int kBetweenFlushes = 60;                        // milliseconds
constexpr std::size_t kMostPending = std::size_t{1} << 16; // bytes that may come between two

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
    if (pending_.size() > kMostPending)
        shorten();
    if (!timer_.isActive())
        timer_.start();
}

// Keeps the later half, from a line's beginning.
void HistoryView::shorten() {
    const std::size_t half = pending_.size() / 2;
    const std::size_t end = pending_.find('\n', half);
    const std::size_t cut = end == std::string::npos ? half : end + 1;
    const auto middle = pending_.begin() + static_cast<std::ptrdiff_t>(cut);
    pendingLeftOut_ += std::count(pending_.begin(), middle, '\n');
    pending_.erase(pending_.begin(), middle);
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
    pending_.clear();
    QTextCursor end(document());
    end.movePosition(QTextCursor::End);
    end.insertText(qt(text));
    verticalScrollBar()->setValue(verticalScrollBar()->maximum());
}

} // namespace tessaran::desktop
