#include "desktop/progress_dialog.h"

#include "desktop/qt_text.h"

#include <QCloseEvent>
#include <QGuiApplication>
#include <QKeyEvent>
#include <QScreen>
#include <QVBoxLayout>

namespace tessaran::desktop {

ProgressDialog::ProgressDialog(Busy& busy, QWidget* parent)
    : QDialog(parent, Qt::Dialog | Qt::WindowTitleHint | Qt::CustomizeWindowHint), busy_(busy),
      text_(new QLabel(this)), bar_(new QProgressBar(this)),
      cancel_(new QPushButton(" Cancel", this)) {
    setObjectName("progressDialog");
    auto* column = new QVBoxLayout(this);
    column->addWidget(text_);
    column->addWidget(bar_);
    column->addWidget(cancel_, 0, Qt::AlignRight);
    setMinimumWidth(360);
    cancel_->setAutoDefault(false);
    QObject::connect(cancel_, &QPushButton::pressed, this, [this] { cancelClicked_ = true; });
}

// Where it stood last, as far as a screen still reaches there.
void ProgressDialog::open(int x, int y) {
    busy_.setAllowed(this);
    cancelClicked_ = false;
    adjustSize();
    const bool seen = QGuiApplication::screenAt(QPoint(x + 20, y + 20)) != nullptr;
    if (seen)
        move(x, y);
    show();
    if (!seen && parentWidget() != nullptr)
        move(parentWidget()->frameGeometry().center() - rect().center());
    raise();
}

void ProgressDialog::setCaption(const std::string& caption) {
    setWindowTitle(qt(caption));
}

void ProgressDialog::setText(const std::string& text) {
    text_->setText(qt(text));
}

void ProgressDialog::setBar(int lower, int upper, int position) {
    if (bar_->minimum() != lower || bar_->maximum() != upper)
        bar_->setRange(lower, upper);
    bar_->setValue(position);
}

host::ProgressView::Events ProgressDialog::pump(bool keepFocus) {
    busy_.turn();
    if (keepFocus && isVisible() && !isActiveWindow() &&
        QGuiApplication::applicationState() == Qt::ApplicationActive)
        activateWindow();
    return {.escape = poll_ && poll_(), .cancelClicked = cancelClicked_};
}

host::Point2 ProgressDialog::corner() const {
    const QPoint at = pos();
    return {static_cast<double>(at.x()), static_cast<double>(at.y())};
}

void ProgressDialog::close() {
    busy_.setAllowed(nullptr);
    hide();
}

void ProgressDialog::keyPressEvent(QKeyEvent* event) {
    if (event->key() == Qt::Key_Escape)
        busy_.escape();
    else
        QDialog::keyPressEvent(event);
}

void ProgressDialog::closeEvent(QCloseEvent* event) {
    cancelClicked_ = true;
    event->ignore();
}

} // namespace tessaran::desktop
