#include "console/rehearsal.h"

#include "base/file.h"
#include "base/numbers.h"
#include "console/answers.h"
#include "host/dialog_model.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <numbers>
#include <stdexcept>

namespace tessaran::test {
namespace {

using console::ConsoleHost;
using host::Buttons;
using host::Control;
using host::DialogSession;
using host::PromptStatus;
using host::Question;

template <class T, class Show>
std::string shown(const host::PromptResult<T>& result, const Show& show) {
    switch (result.status) {
    case PromptStatus::ok:
        return show(result.value);
    case PromptStatus::none:
        return "Enter";
    case PromptStatus::keyword:
        return "keyword " + result.keyword;
    case PromptStatus::missed:
        return "missed";
    default:
        return "Escape";
    }
}

std::string text(const host::Point3& p) {
    return fmt::format("({} {} {})", base::general(p.x), base::general(p.y), base::general(p.z));
}

void ask(ConsoleHost& host) {
    host::Prompts& prompts = host.prompts();
    const auto print = [&](const std::string& result) { host.print("\n= " + result); };
    const host::Point3 base{100.0, 0.0, 0.0};
    print(shown(prompts.getPoint({.message = "\nPoint [All/Far,F]:", .keywords = "All Far,F"}),
                [](const auto& p) { return text(p); }));
    print(shown(prompts.getCorner({.message = "\nCorner:", .keywords = {}, .base = base}),
                [](const auto& p) { return text(p); }));
    print(shown(prompts.getDistance({.message = "\nDistance:"}), base::general));
    print(shown(prompts.getDistance({.message = "\nHeight:", .base = base}), base::general));
    print(shown(prompts.getOrientation({.message = "\nAngle:"}), [](double radians) {
        return base::general(radians * 180.0 / std::numbers::pi) + " degrees";
    }));
    print(shown(prompts.getReal({.message = "\nReal:"}), base::general));
    print(shown(
        prompts.getInteger({.message = "\nInteger:", .allowZero = false, .allowNegative = false}),
        [](int i) { return std::to_string(i); }));
    print(shown(prompts.getString("\nWord:", false),
                [](const std::string& s) { return "<" + s + ">"; }));
    print(shown(prompts.getString("\nText:", true),
                [](const std::string& s) { return "<" + s + ">"; }));
    print(shown(prompts.getKeyword("\nSide [Left/Right/LOwer,LO]:", "Left Right LOwer"),
                [](const std::string& s) { return s; }));
    print(shown(prompts.pickEntity({.message = "\nPick:"}), [](const host::Pick& pick) {
        return console::handleText(pick.entity) + " at " + text(pick.at);
    }));
}

void select(ConsoleHost& host) {
    host::SelectionPrompt prompt;
    prompt.keywords = "Layer";
    const auto selection = host.prompts().getSelection(prompt);
    host.print("\n= " + shown(selection, [](const std::vector<host::EntityId>& ids) {
                   std::string out;
                   for (const host::EntityId id : ids)
                       out += console::handleText(id) + " ";
                   return out;
               }));
}

void askQuestions(ConsoleHost& host) {
    using Stake = Question::Stake;
    for (const Stake stake : {Stake::ordinary, Stake::guarded, Stake::confirmsSave})
        for (const Buttons buttons : {Buttons::okCancel, Buttons::yesNo, Buttons::yesNoCancel})
            host.dialogs().ask(
                {.text = fmt::format("Stake {}, buttons {}?", static_cast<int>(stake),
                                     static_cast<int>(buttons)),
                 .buttons = buttons,
                 .stake = stake});
}

void chooseFiles(ConsoleHost& host) {
    host.dialogs().chooseFile({.mode = host::FileRequest::Mode::open, .extension = "txt"});
    const auto path = host.dialogs().chooseFile({.mode = host::FileRequest::Mode::save,
                                                 .title = "Save Text",
                                                 .extension = "txt",
                                                 .proposed = "out.txt"});
    if (path)
        static_cast<void>(base::writeFile(*path, "written"));
}

// Every kind of control, with a check across fields and a button that opens a dialog of its own.
class First final : public host::DialogPage {
  public:
    std::string title() const override { return "First"; }
    void describe(host::PageBuilder& page) override {
        page.integer("&Count of Cells:", count_, 1, 100);
        page.text("Title", text_).onChange([](DialogSession& session, const std::string& before) {
            session.host().print("\ntitle was <" + before + ">");
        });
        page.check("&Use Depth", useDepth_);
        page.real("Depth:", depth_).enabledWhen([this] { return useDepth_; });
        page.radio("Algorithm", {"Middle Point", "Area &Based"}, algorithm_);
        page.group("Left");
        page.text("Value", left_);
        page.group("Right");
        page.text("Value", right_);
        page.group("");
        page.text("a = b", equation_);
        page.button("< &Build Grid", [](DialogSession& session) {
            const DialogSession::Hidden hidden(session);
            session.host().prompts().getPoint({.message = "\nOrigin:", .keywords = {}});
        });
        page.button("Details...", [this](DialogSession& session) { details(session); });
    }

