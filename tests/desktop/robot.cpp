#include "desktop/robot.h"

#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractItemView>
#include <QComboBox>
#include <QCoreApplication>
#include <QFileDialog>
#include <QFocusEvent>
#include <QLineEdit>
#include <QListWidget>
#include <QMessageBox>
#include <QTabBar>
#include <QTimer>
#include <QtTest/QTest>

namespace tessaran::test {
namespace {

using desktop::DialogWindow;

constexpr int kMostWaits = 300; // turns of 10 ms

template <class Widget>
Widget* named(DialogWindow& window, const std::string& label) {
    auto* widget = window.findChild<Widget*>(QString::fromStdString(label));
    if (widget == nullptr)
        ADD_FAILURE() << "no \"" << label << "\" in " << window.windowTitle().toStdString();
    return widget;
}

} // namespace

Robot::Robot() {
    application();
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { turn(); });
    arm();
}

Robot::~Robot() {
    EXPECT_TRUE(steps_.empty()) << "not reached: " << steps_.front().name;
}

Robot& Robot::dialog(const std::string& title, InDialog act) {
    steps_.push_back({"dialog " + title, [title, act = std::move(act)](QWidget* widget) {
                          auto* window = qobject_cast<DialogWindow*>(widget);
                          if (window == nullptr ||
                              (!title.empty() && window->windowTitle().toStdString() != title))
                              return false;
                          if (!window->isActiveWindow()) // keys go nowhere yet
                              return false;
                          act(*window);
                          return true;
                      }});
    return *this;
}

Robot& Robot::box(const std::string& text, const std::string& button) {
    steps_.push_back({"box " + text, [this, text, button](QWidget* widget) {
                          auto* box = qobject_cast<QMessageBox*>(widget);
                          if (box == nullptr || !box->text().contains(QString::fromStdString(text)))
                              return false;
                          boxes_.push_back(box->text().toStdString());
                          if (button.empty()) {
                              QTest::keyClick(box, Qt::Key_Escape);
                              return true;
                          }
                          for (QAbstractButton* b : box->buttons())
                              if (b->text().remove('&').toStdString() == button) {
                                  b->click();
                                  return true;
                              }
                          return false;
                      }});
    return *this;
}

Robot& Robot::file(const std::string& path) {
    steps_.push_back({"file " + path, [path](QWidget* widget) {
                          auto* dialog = qobject_cast<QFileDialog*>(widget);
                          if (dialog == nullptr)
                              return false;
                          if (path.empty()) {
                              dialog->reject();
                              return true;
                          }
                          auto* name = dialog->findChild<QLineEdit*>("fileNameEdit");
                          name->setText(QString::fromStdString(path));
                          QTest::keyClick(name, Qt::Key_Return);
                          return true;
                      }});
    return *this;
}

void Robot::arm() {
    timer_.start(10);
}

// Armed before the step is taken: the step may run a loop of its own, in which the next is taken.
void Robot::turn() {
    arm();
    QWidget* inFront = QApplication::activeModalWidget();
    if (inFront == nullptr)
        return;
    if (!steps_.empty()) {
        Step step = std::move(steps_.front());
        steps_.pop_front();
        const int waited = std::exchange(waited_, 0);
        if (step.act(inFront))
            return;
        steps_.push_front(std::move(step));
        waited_ = waited;
    }
    if (++waited_ > kMostWaits)
        giveUp(inFront);
}

void Robot::giveUp(QWidget* inFront) {
    ADD_FAILURE() << (steps_.empty() ? std::string("nothing to do") : steps_.front().name)
                  << ", but in front: " << inFront->metaObject()->className() << " "
                  << inFront->windowTitle().toStdString();
    if (auto* box = qobject_cast<QMessageBox*>(inFront))
        ADD_FAILURE() << box->text().toStdString();
    steps_.clear();
    waited_ = 0;
    inFront->close();
}

namespace {

// The field, or that of a box which takes any text.
QLineEdit* fieldOf(DialogWindow& window, const std::string& label) {
    QWidget* widget = named<QWidget>(window, label);
    if (auto* box = qobject_cast<QComboBox*>(widget))
        widget = box->lineEdit();
    return qobject_cast<QLineEdit*>(widget);
}

} // namespace

void beginTyping(DialogWindow& window, const std::string& label, const std::string& text) {
    QLineEdit* edit = fieldOf(window, label);
    if (edit == nullptr)
        return;
    edit->setFocus();
    edit->selectAll();
    QTest::keyClick(edit, Qt::Key_Delete);
    QTest::keyClicks(edit, QString::fromStdString(text));
}

void type(DialogWindow& window, const std::string& label, const std::string& text) {
    beginTyping(window, label, text);
    QLineEdit* edit = fieldOf(window, label);
    if (edit == nullptr)
        return;
    if (edit->hasFocus())
        return QTest::keyClick(edit, Qt::Key_Tab);
    // On to the next control, as Tab does in an active window; on a busy machine a window that has
    // just come back becomes active late.
    QFocusEvent leave(QEvent::FocusOut, Qt::TabFocusReason);
    QCoreApplication::sendEvent(edit, &leave);
}

void click(DialogWindow& window, const std::string& label) {
    if (auto* button = named<QAbstractButton>(window, label))
        QTest::mouseClick(button, Qt::LeftButton, {}, QPoint(8, button->height() / 2));
}

void choose(DialogWindow& window, const std::string& label, const std::string& choice) {
    auto* box = named<QComboBox>(window, label);
    if (box == nullptr)
        return;
    const int index = box->findText(QString::fromStdString(choice));
    EXPECT_GE(index, 0) << choice;
    QTest::mouseClick(box, Qt::LeftButton, {}, QPoint(box->width() - 8, box->height() / 2));
    QTest::keyClick(box->view(), Qt::Key_Home);
    for (int k = 0; k < index; ++k)
        QTest::keyClick(box->view(), Qt::Key_Down);
    QTest::keyClick(box->view(), Qt::Key_Return);
}

void turnTo(DialogWindow& window, int page) {
    if (auto* tabs = window.findChild<QTabBar*>("pages"))
        QTest::mouseClick(tabs, Qt::LeftButton, {}, tabs->tabRect(page).center());
    else if (auto* list = window.findChild<QListWidget*>("pages"))
        QTest::mouseClick(list->viewport(), Qt::LeftButton, {},
                          list->visualItemRect(list->item(page)).center());
}

void clickOk(DialogWindow& window) {
    click(window, "dialog.ok");
}

void clickCancel(DialogWindow& window) {
    click(window, "dialog.cancel");
}

} // namespace tessaran::test
