#include "user.h"

#include "desktop/dialog_window.h"
#include "dialog_bench.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>

namespace tessaran::test {
namespace {

constexpr int kMostOpen = 50;   // dialogs left open at the end
constexpr int kMostIdle = 4000; // looks of 5 ms: a step that never gets its turn

// The items to click on the way to the one of that text; none: there is no such item.
QList<QAction*> wayTo(const QList<QAction*>& actions, const QString& text) {
    for (QAction* action : actions) {
        if (action->menu() == nullptr && action->text().remove('&') == text)
            return {action};
        if (action->menu() == nullptr)
            continue;
        if (const auto inside = wayTo(action->menu()->actions(), text); !inside.isEmpty())
            return QList<QAction*>{action} + inside;
    }
    return {};
}

std::string inFront() {
    const QWidget* widget = QApplication::activeModalWidget();
    const auto* box = qobject_cast<const QMessageBox*>(widget);
    return widget == nullptr ? "the window"
                             : (box == nullptr ? widget->windowTitle() : box->text()).toStdString();
}

template <class Window>
bool isInFront() {
    return qobject_cast<Window*>(QApplication::activeModalWidget()) != nullptr;
}

} // namespace

User::User(const desktop::DesktopSession::Options& options)
    : session_((static_cast<void>(application()), // comes before any window
                std::make_unique<desktop::DesktopSession>(options))) {
    window().resize(1000, 800);
    QObject::connect(&timer_, &QTimer::timeout, &timer_, [this] { next(); });
}

User::~User() = default;

std::string User::history() {
    window().commands().history().flush();
    return window().commands().history().toPlainText().toStdString();
}

User& User::then(std::string name, std::function<bool()> ready, std::function<void()> act) {
    steps_.push_back({std::move(name), std::move(ready), std::move(act)});
    return *this;
}

bool User::somethingWaits() const {
    return session_->lines().waiting() || QApplication::activeModalWidget() != nullptr;
}

User& User::atPrompt(std::string name, std::function<void()> act) {
    return then(
        std::move(name), [this] { return session_->lines().waiting(); }, std::move(act));
}

QPoint User::pixel(host::Point2 world) {
    const host::Point2 at = view().map()(world);
    return {static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y))};
}

User& User::type(const std::string& line) {
    return atPrompt("type " + line, [this, line] {
        QTest::keyClicks(&window().commands().line(), QString::fromStdString(line));
        QTest::keyClick(&window().commands().line(), Qt::Key_Return);
    });
}

User& User::keys(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    return atPrompt("key", [this, key, modifiers] { QTest::keyClick(&view(), key, modifiers); });
}

User& User::escape() {
    return keys(Qt::Key_Escape);
}

User& User::moveTo(host::Point2 world) {
    return atPrompt("move", [this, world] { QTest::mouseMove(&view(), pixel(world)); });
}

User& User::clickAt(host::Point2 world, Qt::KeyboardModifiers modifiers) {
    return atPrompt("click", [this, world, modifiers] {
        QTest::mouseClick(&view(), Qt::LeftButton, modifiers, pixel(world));
    });
}

User& User::drag(host::Point2 from, host::Point2 to) {
    return atPrompt("drag", [this, from, to] {
        QTest::mousePress(&view(), Qt::LeftButton, {}, pixel(from));
        QTest::mouseMove(&view(), pixel(to));
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, pixel(to));
    });
}

User& User::keyword(const std::string& name) {
    return atPrompt("keyword " + name, [this, name] {
        auto* button = window().findChild<QToolButton*>("keyword_" + QString::fromStdString(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    });
}

User& User::menu(const QString& text) {
    return atPrompt("menu " + text.toStdString(), [this, text] {
        const QList<QAction*> way = wayTo(window().menuBar()->actions(), text);
        ASSERT_FALSE(way.isEmpty()) << text.toStdString();
        timer_.stop(); // the next step waits until the item is clicked
        QMenuBar* bar = window().menuBar();
        QTest::mouseClick(bar, Qt::LeftButton, {}, bar->actionGeometry(way.front()).center());
        for (qsizetype k = 1; k < way.size(); ++k) {
            QMenu* menu = way[k - 1]->menu();
            ASSERT_TRUE(QTest::qWaitFor([&] { return menu->isVisible(); }, 5000))
                << way[k - 1]->text().toStdString();
            if (k + 1 == way.size())
                timer_.start();
            QTest::mouseClick(menu, Qt::LeftButton, {}, menu->actionGeometry(way[k]).center());
        }
    });
}

User& User::answer(const QString& button) {
    return then("button " + button.toStdString(), isInFront<QMessageBox>, [button] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        for (QAbstractButton* one : box->buttons())
            if (one->text().remove('&') == button)
                return QTest::mouseClick(one, Qt::LeftButton);
        ADD_FAILURE() << "no button " << button.toStdString() << ": " << box->text().toStdString();
        box->close();
    });
}

User& User::dialog(const QString& title, std::function<void(desktop::DialogWindow&)> act) {
    const auto inFront = [title] {
        auto* window = qobject_cast<desktop::DialogWindow*>(QApplication::activeModalWidget());
        const bool active = window != nullptr && window->isActiveWindow(); // else keys go nowhere
        return active && window->windowTitle() == title ? window : nullptr;
    };
    return then(
        "dialog " + title.toStdString(), [inFront] { return inFront() != nullptr; },
        [inFront, act = std::move(act)] { act(*inFront()); });
}

User& User::file(const std::string& name) {
    return then("file " + name, isInFront<QFileDialog>, [name] {
        auto* edit = QApplication::activeModalWidget()->findChild<QLineEdit*>("fileNameEdit");
        ASSERT_NE(edit, nullptr);
        edit->selectAll();
        QTest::keyClicks(edit, QString::fromStdString(name));
        QTest::keyClick(edit, Qt::Key_Return);
    });
}

User& User::look(std::function<void()> check) {
    return then(
        "look", [this] { return somethingWaits(); }, std::move(check));
}

User& User::whileBusy(std::function<void()> act) {
    return then(
        "while busy", [this] { return !somethingWaits(); }, std::move(act));
}

// A timer does not fire again while what it called goes on, so it is started anew: a step may run a
// loop of its own, in which the next is taken.
void User::next() {
    timer_.start();
    if (steps_.empty() ? somethingWaits() : steps_.front().ready()) {
        idle_ = 0;
        if (steps_.empty())
            return finish();
        const Step step = std::move(steps_.front());
        steps_.pop_front();
        return step.act();
    }
    if (++idle_ < kMostIdle)
        return;
    ADD_FAILURE() << steps_.size() << " steps never got their turn, the first of them: "
                  << (steps_.empty() ? "the end" : steps_.front().name)
                  << "; in front: " << inFront() << "\n"
                  << history();
    steps_.clear();
    idle_ = 0;
}

// Whatever is open is closed, one dialog at a time.
void User::finish() {
    if (QWidget* open = QApplication::activeModalWidget()) {
        if (++closed_ > kMostOpen)
            qFatal("%s does not close", qPrintable(open->windowTitle()));
        open->close();
        return;
    }
    timer_.stop();
    session_->lines().end();
}

void User::work(const std::string& drawing) {
    timer_.start(5);
    session_->run(drawing);
    timer_.stop();
}

void addCommand(desktop::DesktopSession& session, const std::string& name,
                std::function<void(host::Host&)> run) {
    session.host().state().commands.add(console::Command{
        "TEST", name, name, [&session, run = std::move(run)] { run(session.host()); }});
}

} // namespace tessaran::test