  private:
    class Inner final : public host::DialogPage {
      public:
        void describe(host::PageBuilder& page) override { page.text("Value", value); }
        std::string value;
    };

    void details(DialogSession& session) {
        Inner inner;
        host::Dialog dialog("Details", {&inner});
        if (host::runDialog(session.host(), dialog))
            text_ = inner.value;
    }

    int count_ = 10;
    std::string text_ = "old";
    bool useDepth_ = false;
    double depth_ = 2.5;
    int algorithm_ = -1;
    std::string left_ = "l";
    std::string right_ = "r";
    std::string equation_;
};

class Second final : public host::DialogPage {
  public:
    std::string title() const override { return "Second"; }
    void describe(host::PageBuilder& page) override {
        page.dropList(
                "Layer to Draw",
                [] {
                    return std::vector<std::string>{"ROOF", "FLOOR"};
                },
                layer_)
            .takesNewNames();
        page.dropList("Units", {"feet", "meters"}, units_);
        page.names("Layers", layers_);
        page.list(
                "Entries", {"Name", "Weight"},
                [] {
                    return std::vector<Control::Row>{
                        {"Roof", "1"}, {"Floor, lower", "2"}, {"roof", "3"}};
                },
                selected_)
            .manySelected()
            .onOpen([](DialogSession& session, int row) {
                session.host().print(fmt::format("\nopened {}", row));
            });
        page.information("Status",
                         [this] { return fmt::format("rows {}", fmt::join(selected_, " ")); });
        page.text("Value", value_);
        page.link("Web page", "https://example.org/");
    }
    bool mayClose(DialogSession& session, bool accepted) override {
        if (accepted || layers_.empty())
            return true;
        return session.host().dialogs().ask({.text = "Discard the layers?",
                                             .buttons = Buttons::yesNo,
                                             .stake = Question::Stake::guarded}) ==
               host::Answer::yes;
    }

  private:
    std::string layer_ = "ROOF";
    int units_ = 0;
    std::vector<std::string> layers_;
    std::vector<int> selected_;
    std::string value_ = "second";
};

void showPages(ConsoleHost& host) {
    First first;
    Second second;
    host::Dialog dialog("Pages", {&first, &second});
    host::runDialog(host, dialog);
}

void stubborn(ConsoleHost& host) {
    while (host.prompts().getPoint({.message = "\nNo Enter here:", .keywords = {}}).status ==
           PromptStatus::none)
        host.print("\nA point is needed.");
    host.prompts().getPoint({.message = "\nEnter is fine:", .keywords = {}});
}

void loop(ConsoleHost& host) {
    for (int k = 0;; ++k)
        if (host.prompts()
                .getPoint({.message = k % 2 == 0 ? "\nTick:" : "\nTock:", .keywords = {}})
                .status == PromptStatus::cancel)
            return;
}

void work(ConsoleHost& host) {
    for (int k = 1; k <= 10; ++k) {
        if (host.meter().cancelled())
            return host.print(fmt::format("\nstopped at {}", k));
    }
    host.print("\nworked to the end");
}

void throws(ConsoleHost& host) {
    host::Entity entity;
    entity.geometry = host::PointMark{};
    static_cast<void>(host.drawing().add(std::move(entity)));
    throw std::runtime_error("made to fail");
}

} // namespace

void addRehearsalCommands(ConsoleHost& host) {
    const auto add = [&](const std::string& name, void (*run)(ConsoleHost&)) {
        host.state().commands.add(
            console::Command{"TEST", name, name, [&host, run] { run(host); }, true, {}});
    };
    add("ASK", ask);
    add("SELECT", select);
    add("QUESTIONS", askQuestions);
    add("FILES", chooseFiles);
    add("PAGES", showPages);
    add("STUBBORN", stubborn);
    add("LOOP", loop);
    add("WORK", work);
    add("THROWS", throws);
}

} // namespace tessaran::test
