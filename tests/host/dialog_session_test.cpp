#include "host/dialog_model.h"
#include "support/script_run.h"

#include <fmt/format.h>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

using namespace tessaran;
using namespace tessaran::host;
using testing::ElementsAre;
using testing::HasSubstr;
using Purpose = DialogSession::Purpose;

namespace {

// A page made of a function; what happens to it is noted.
class TestPage final : public DialogPage {
  public:
    TestPage(std::string title, std::function<void(PageBuilder&)> describe)
        : title_(std::move(title)), describe_(std::move(describe)) {}

    std::string title() const override { return title_; }
    void describe(PageBuilder& page) override { describe_(page); }
    void opened(DialogSession&) override { notes.push_back("opened"); }
    void activated(DialogSession&) override { notes.push_back("activated"); }
    bool mayLeave(DialogSession& session) override {
        notes.push_back("mayLeave");
        return DialogPage::mayLeave(session);
    }
    bool accept(DialogSession&) override {
        notes.push_back("accept");
        return accepts;
    }
    bool mayClose(DialogSession&, bool accepted) override {
        notes.push_back(accepted ? "mayClose ok" : "mayClose cancel");
        return closes;
    }

    std::vector<std::string> notes;
    bool accepts = true;
    bool closes = true;

  private:
    std::string title_;
    std::function<void(PageBuilder&)> describe_;
};

// What a window would do.
class TestView final : public DialogView {
  public:
    void setVisible(bool visible) override { seen.push_back(visible ? "shown" : "hidden"); }
    void focus(const Control& control) override { seen.push_back("focus " + control.label); }
    std::vector<std::string> seen;
};

class DialogSessionTest : public testing::Test {
  protected:
    Host& host() { return run_.host(); }
    const std::string& messages() { return run_.transcript(); }

  private:
    test::ScriptRun run_;
};

DialogSession::Place place(const DialogSession& session, std::string_view label, Purpose purpose) {
    const auto found = session.find(label, purpose);
    EXPECT_TRUE(found) << label;
    return found ? *found : DialogSession::Place{};
}

} // namespace

TEST(PlainLabel, DropsWhatOnlyTheScreenNeeds) {
    EXPECT_EQ(plainLabel("< &Build Grid"), "build grid");
    EXPECT_EQ(plainLabel("  Output  File (.grd)... : "), "output file (.grd)");
    EXPECT_EQ(plainLabel("Inside\nBoundary:"), "inside boundary");
    EXPECT_EQ(plainLabel("a:b"), "a:b");
    EXPECT_EQ(plainLabel("&"), "");
}

TEST_F(DialogSessionTest, FindsTheWholeTextBeforeAPlaceOrACount) {
    std::string a, b, c, d;
    TestPage front("Front", [&](PageBuilder& page) {
        page.group("Unit1");
        page.text("Thickness", a);
        page.group("Unit2");
        page.text("Thickness", b);
        page.group("");
        page.text("Unit2/Thickness#2", c);
    });
    TestPage back("Back", [&](PageBuilder& page) { page.text("Thickness", d); });
    Dialog dialog("Units", {&front, &back});
    DialogSession session(host(), dialog);
    session.open();
    const auto member = [&](std::string_view label) {
        const auto reached = session.set(place(session, label, Purpose::set), std::string(label));
        EXPECT_TRUE(reached) << label;
    };
    member("Unit1/Thickness");
    EXPECT_EQ(a, "Unit1/Thickness");
    member("thickness#2");
    EXPECT_EQ(b, "thickness#2");
    member("Unit2/Thickness#2");
    EXPECT_EQ(c, "Unit2/Thickness#2");
    member("Thickness#3");
    EXPECT_EQ(d, "Thickness#3");
    // The page in front is now the second: its control comes first.
    member("Thickness");
    EXPECT_EQ(d, "Thickness");
    EXPECT_EQ(a, "Unit1/Thickness");
    EXPECT_FALSE(session.find("Thickness#5", Purpose::set));
    EXPECT_FALSE(session.find("Unit3/Thickness", Purpose::set));
    EXPECT_FALSE(session.find("Thickness", Purpose::press));
}

