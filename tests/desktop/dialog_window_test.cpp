// What the user does in a dialog window, and what the dialog does on the screen.

#include "desktop/dialog_bench.h"
#include "desktop/dialog_window.h"
#include "desktop/file_dialogs.h"
#include "desktop/message_boxes.h"
#include "desktop/robot.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QRadioButton>
#include <QTreeWidget>
#include <QtTest/QTest>

using namespace tessaran;
using namespace tessaran::test;
using desktop::DialogWindow;
using host::DialogSession;
using host::PageBuilder;
using testing::ElementsAre;
using testing::HasSubstr;

namespace {

// A page made of a function.
class TestPage final : public host::DialogPage {
  public:
    TestPage(std::string title, std::function<void(PageBuilder&)> describe)
        : title_(std::move(title)), describe_(std::move(describe)) {}
    std::string title() const override { return title_; }
    void describe(PageBuilder& page) override { describe_(page); }

  private:
    std::string title_;
    std::function<void(PageBuilder&)> describe_;
};

class DialogWindowTest : public testing::Test {
  protected:
    // Runs a dialog of these pages; whether it ended by OK.
    bool run(std::vector<host::DialogPage*> pages) {
        host::Dialog dialog("Test", std::move(pages));
        return host::runDialog(bench.host(), dialog);
    }

    DialogBench bench;
    Robot robot;
};

QLineEdit* field(DialogWindow& window, const char* label) {
    return window.findChild<QLineEdit*>(label);
}

} // namespace

TEST_F(DialogWindowTest, TakesATypedValueWhenTheFieldIsLeftAndRecordsIt) {
    double width = 10.0;
    int changes = 0;
    TestPage page("", [&](PageBuilder& b) {
        b.real("Cell &Width:", width).onChange([&](DialogSession&) { ++changes; });
        b.button("< &Build", [](DialogSession&) {});
    });
    robot.dialog("Test", [&](DialogWindow& window) {
        beginTyping(window, "Cell Width", "12.50");
        EXPECT_EQ(width, 10.0);
        click(window, "Build");
        EXPECT_EQ(width, 12.5);
        EXPECT_EQ(field(window, "Cell Width")->text(), "12.5"); // as the page shows it
        click(window, "Build");
        clickOk(window);
    });
    EXPECT_TRUE(run({&page}));
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(bench.script(), ":set Cell Width = 12.50\n:press Build\n:press Build\n:ok\n");
}

TEST_F(DialogWindowTest, RefusedFieldKeepsTheDialogAndHasTheFocus) {
    int inside = 5;
    std::string other;
    TestPage page("", [&](PageBuilder& b) {
        b.text("Other", other);
        b.integer("Inside Boundary:", inside, 0, 100);
    });
    robot
        .dialog("Test",
                [&](DialogWindow& window) {
                    type(window, "Inside Boundary", "101");
                    field(window, "Other")->setFocus();
                    EXPECT_EQ(inside, 5);
                    clickOk(window);
                    EXPECT_TRUE(window.isVisible());
                    EXPECT_EQ(window.focusWidget(), field(window, "Inside Boundary"));
                    EXPECT_EQ(field(window, "Inside Boundary")->selectedText(), "101");
                    type(window, "Inside Boundary", "100");
                    clickOk(window);
                })
        .box("integer between 0 and 100", "OK");
    EXPECT_TRUE(run({&page}));
    EXPECT_EQ(inside, 100);
}

TEST_F(DialogWindowTest, APageThatDoesNotLetGoStaysInFront) {
    int cells = 10;
    bool flag = false;
    TestPage front("Cells", [&](PageBuilder& b) { b.integer("Cells", cells, 1, 2000); });
    TestPage back("Flags", [&](PageBuilder& b) { b.check("Flag", flag); });
    robot
        .dialog("Test",
                [&](DialogWindow& window) {
                    type(window, "Cells", "none");
                    turnTo(window, 1);
                    EXPECT_EQ(window.session().frontPage(), 0);
                    EXPECT_TRUE(field(window, "Cells")->isVisible());
                    type(window, "Cells", "20");
                    turnTo(window, 1);
                    EXPECT_TRUE(window.findChild<QCheckBox*>("Flag")->isVisible());
                    click(window, "Flag");
                    clickOk(window);
                })
        .box("Please enter a number.", "OK");
    EXPECT_TRUE(run({&front, &back}));
    EXPECT_TRUE(flag);
    EXPECT_EQ(bench.script(), ":set Cells = none\n:page Flags\n:set Cells = 20\n:page Flags\n"
                              ":check Flag\n:ok\n");
}

