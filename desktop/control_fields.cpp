// Controls that are typed into, and those that only tell.

#include "desktop/control_makers.h"

#include <QFontDatabase>
#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaran::desktop {
namespace {

using Purpose = host::DialogSession::Purpose;

constexpr int kMostLabelLines = 6; // longer texts scroll
constexpr int kWidestText = 440;   // pixels

class TextView final : public ControlView {
  public:
    TextView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*edit_, Purpose::set);
        edit_->setMinimumWidth(90);
        QObject::connect(edit_, &QLineEdit::editingFinished, edit_, [this] { commit(); });
    }

    QLineEdit& edit() { return *edit_; }
    QWidget* widget() override { return edit_; }
    // What is being typed stays until it is handed on.
    void refresh() override {
        if (edit_->isModified() || edit_->text() == text())
            return;
        edit_->setText(text());
        edit_->setCursorPosition(0);
    }
    // Only what a person changed: a field shows a number shorter than it may be.
    void commit() override {
        if (!edit_->isModified() || actions_.busy())
            return;
        edit_->setModified(false);
        actions_.set(place_, edit_->text().toStdString());
        refresh();
    }
    void focus() override {
        edit_->setFocus(Qt::OtherFocusReason);
        edit_->selectAll();
    }

  private:
    QLineEdit* edit_ = new QLineEdit;
};

// A text that wraps beyond some width, and asks for all the room that it takes then: layouts in
// scroll areas do not find out how high a text is at its width.
class WrappedLabel final : public QLabel {
  public:
    using QLabel::QLabel;

    void show(const QString& text) {
        setText(text);
        const QSize oneLineEach = fontMetrics().size(0, text);
        const int width = std::min(oneLineEach.width() + 4, kWidestText);
        setMinimumSize(width, text.isEmpty() ? 0 : heightForWidth(width));
    }
};

// A text of one line or some stands as it is, a longer one in a view that scrolls.
class InformationView final : public ControlView {
  public:
    InformationView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*frame_, Purpose::show);
        label_->setWordWrap(true);
        label_->setTextFormat(Qt::PlainText);
        label_->setTextInteractionFlags(Qt::TextSelectableByMouse);
        pane_->setReadOnly(true);
        pane_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
        pane_->setMinimumSize(460, 220);
        pane_->hide();
        auto* layout = new QVBoxLayout(frame_);
        layout->setContentsMargins(0, 0, 0, 0);
        layout->addWidget(label_);
        layout->addWidget(pane_);
    }

    QWidget* widget() override { return frame_; }
    void refresh() override {
        const QString shown = text().trimmed();
        const bool isLong = shown.count('\n') >= kMostLabelLines;
        label_->show(isLong ? QString() : shown);
        if (pane_->toPlainText() != (isLong ? shown : QString()))
            pane_->setPlainText(isLong ? shown : QString());
        label_->setVisible(!isLong);
        pane_->setVisible(isLong);
    }

  private:
    QWidget* frame_ = new QWidget;
    WrappedLabel* label_ = new WrappedLabel(frame_);
    QPlainTextEdit* pane_ = new QPlainTextEdit(frame_);
};

class LinkView final : public ControlView {
  public:
    LinkView(DialogActions& actions, const DialogActions::Place& place)
        : ControlView(actions, place) {
        name(*label_, Purpose::press);
        label_->setTextInteractionFlags(Qt::TextBrowserInteraction);
        label_->setFocusPolicy(Qt::StrongFocus);
        QObject::connect(label_, &QLabel::linkActivated, label_,
                         [this] { actions_.press(place_); });
    }

    QWidget* widget() override { return label_; }
    void refresh() override {
        const QString shown = QString::fromStdString(host::writtenLabel(control().label));
        label_->setText(
            QString("<a href=\"%1\">%2</a>").arg(text().toHtmlEscaped(), shown.toHtmlEscaped()));
        if (control().toolTip.empty())
            label_->setToolTip(text());
    }

  private:
    QLabel* label_ = new QLabel;
};

} // namespace

MadeView makeTextView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<TextView>(actions, place);
}

MadeView makeNamesView(DialogActions& actions, const DialogActions::Place& place) {
    auto view = std::make_unique<TextView>(actions, place);
    view->edit().setPlaceholderText("names, separated by commas");
    return view;
}

MadeView makeInformationView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<InformationView>(actions, place);
}

MadeView makeLinkView(DialogActions& actions, const DialogActions::Place& place) {
    return std::make_unique<LinkView>(actions, place);
}

} // namespace tessaran::desktop