TEST(WrittenLabel, IsWhatPeopleType) {
    EXPECT_EQ(writtenLabel("< &Build Grid"), "Build Grid");
    EXPECT_EQ(writtenLabel("<Pick Layer"), "Pick Layer");
    EXPECT_EQ(writtenLabel("Rotation to X axis (degree)  :"), "Rotation to X axis (degree)");
    EXPECT_EQ(writtenLabel("Save As ..."), "Save As ...");
    EXPECT_EQ(writtenLabel("Output File <.grd>:"), "Output File <.grd>");
    EXPECT_EQ(writtenLabel(""), "");
}

TEST_F(DialogSessionTest, LabelsLeadBackToTheirControls) {
    std::string text;
    int choice = 0;
    const auto nothing = [](DialogSession&) {};
    TestPage front("Front", [&](PageBuilder& page) {
        page.text("Width:", text);
        page.button("< Size", nothing);
        page.button("< Size", nothing);
        for (const char* unit : {"Unit1", "Unit2"}) {
            page.group(unit);
            page.text("Width", text);
            page.radio("Type", {"&Core", "Seen"}, choice);
        }
        page.group("");
        page.text("Unit1/Width#2", text);
        page.text("A = B", text);
    });
    TestPage back("Back", [&](PageBuilder& page) { page.text("Width", text); });
    Dialog dialog("Units", {&front, &back});
    DialogSession session(host(), dialog);
    session.open();
    const auto& controls = session.pages()[0].controls;
    const auto label = [&](std::size_t k, Purpose purpose, int option = -1) {
        const DialogSession::Place meant{0, controls[k].get(), option};
        const std::string found = session.labelOf(meant, purpose);
        const auto again = session.find(found, purpose);
        EXPECT_TRUE(again && again->control == meant.control && again->option == option) << found;
        return found;
    };
    EXPECT_EQ(label(0, Purpose::set), "Width");
    EXPECT_EQ(label(1, Purpose::press), "Size");
    EXPECT_EQ(label(2, Purpose::press), "Size#2");
    EXPECT_EQ(label(3, Purpose::set), "Unit1/Width");
    EXPECT_EQ(label(4, Purpose::choose, 0), "Unit1/Core");
    EXPECT_EQ(label(5, Purpose::set), "Unit2/Width");
    EXPECT_EQ(label(6, Purpose::choose, 1), "Unit2/Seen");
    EXPECT_EQ(label(7, Purpose::set), "Unit1/Width#2");
    EXPECT_EQ(label(8, Purpose::set), "A = B");
    EXPECT_EQ(session.labelOf({1, session.pages()[1].controls[0].get(), -1}, Purpose::set),
              "Back/Width");
}

TEST_F(DialogSessionTest, ChoosesRadioButtonsByTheirGroupWhereTheyShareAText) {
    int first = -1;
    int second = -1;
    TestPage page("", [&](PageBuilder& builder) {
        builder.radio("Roof", {"&Yes", "No"}, first);
        builder.radio("Floor", {"Yes", "No"}, second);
    });
    Dialog dialog("Radios", {&page});
    DialogSession session(host(), dialog);
    session.open();
    EXPECT_TRUE(session.choose(place(session, "Floor/yes", Purpose::choose)));
    EXPECT_TRUE(session.choose(place(session, "no", Purpose::choose)));
    EXPECT_EQ(first, 1);
    EXPECT_EQ(second, 0);
}