TEST_F(DialogWindowTest, EnterIsOkAndEscapeIsCancel) {
    std::string name;
    TestPage page("", [&](PageBuilder& b) { b.text("Name", name); });
    robot.dialog("Test", [&](DialogWindow& window) {
        type(window, "Name", "roof");
        QTest::keyClick(field(window, "Name"), Qt::Key_Return);
    });
    EXPECT_TRUE(run({&page}));
    EXPECT_EQ(name, "roof");
    robot.dialog("Test", [&](DialogWindow& window) {
        type(window, "Name", "floor");
        QTest::keyClick(field(window, "Name"), Qt::Key_Escape);
    });
    EXPECT_FALSE(run({&page}));
    robot.dialog("Test", [](DialogWindow& window) { window.close(); });
    EXPECT_FALSE(run({&page}));
    EXPECT_THAT(bench.script(), HasSubstr(":set Name = floor\n:cancel\n:cancel\n"));
}

TEST_F(DialogWindowTest, MnemonicsPressButtonsAndReachFields) {
    std::string name;
    int pressed = 0;
    TestPage page("", [&](PageBuilder& b) {
        b.text("First", name);
        b.text("Grid &Title:", name);
        b.button("< &Build Grid", [&](DialogSession&) { ++pressed; });
    });
    robot.dialog("Test", [&](DialogWindow& window) {
        EXPECT_EQ(window.findChild<QPushButton*>("Build Grid")->text(), "< &Build Grid");
        QTest::keyClick(&window, Qt::Key_B, Qt::AltModifier);
        QTest::qWait(150); // the press is animated
        QTest::keyClick(&window, Qt::Key_T, Qt::AltModifier);
        EXPECT_EQ(window.focusWidget(), field(window, "Grid Title"));
        clickOk(window);
    });
    run({&page});
    EXPECT_EQ(pressed, 1);
}

TEST_F(DialogWindowTest, EnabledStatesFollowTheModel) {
    int option = 0;
    double threshold = 1.0;
    TestPage page("", [&](PageBuilder& b) {
        b.radio("Options", {"All", "Larger than"}, option);
        b.real("Threshold", threshold).enabledWhen([&] { return option == 1; });
    });
    robot.dialog("Test", [&](DialogWindow& window) {
        EXPECT_FALSE(field(window, "Threshold")->isEnabled());
        click(window, "Larger than");
        EXPECT_TRUE(field(window, "Threshold")->isEnabled());
        clickOk(window);
    });
    run({&page});
    EXPECT_EQ(option, 1);
    EXPECT_THAT(bench.script(), HasSubstr(":choose Larger than\n"));
}

TEST_F(DialogWindowTest, DropListsTakeNewNamesOnlyWhereTheyMay) {
    std::string layer = "0";
    std::string contact = "Weak";
    const auto layers = [] { return std::vector<std::string>{"0", "PILLARS"}; };
    const auto contacts = [] { return std::vector<std::string>{"Strong", "Weak"}; };
    TestPage page("", [&](PageBuilder& b) {
        b.dropList("Layer", layers, layer).takesNewNames();
        b.dropList("Contact", contacts, contact);
    });
    robot.dialog("Test", [&](DialogWindow& window) {
        EXPECT_FALSE(window.findChild<QComboBox*>("Contact")->isEditable());
        choose(window, "Contact", "Strong");
        EXPECT_EQ(contact, "Strong");
        choose(window, "Layer", "PILLARS");
        EXPECT_EQ(layer, "PILLARS");
        type(window, "Layer", "MAP 2");
        clickOk(window);
    });
    run({&page});
    EXPECT_EQ(layer, "MAP 2");
    EXPECT_EQ(bench.script(),
              ":set Contact = Strong\n:set Layer = PILLARS\n:set Layer = MAP 2\n:ok\n");
}

