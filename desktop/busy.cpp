#include "desktop/busy.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>
#include <QWindow>

namespace tessaran::desktop {
namespace {

constexpr auto kBetweenTurns = std::chrono::milliseconds(30);

bool isInput(QEvent::Type type) {
    switch (type) {
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::Shortcut:
    case QEvent::ShortcutOverride:
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonRelease:
    case QEvent::MouseButtonDblClick:
    case QEvent::Wheel:
    case QEvent::ContextMenu:
    case QEvent::DragEnter:
    case QEvent::Drop:
    case QEvent::Close:
    case QEvent::TouchBegin:
    case QEvent::TouchUpdate:
    case QEvent::TouchEnd:
        return true;
    default:
        return false;
    }
}

} // namespace

void Busy::turn() {
    const auto now = std::chrono::steady_clock::now();
    if (turning_ || now - last_ < kBetweenTurns)
        return;
    turning_ = true;
    qApp->installEventFilter(this);
    QApplication::processEvents();
    qApp->removeEventFilter(this);
    turning_ = false;
    last_ = std::chrono::steady_clock::now();
}

bool Busy::isAllowed(const QObject* receiver) const {
    if (allowed_ == nullptr)
        return false;
    if (receiver == allowed_->windowHandle())
        return true;
    const auto* widget = qobject_cast<const QWidget*>(receiver);
    return widget != nullptr && (widget == allowed_ || allowed_->isAncestorOf(widget));
}

bool Busy::eventFilter(QObject* receiver, QEvent* event) {
    if (!isInput(event->type()) || isAllowed(receiver))
        return false;
    if (event->type() == QEvent::KeyPress &&
        static_cast<QKeyEvent*>(event)->key() == Qt::Key_Escape)
        escaped_ = true;
    if (event->type() == QEvent::Close)
        event->ignore();
    return true;
}

} // namespace tessaran::desktop