TEST_F(DialogSessionTest, KeepsTheRefusedTextAndGoesToItsField) {
    int count = 5;
    double width = 2.0;
    TestPage first("First", [&](PageBuilder& page) {
        page.real("Width", width, 0.5, 10.0);
        page.integer("Count", count, 1, 9);
    });
    TestPage second("Second", [](PageBuilder&) {});
    Dialog dialog("Checks", {&first, &second});
    DialogSession session(host(), dialog);
    TestView view;
    session.setView(&view);
    session.open();
    const auto field = place(session, "Count", Purpose::set);
    EXPECT_TRUE(session.set(field, "12"));
    EXPECT_EQ(count, 5) << "a refused text never reaches the member";
    EXPECT_EQ(session.text(*field.control), "12");
    EXPECT_FALSE(session.bringToFront(1));
    EXPECT_EQ(session.frontPage(), 0);
    EXPECT_EQ(session.focused(), field.control);
    EXPECT_THAT(view.seen, ElementsAre("focus Count"));
    EXPECT_EQ(messages(), "(message) Please enter an integer between 1 and 9.");
    EXPECT_TRUE(session.set(field, " 7 "));
    EXPECT_EQ(count, 7);
    EXPECT_EQ(session.text(*field.control), "7");
    EXPECT_TRUE(session.bringToFront(1));
    EXPECT_EQ(session.frontPage(), 1);
}

TEST_F(DialogSessionTest, DoesNotCheckDisabledFields) {
    int count = 0; // out of range
    bool used = false;
    TestPage page("", [&](PageBuilder& builder) {
        builder.check("Use", used);
        builder.integer("Count", count, 1, 9).enabledWhen([&] { return used; });
        builder.integer("Own", count, 1, 9).unchecked();
    });
    Dialog dialog("Disabled", {&page});
    DialogSession session(host(), dialog);
    session.open();
    EXPECT_TRUE(session.validate(page));
    EXPECT_FALSE(session.set(place(session, "Count", Purpose::set), "3"));
    EXPECT_TRUE(session.check(place(session, "Use", Purpose::check), true));
    EXPECT_FALSE(session.validate(page)) << "a member out of range is told, typed or not";
    EXPECT_TRUE(session.set(place(session, "Count", Purpose::set), "3"));
    EXPECT_TRUE(session.validate(page));
}

TEST_F(DialogSessionTest, CallsPagesInTheirOrder) {
    TestPage first("First", [](PageBuilder&) {});
    TestPage second("Second", [](PageBuilder&) {});
    Dialog dialog("Order", {&first, &second});
    DialogSession session(host(), dialog);
    session.open();
    EXPECT_THAT(first.notes, ElementsAre("opened", "activated"));
    EXPECT_THAT(second.notes, ElementsAre("opened"));
    EXPECT_TRUE(session.bringToFront(1));
    EXPECT_TRUE(session.bringToFront(1));
    EXPECT_THAT(second.notes, ElementsAre("opened", "activated"));
    first.accepts = false;
    session.ok();
    EXPECT_FALSE(session.ended());
    EXPECT_EQ(session.frontPage(), 0) << "the page that refused comes to the front";
    EXPECT_THAT(second.notes, ElementsAre("opened", "activated", "mayLeave"))
        << "pages after it are not asked";
    first.accepts = true;
    second.closes = false;
    session.ok();
    EXPECT_FALSE(session.ended());
    session.cancel();
    EXPECT_FALSE(session.ended());
    EXPECT_EQ(second.notes.back(), "mayClose cancel");
    second.closes = true;
    session.ok();
    EXPECT_TRUE(session.ended());
    EXPECT_TRUE(session.accepted());
}

TEST_F(DialogSessionTest, TellsChangesOnceAndOnlyAccepted) {
    std::string text = "a";
    int count = 1;
    std::vector<std::string> changes;
    TestPage page("", [&](PageBuilder& builder) {
        builder.text("Text", text).onChange([&](DialogSession&, const std::string& before) {
            changes.push_back(before + ">" + text);
        });
        builder.integer("Count", count, 0, 9).onChange([&](DialogSession&) {
            changes.push_back(fmt::format("count {}", count));
        });
    });
    Dialog dialog("Changes", {&page});
    DialogSession session(host(), dialog);
    session.open();
    const auto set = [&](std::string_view label, const std::string& value) {
        EXPECT_TRUE(session.set(place(session, label, Purpose::set), value));
    };
    set("Text", "a");
    set("Text", "b");
    set("Count", "x");
    set("Count", "4");
    EXPECT_THAT(changes, ElementsAre("a>b", "count 4"));
}

