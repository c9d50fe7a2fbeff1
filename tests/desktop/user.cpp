#include "user.h"

#include "dialog_bench.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QMenuBar>
#include <QMessageBox>
#include <QTest>

namespace tessaran::test {
namespace {

constexpr int kMostIdle = 4000; // looks of 5 ms: a step that never gets its turn

QAction* findAction(const QList<QAction*>& actions, const QString& text) {
    for (QAction* action : actions) {
        if (action->menu() != nullptr) {
            if (QAction* inside = findAction(action->menu()->actions(), text))
                return inside;
        } else if (action->text().remove('&') == text) {
            return action;
        }
    }
    return nullptr;
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

User& User::then(std::function<void()> act, bool busy) {
    steps_.push_back({std::move(act), busy});
    return *this;
}

QPoint User::pixel(host::Point2 world) {
    const host::Point2 at = view().map()(world);
    return {static_cast<int>(std::lround(at.x)), static_cast<int>(std::lround(at.y))};
}

User& User::type(const std::string& line) {
    return then([this, line] {
        QTest::keyClicks(&window().commands().line(), QString::fromStdString(line));
        QTest::keyClick(&window().commands().line(), Qt::Key_Return);
    });
}

User& User::keys(Qt::Key key, Qt::KeyboardModifiers modifiers) {
    return then([this, key, modifiers] { QTest::keyClick(&view(), key, modifiers); });
}

User& User::escape() {
    return keys(Qt::Key_Escape);
}

User& User::moveTo(host::Point2 world) {
    return then([this, world] { QTest::mouseMove(&view(), pixel(world)); });
}

User& User::clickAt(host::Point2 world, Qt::KeyboardModifiers modifiers) {
    return then([this, world, modifiers] {
        QTest::mouseClick(&view(), Qt::LeftButton, modifiers, pixel(world));
    });
}

User& User::drag(host::Point2 from, host::Point2 to) {
    return then([this, from, to] {
        QTest::mousePress(&view(), Qt::LeftButton, {}, pixel(from));
        QTest::mouseMove(&view(), pixel(to));
        QTest::mouseRelease(&view(), Qt::LeftButton, {}, pixel(to));
    });
}

User& User::keyword(const std::string& name) {
    return then([this, name] {
        auto* button = window().findChild<QToolButton*>("keyword_" + QString::fromStdString(name));
        ASSERT_NE(button, nullptr) << name;
        QTest::mouseClick(button, Qt::LeftButton);
    });
}

User& User::menu(const QString& text) {
    return then([this, text] {
        QAction* action = findAction(window().menuBar()->actions(), text);
        ASSERT_NE(action, nullptr) << text.toStdString();
        action->trigger();
    });
}

User& User::answer(const QString& button) {
    return then([button] {
        auto* box = qobject_cast<QMessageBox*>(QApplication::activeModalWidget());
        ASSERT_NE(box, nullptr);
        for (QAbstractButton* one : box->buttons())
            if (one->text().remove('&') == button)
                return QTest::mouseClick(one, Qt::LeftButton);
        ADD_FAILURE() << "no button " << button.toStdString();
    });
}

User& User::look(std::function<void()> check) {
    return then(std::move(check));
}

User& User::whileBusy(std::function<void()> act) {
    return then(std::move(act), true);
}

void User::next() {
    const bool open = QApplication::activeModalWidget() != nullptr;
    const bool waits = session_->lines().waiting() || open;
    if (steps_.empty() ? waits : steps_.front().busy != waits) {
        idle_ = 0;
        if (steps_.empty()) {
            timer_.stop();
            if (open)
                QApplication::activeModalWidget()->close();
            session_->lines().end();
            return;
        }
        const Step step = std::move(steps_.front());
        steps_.pop_front();
        return step.act();
    }
    if (++idle_ < kMostIdle)
        return;
    ADD_FAILURE() << steps_.size() << " steps never got their turn";
    steps_.clear();
    idle_ = 0;
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
