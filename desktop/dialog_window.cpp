#include "desktop/dialog_window.h"

#include "desktop/page_selector.h"

#include <QCloseEvent>
#include <QEventLoop>
#include <QHBoxLayout>
#include <QPushButton>
#include <QScreen>
#include <QScrollArea>
#include <QStackedWidget>
#include <QStyle>
#include <QVBoxLayout>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr double kScreenShare = 0.85; // of the screen that a dialog takes at most
constexpr int kLeastWidth = 420;

// Scrolls only where the page is larger than the screen lets it be.
class PageArea final : public QScrollArea {
  public:
    explicit PageArea(QWidget* page) {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setWidget(page);
        viewport()->setAutoFillBackground(false);
        page->setAutoFillBackground(false);
    }
    // As large as the page, texts that wrap at this width included; on a screen that is too small
    // as large as it lets, with room for the bars.
    QSize sizeHint() const override {
        const QSize most = screen()->availableSize() * kScreenShare - QSize(60, 120);
        QSize wanted = widget()->sizeHint().expandedTo(QSize(kLeastWidth, 0));
        if (widget()->hasHeightForWidth())
            wanted.setHeight(std::max(wanted.height(), widget()->heightForWidth(wanted.width())));
        const int bar = style()->pixelMetric(QStyle::PM_ScrollBarExtent) + 2;
        if (wanted.height() > most.height())
            wanted.rwidth() += bar;
        if (wanted.width() > most.width())
            wanted.rheight() += bar;
        return wanted.boundedTo(most);
    }
    QSize minimumSizeHint() const override {
        return widget()->minimumSizeHint().boundedTo(sizeHint());
    }
};

} // namespace

// What the session asks of the screen.
class DialogWindow::View final : public host::DialogView {
  public:
    explicit View(DialogWindow& window) : window_(window) {}
    void refresh() override { window_.refresh(); }
    void setVisible(bool visible) override {
        if (window_.onVisible_)
            window_.onVisible_();
        else
            window_.setShown(visible);
    }
    void focus(const host::Control& control) override { window_.focusOn(control); }

  private:
    DialogWindow& window_;
};

DialogWindow::DialogWindow(host::DialogSession& session, SessionRecorder* recorder, QWidget* parent)
    : QDialog(parent), session_(session), actions_(session, recorder),
      view_(std::make_unique<View>(*this)) {
    setModal(true);
    setObjectName(QString::fromStdString(session.dialog().title()));
    auto* layout = new QVBoxLayout(this);
    layout->addWidget(makePages(), 1);
    layout->addWidget(makeEndButtons());
    growing_.setSingleShot(true);
    QObject::connect(&growing_, &QTimer::timeout, this, [this] { growToFit(); });
    actions_.setCommit([this] { commitTyped(); });
    actions_.setDone([this] { done(); });
}

DialogWindow::~DialogWindow() {
    session_.setView(nullptr);
}

// --- widgets ------------------------------------------------------------------------------------

QWidget* DialogWindow::makePages() {
    auto* pages = new QWidget;
    QStringList titles;
    bool titled = false;
    stack_ = new QStackedWidget;
    for (int page = 0; page < static_cast<int>(session_.pages().size()); ++page) {
        const std::string title = session_.pages()[static_cast<std::size_t>(page)].page->title();
        titled = titled || !title.empty();
        titles.append(QString::fromStdString(title));
        stack_->addWidget(makePage(page));
    }
    if (titled) {
        selector_ = new PageSelector(titles);
        connect(selector_, &PageSelector::wanted, this,
                [this](int page) { actions_.bringToFront(page); });
    }
    const bool over = selector_ == nullptr || selector_->isTabs();
    auto* layout = new QBoxLayout(over ? QBoxLayout::TopToBottom : QBoxLayout::LeftToRight, pages);
    layout->setContentsMargins(0, 0, 0, 0);
    if (selector_ != nullptr)
        layout->addWidget(selector_);
    layout->addWidget(stack_, 1);
    return pages;
}