TEST_F(DialogSessionTest, SelectsRowsAscendingAndOnlyThoseThereAre) {
    std::vector<int> many;
    std::vector<int> one;
    const auto rows = [] { return std::vector<Control::Row>{{"a"}, {"b"}, {"c"}}; };
    TestPage page("", [&](PageBuilder& builder) {
        builder.list("Many", {"Name"}, rows, many).manySelected();
        builder.list("One", {"Name"}, rows, one);
    });
    Dialog dialog("Lists", {&page});
    DialogSession session(host(), dialog);
    session.open();
    EXPECT_TRUE(session.select(place(session, "Many", Purpose::select), {2, 0, 2}));
    EXPECT_THAT(many, ElementsAre(0, 2));
    EXPECT_FALSE(session.select(place(session, "Many", Purpose::select), {3}));
    EXPECT_FALSE(session.select(place(session, "One", Purpose::select), {0, 1}));
    EXPECT_TRUE(session.openRow(place(session, "One", Purpose::select), 1));
    EXPECT_THAT(one, ElementsAre(1));
}

TEST_F(DialogSessionTest, HidesOnceHoweverOftenAsked) {
    TestPage page("", [](PageBuilder&) {});
    Dialog dialog("Hidden", {&page});
    DialogSession session(host(), dialog);
    TestView view;
    session.setView(&view);
    {
        const DialogSession::Hidden outer(session);
        const DialogSession::Hidden inner(session);
        EXPECT_FALSE(session.visible());
    }
    EXPECT_TRUE(session.visible());
    EXPECT_THAT(view.seen, ElementsAre("hidden", "shown"));
}

TEST_F(DialogSessionTest, BoundTypesReadAndWriteTheirMembers) {
    int whole = 3;
    double real = 0.1;
    int choice = 1;
    std::vector<std::string> names{"A", "B"};
    std::string free = "old";
    TestPage page("", [&](PageBuilder& builder) {
        builder.integer("Whole", whole);
        builder.real("Real", real);
        builder.dropList("Choice", {"feet", "meters"}, choice);
        builder.names("Names", names);
        builder
            .dropList(
                "Free", [] { return std::vector<std::string>{"ROOF"}; }, free)
            .takesNewNames();
    });
    Dialog dialog("Types", {&page});
    DialogSession session(host(), dialog);
    session.open();
    const auto set = [&](std::string_view label, const std::string& value) {
        return session.set(place(session, label, Purpose::set), value).ok();
    };
    const auto shown = [&](std::string_view label) {
        return session.text(*place(session, label, Purpose::set).control);
    };
    EXPECT_EQ(shown("Real"), "0.1");
    EXPECT_EQ(shown("Choice"), "meters");
    EXPECT_EQ(shown("Names"), "A,B");
    EXPECT_TRUE(set("Whole", "-2147483648"));
    EXPECT_EQ(whole, -2147483647 - 1);
    EXPECT_TRUE(set("Whole", "2147483648"));
    EXPECT_EQ(whole, -2147483647 - 1) << "beyond the range: kept in the field";
    EXPECT_TRUE(set("Real", "nan"));
    EXPECT_TRUE(set("Real", "1,5"));
    EXPECT_EQ(real, 0.1);
    EXPECT_FALSE(set("Choice", "miles"));
    EXPECT_TRUE(set("Choice", "Feet"));
    EXPECT_EQ(choice, 0);
    EXPECT_TRUE(set("Names", " C ,, D"));
    EXPECT_THAT(names, ElementsAre("C", "D"));
    EXPECT_TRUE(set("Free", "roof"));
    EXPECT_EQ(free, "ROOF") << "a choice there is keeps its own capitals";
    EXPECT_TRUE(set("Free", "new"));
    EXPECT_EQ(free, "new");
}
