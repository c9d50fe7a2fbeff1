#include "console/dialog_lines.h"
#include "console/directives.h"
#include "support/recording_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tessaran;
using namespace tessaran::console;
using host::Control;
using host::DialogSession;
using host::PageBuilder;
using testing::ElementsAre;

namespace {

class ListPage final : public host::DialogPage {
  public:
    std::string title() const override { return "&Lists:"; }
    void describe(PageBuilder& page) override {
        page.list(
                "Entries:", {"Name"}, [this] { return rows; }, selected)
            .manySelected()
            .onOpen([this](DialogSession&, int row) { opened = row; });
        page.text("Equal = Sign", text);
        page.check("Black/White", flag);
        page.radio("Kind", {"One", "Two"}, kind);
        page.button("< &Build...", [this](DialogSession&) { ++pressed; });
    }

    std::vector<Control::Row> rows;
    std::vector<int> selected;
    int opened = -1;
    std::string text;
    bool flag = false;
    int kind = 0;
    int pressed = 0;
};

class DirectivesTest : public testing::Test {
  protected:
    DirectivesTest() : dialog_("Test", {&page}), session(host_, dialog_) {
        page.rows = {{"pond"}, {"a,b"}, {"twin"}, {"Twin"}, {"#1"}, {""}, {"*"}};
        session.open();
    }
    Place place(std::size_t control, int option = -1) const {
        return {0, session.pages()[0].controls[control].get(), option};
    }
    // What the written line does when it is read again.
    void readBack(const std::string& line) {
        const auto used = carryOut(parseLine(line, 1), session);
        EXPECT_TRUE(used) << line << ": " << used.error().text;
    }

    ListPage page;

  private:
    test::RecordingHost host_;
    host::Dialog dialog_;

  protected:
    DialogSession session;
};

} // namespace

TEST_F(DirectivesTest, NameRowsSoThatTheSameOnesAreFoundAgain) {
    for (int row = 0; row < static_cast<int>(page.rows.size()); ++row) {
        page.selected.clear();
        page.opened = -1;
        readBack(selectDirective(session, place(0), {row}));
        EXPECT_THAT(page.selected, ElementsAre(row));
        readBack(openDirective(session, place(0), row));
        EXPECT_EQ(page.opened, row);
    }
    readBack(selectDirective(session, place(0), {0, 2, 5}));
    EXPECT_THAT(page.selected, ElementsAre(0, 2, 5));
    readBack(selectDirective(session, place(0), {0, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(page.selected.size(), page.rows.size());
    page.rows.erase(page.rows.begin() + 5); // what has no name stands for no row
    readBack(selectDirective(session, place(0), {}));
    EXPECT_TRUE(page.selected.empty());
    EXPECT_EQ(selectDirective(session, place(0), {0}), ":select Entries = pond");
    EXPECT_EQ(selectDirective(session, place(0), {1}), ":select Entries = #2");
}

TEST_F(DirectivesTest, DoAgainWhatWasDone) {
    EXPECT_EQ(setDirective(session, place(1), "x = 2"), ":set Equal = Sign = x = 2");
    readBack(setDirective(session, place(1), "x = 2"));
    EXPECT_EQ(page.text, "x = 2");
    readBack(setDirective(session, place(1), ""));
    EXPECT_EQ(page.text, "");
    readBack(checkDirective(session, place(2), true));
    EXPECT_TRUE(page.flag);
    readBack(checkDirective(session, place(2), false));
    EXPECT_FALSE(page.flag);
    readBack(chooseDirective(session, place(3, 1)));
    EXPECT_EQ(page.kind, 1);
    EXPECT_EQ(pressDirective(session, place(4)), ":press Build...");
    readBack(pressDirective(session, place(4)));
    EXPECT_EQ(page.pressed, 1);
    readBack(pageDirective(session, 0));
    EXPECT_EQ(answerDirective(host::Answer::no), ":answer no");
    EXPECT_EQ(fileDirective("a b.grd"), ":file a b.grd");
    EXPECT_EQ(fileDirective(""), ":file");
}