QWidget* DialogWindow::makePage(int page) {
    QWidget* content = layOutPage(actions_, page, views_);
    return new PageArea(content);
}

QWidget* DialogWindow::makeEndButtons() {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addStretch(1);
    ok_ = new QPushButton(row);
    ok_->setObjectName("dialog.ok");
    cancel_ = new QPushButton(row);
    cancel_->setObjectName("dialog.cancel");
    cancel_->setAutoDefault(false);
    layout->addWidget(ok_);
    layout->addWidget(cancel_);
    connect(ok_, &QPushButton::clicked, this, [this] { actions_.ok(); });
    connect(cancel_, &QPushButton::clicked, this, [this] { actions_.cancel(); });
    return row;
}

// --- what the session wants shown ---------------------------------------------------------------

void DialogWindow::refresh() {
    setWindowTitle(QString::fromStdString(session_.dialog().title()));
    for (const auto& view : views_)
        view->refreshAll();
    const int front = session_.frontPage();
    if (selector_ != nullptr)
        selector_->setFront(front);
    stack_->setCurrentIndex(front);
    refreshEndButtons();
    // Texts that have changed are laid out when control is back in the event loop.
    growing_.start(0);
}

void DialogWindow::refreshEndButtons() {
    const std::string ok = session_.dialog().okLabel(session_);
    const std::string cancel = session_.dialog().cancelLabel(session_);
    ok_->setText(QString::fromStdString(ok));
    ok_->setVisible(!ok.empty());
    ok_->setDefault(!ok.empty());
    ok_->setAutoDefault(!ok.empty());
    cancel_->setText(QString::fromStdString(cancel));
    cancel_->setVisible(!cancel.empty());
}

// A text that has become longer makes the dialog larger, never smaller.
void DialogWindow::growToFit() {
    if (!isVisible())
        return;
    for (int page = 0; page < stack_->count(); ++page)
        stack_->widget(page)->updateGeometry();
    layout()->activate();
    const QSize most = screen()->availableSize() * kScreenShare;
    const QSize wanted = size().expandedTo(sizeHint().boundedTo(most));
    if (wanted == size())
        return;
    resize(wanted);
    // Texts wrap anew at the new width.
    growing_.start(0);
}

void DialogWindow::focusOn(const host::Control& control) {
    refresh();
    for (const auto& view : views_)
        if (&view->control() == &control)
            view->focus();
}

// The first control that can be used, in reading order.
void DialogWindow::focusFirst() {
    if (session_.focused() != nullptr)
        return focusOn(*session_.focused());
    const auto& controls =
        session_.pages()[static_cast<std::size_t>(session_.frontPage())].controls;
    for (const auto& control : controls)
        if (control->kind != host::ControlKind::information && session_.isEnabled(*control))
            return focusOn(*control);
}

void DialogWindow::setShown(bool shown) {
    if (shown == isVisible())
        return;
    if (!shown) {
        place_ = pos();
        placed_ = true;
        hide();
        return;
    }
    if (placed_)
        move(place_);
    show();
    if (placed_)
        move(place_);
    raise();
    activateWindow();
}

// --- what the user does -------------------------------------------------------------------------

void DialogWindow::commitTyped() {
    for (const auto& view : views_)
        view->commit();
}

void DialogWindow::done() {
    if (session_.ended() && quitLoop_)
        quitLoop_();
}

void DialogWindow::reject() {
    actions_.cancel();
}

void DialogWindow::accept() {
    actions_.ok();
}

void DialogWindow::closeEvent(QCloseEvent* event) {
    event->ignore();
    actions_.cancel();
}

void DialogWindow::run() {
    QEventLoop loop;
    quitLoop_ = [&loop] { loop.quit(); };
    session_.setView(view_.get());
    session_.open();
    refresh();
    if (!session_.ended()) {
        setShown(session_.visible());
        focusFirst();
        loop.exec(QEventLoop::DialogExec);
    }
    quitLoop_ = nullptr;
    session_.setView(nullptr);
    hide();
    if (const std::exception_ptr failure = actions_.failure())
        std::rethrow_exception(failure);
}

} // namespace tessaran::desktop
