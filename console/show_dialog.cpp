#include "console/show_dialog.h"

#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {
namespace {

using host::Control;
using host::ControlKind;
using host::DialogSession;

// The label as it is shown, without the mnemonic's mark and the colon before a value.
std::string shownLabel(const std::string& label) {
    std::string out;
    std::copy_if(label.begin(), label.end(), std::back_inserter(out),
                 [](char c) { return c != '&'; });
    std::string_view text = base::trimmed(out);
    while (text.ends_with(':'))
        text = base::trimmed(text.substr(0, text.size() - 1));
    return std::string(text);
}

class Printer {
  public:
    explicit Printer(const DialogSession& session) : session_(session) {}

    std::vector<std::string> print() {
        put(0, session_.dialog().title());
        const auto& pages = session_.pages();
        for (std::size_t i = 0; i < pages.size(); ++i)
            page(pages[i], static_cast<int>(i) == session_.frontPage());
        buttons();
        return std::move(lines_);
    }

  private:
    void put(int depth, const std::string& text) {
        std::string line = std::string(static_cast<std::size_t>(depth) * 2, ' ') + text;
        line.erase(line.find_last_not_of(' ') + 1);
        lines_.push_back(std::move(line));
    }

    void page(const DialogSession::PageControls& page, bool inFront) {
        if (!page.page->title().empty())
            put(1, fmt::format("page {}{}", page.page->title(), inFront ? " (in front)" : ""));
        std::string group;
        for (const auto& control : page.controls) {
            if (control->group != group && !control->group.empty())
                put(2, "group " + shownLabel(control->group));
            group = control->group;
            show(*control, group.empty() ? 2 : 3);
        }
    }

    void show(const Control& control, int depth) {
        const std::string label = shownLabel(host::labelWithUnit(control));
        const std::string tail = session_.isEnabled(control) ? "" : " (disabled)";
        const std::string text = session_.text(control);
        switch (control.kind) {
        case ControlKind::check:
            return put(depth, fmt::format("[{}] {}{}", text == "1" ? "x" : " ", label, tail));
        case ControlKind::radio:
            return radio(control, depth, label, tail);
        case ControlKind::list:
            return list(control, depth, label, tail);
        case ControlKind::button:
            return put(depth, fmt::format("[ {} ]{}", label, tail));
        case ControlKind::link:
            return put(depth, fmt::format("link {} -> {}{}", label, text, tail));
        case ControlKind::information:
            return put(depth, label.empty() ? text : fmt::format("{}: {}", label, text));
        default:
            return put(depth, fmt::format("{} = {}{}", label, text, tail));
        }
    }

    void radio(const Control& control, int depth, const std::string& label,
               const std::string& tail) {
        if (!label.empty())
            put(depth, label + tail);
        const std::string chosen = session_.text(control);
        for (std::size_t k = 0; k < control.options.size(); ++k)
            put(depth + (label.empty() ? 0 : 1),
                fmt::format("({}) {}{}", chosen == std::to_string(k) ? "*" : " ",
                            shownLabel(control.options[k]), tail));
    }

    void list(const Control& control, int depth, const std::string& label,
              const std::string& tail) {
        put(depth, fmt::format("list {}{}", label, tail));
        if (!control.columns.empty())
            put(depth + 1, "    " + base::joined(control.columns, " | "));
        const std::vector<int>& selected = *control.selection;
        const std::vector<Control::Row> rows = control.rows();
        for (std::size_t k = 0; k < rows.size(); ++k) {
            const bool marked =
                std::find(selected.begin(), selected.end(), static_cast<int>(k)) != selected.end();
            put(depth + 1,
                fmt::format("{} #{} {}", marked ? ">" : " ", k + 1, base::joined(rows[k], " | ")));
        }
    }

    void buttons() {
        for (const std::string& label :
             {session_.dialog().okLabel(session_), session_.dialog().cancelLabel(session_)})
            if (!label.empty())
                put(1, fmt::format("[ {} ]", shownLabel(label)));
    }

    const DialogSession& session_;
    std::vector<std::string> lines_;
};

} // namespace

std::vector<std::string> showDialog(const DialogSession& session) {
    return Printer(session).print();
}

} // namespace tessaran::console