TEST_F(DialogWindowTest, ListsSelectOpenAndDelete) {
    std::vector<std::string> names{"pond", "valley", "a,b"};
    std::vector<int> selected;
    std::vector<int> opened;
    TestPage page("", [&](PageBuilder& b) {
        b.list(
             "Entries", {"Name"},
             [&] {
                 std::vector<host::Control::Row> rows;
                 for (const std::string& name : names)
                     rows.push_back({name});
                 return rows;
             },
             selected)
            .onOpen([&](DialogSession&, int row) { opened.push_back(row); });
        b.button("Remove", [&](DialogSession&) {
            names.erase(names.begin() + selected.front());
            selected.clear();
        });
    });
    robot.dialog("Test", [&](DialogWindow& window) {
        auto* tree = window.findChild<QTreeWidget*>("Entries");
        const auto clickRow = [&](int row) {
            QTest::mouseClick(tree->viewport(), Qt::LeftButton, {},
                              tree->visualItemRect(tree->topLevelItem(row)).center());
        };
        clickRow(1);
        EXPECT_THAT(selected, ElementsAre(1));
        QTest::mouseDClick(tree->viewport(), Qt::LeftButton, {},
                           tree->visualItemRect(tree->topLevelItem(1)).center());
        EXPECT_THAT(opened, ElementsAre(1));
        QTest::keyClick(tree, Qt::Key_Delete);
        EXPECT_THAT(names, ElementsAre("pond", "a,b"));
        EXPECT_EQ(tree->topLevelItemCount(), 2);
        clickRow(1);
        EXPECT_THAT(selected, ElementsAre(1));
        clickOk(window);
    });
    run({&page});
    EXPECT_EQ(bench.script(), ":select Entries = valley\n:open Entries = valley\n"
                              ":press Remove\n:select Entries = #2\n:ok\n");
}

TEST_F(DialogWindowTest, HidesWithAllBelowItWhileTheDrawingIsUsedAndComesBack) {
    std::string name;
    TestPage inner("", [&](PageBuilder& b) {
        b.button("< Pick", [](DialogSession& session) {
            const DialogSession::Hidden hidden(session);
            session.host().prompts().getPoint({.message = "\nPoint:", .keywords = {}});
        });
    });
    TestPage outer("", [&](PageBuilder& b) {
        b.text("Name", name);
        b.button("Details...", [&](DialogSession& session) {
            host::Dialog dialog("Inner", {&inner});
            host::runDialog(session.host(), dialog);
        });
    });
    QPointer<DialogWindow> below;
    QPointer<DialogWindow> above;
    int asked = 0;
    bench.prompts().add("1,2");
    bench.prompts().setAsked([&] {
        ++asked;
        EXPECT_FALSE(below->isVisible());
        EXPECT_FALSE(above->isVisible());
        EXPECT_EQ(QApplication::activeModalWidget(), nullptr); // the drawing can be used
    });
    robot
        .dialog("Test",
                [&](DialogWindow& window) {
                    below = &window;
                    window.move(120, 80);
                    click(window, "Details...");
                    clickOk(window);
                })
        .dialog("Inner", [&](DialogWindow& window) {
            above = &window;
            window.move(300, 200);
            const QPoint place = window.pos();
            click(window, "Pick");
            EXPECT_TRUE(window.isVisible());
            EXPECT_TRUE(below->isVisible());
            EXPECT_EQ(window.pos(), place);
            EXPECT_EQ(below->pos(), QPoint(120, 80));
            clickOk(window);
        });
    EXPECT_TRUE(run({&outer}));
    EXPECT_EQ(asked, 1);
}

TEST_F(DialogWindowTest, ClicksDuringAnActionDoNothing) {
    int presses = 0;
    TestPage page("", [&](PageBuilder& b) {
        b.button("Compute", [&](DialogSession&) {
            if (++presses == 1) {
                auto* window = qobject_cast<DialogWindow*>(QApplication::activeModalWidget());
                click(*window, "Compute");
                clickOk(*window);
                window->close();
                EXPECT_TRUE(window->isVisible());
            }
        });
    });
    robot.dialog("Test", [](DialogWindow& window) {
        click(window, "Compute");
        EXPECT_FALSE(window.session().ended());
        clickCancel(window);
    });
    EXPECT_FALSE(run({&page}));
    EXPECT_EQ(presses, 1);
    EXPECT_EQ(bench.script(), ":press Compute\n:cancel\n");
}

TEST_F(DialogWindowTest, AnActionThatThrowsEndsTheDialogAndTheCommand) {
    TestPage page("", [&](PageBuilder& b) {
        b.button("Fail", [](DialogSession&) { throw std::runtime_error("no memory"); });
    });
    robot.dialog("Test", [](DialogWindow& window) { click(window, "Fail"); });
    EXPECT_THROW(run({&page}), std::runtime_error);
    // The next dialog is none the worse.
    robot.dialog("Test", [](DialogWindow& window) { clickOk(window); });
    EXPECT_TRUE(run({&page}));
}

TEST_F(DialogWindowTest, LinksOpenTheirTarget) {
    TestPage page("", [&](PageBuilder& b) { b.link("Web Page", "https://tessaran.example/"); });
    robot.dialog("Test", [](DialogWindow& window) {
        Q_EMIT window.findChild<QLabel*>("Web Page")->linkActivated("x");
        clickOk(window);
    });
    run({&page});
    EXPECT_THAT(bench.frontEnd().links, ElementsAre("https://tessaran.example/"));
}

TEST_F(DialogWindowTest, QuestionsAnswerByButtonEscapeAndEnter) {
    using host::Answer;
    using host::Buttons;
    using Stake = host::Question::Stake;
    const auto ask = [&](Buttons buttons, Stake stake, const char* button) {
        robot.box("Go on?", button);
        return bench.host().dialogs().ask({"Go on?", buttons, stake});
    };
    EXPECT_EQ(ask(Buttons::yesNo, Stake::ordinary, "Yes"), Answer::yes);
    EXPECT_EQ(ask(Buttons::yesNo, Stake::ordinary, ""), Answer::no);
    EXPECT_EQ(ask(Buttons::okCancel, Stake::ordinary, "OK"), Answer::ok);
    EXPECT_EQ(ask(Buttons::okCancel, Stake::ordinary, ""), Answer::cancel);
    EXPECT_EQ(ask(Buttons::yesNoCancel, Stake::guarded, "No"), Answer::no);
    EXPECT_EQ(ask(Buttons::yesNoCancel, Stake::guarded, ""), Answer::cancel);
    EXPECT_EQ(bench.script(), ":answer yes\n:answer no\n:answer ok\n:answer cancel\n"
                              ":answer no\n:answer cancel\n");
}

TEST_F(DialogWindowTest, FileDialogsCompleteNamesAndAskBeforeReplacing) {
    bench.folder().write("there.grd", "x");
    const std::string there = (bench.folder() / "there.grd").string();
    const std::string fresh = (bench.folder() / "fresh").string();
    host::FileRequest request{.mode = host::FileRequest::Mode::save, .extension = "grd"};
    request.filter = "Select Files (*.grd)|*.grd|All files(*.*)|*.*||";
    request.folder = bench.folder().path().string();
    robot.file(there).box("already exists", "No").file(fresh);
    EXPECT_EQ(bench.host().dialogs().chooseFile(request), fresh + ".grd");
    robot.file("");
    EXPECT_EQ(bench.host().dialogs().chooseFile(request), std::nullopt);
    request.mode = host::FileRequest::Mode::open;
    robot.file(there);
    EXPECT_EQ(bench.host().dialogs().chooseFile(request), there);
    EXPECT_EQ(bench.script(), ":file " + there + "\n:answer no\n:file " + fresh +
                                  ".grd\n:file\n:file " + there + "\n");
}

TEST(FileFilters, AreReadAsTheHostWritesThem) {
    EXPECT_EQ(desktop::fileFilters("Select Files (*.grd)|*.grd|All files(*.*)|*.*||"),
              (QStringList{"Select Files (*.grd)", "All files (*)"}));
    EXPECT_EQ(desktop::fileFilters("Select Files (*.f*;*.F*)|*.f*;*.F*||"),
              (QStringList{"Select Files (*.f* *.F*)"}));
    EXPECT_EQ(desktop::fileFilters(""), QStringList{});
    EXPECT_EQ(desktop::fileFilters("broken"), QStringList{});
}
