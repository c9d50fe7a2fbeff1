#include "base/numbers.h"
#include "base/text.h"
#include "host/dialog_model.h"
#include "host/host.h"

#include <fmt/format.h>

#include <limits>

namespace tessaran::host {
namespace {

base::Result<void> storeInteger(const std::string& text, int& member, int lowest, int highest) {
    const std::optional<long long> value = base::wholeInt(text);
    const bool isNumber = value || base::wholeDouble(text);
    if (!isNumber)
        return base::formatError("Please enter a number.");
    if (!value || *value < lowest || *value > highest)
        return base::rangeError(
            fmt::format("Please enter an integer between {} and {}.", lowest, highest));
    member = static_cast<int>(*value);
    return {};
}

base::Result<void> storeReal(const std::string& text, double& member, double lowest,
                             double highest) {
    const std::optional<double> value = base::wholeDouble(text);
    if (!value || *value != *value)
        return base::formatError("Please enter a number.");
    if (*value < lowest || *value > highest)
        return base::rangeError(fmt::format("Please enter a number between {} and {}.",
                                            base::general(lowest), base::general(highest)));
    member = *value;
    return {};
}

int indexOf(const std::vector<std::string>& names, const std::string& name) {
    for (std::size_t i = 0; i < names.size(); ++i)
        if (names[i] == name)
            return static_cast<int>(i);
    return -1;
}

} // namespace

ControlBuilder& ControlBuilder::group(std::string title) {
    control_.group = std::move(title);
    return *this;
}

ControlBuilder& ControlBuilder::tip(std::string text) {
    control_.toolTip = std::move(text);
    return *this;
}

ControlBuilder& ControlBuilder::unit(std::function<std::string()> text) {
    control_.unit = std::move(text);
    return *this;
}

ControlBuilder& ControlBuilder::enabledWhen(std::function<bool()> condition) {
    control_.enabled = std::move(condition);
    return *this;
}

ControlBuilder&
ControlBuilder::onChange(std::function<void(DialogSession&, const std::string&)> action) {
    control_.changed = std::move(action);
    return *this;
}

ControlBuilder& ControlBuilder::onChange(std::function<void(DialogSession&)> action) {
    control_.changed = [action = std::move(action)](DialogSession& session, const std::string&) {
        action(session);
    };
    return *this;
}

ControlBuilder& ControlBuilder::onOpen(std::function<void(DialogSession&, int)> action) {
    control_.opened = std::move(action);
    return *this;
}

ControlBuilder& ControlBuilder::takesNewNames() {
    control_.takesNewNames = true;
    return *this;
}

ControlBuilder& ControlBuilder::manySelected() {
    control_.manySelected = true;
    return *this;
}

ControlBuilder& ControlBuilder::columnShares(std::vector<int> shares) {
    control_.columnShares = std::move(shares);
    return *this;
}

ControlBuilder& ControlBuilder::unchecked() {
    control_.checkedWithOthers = false;
    return *this;
}

ControlBuilder& ControlBuilder::beside() {
    control_.beside = true;
    return *this;
}

void PageBuilder::group(std::string title) {
    group_ = std::move(title);
}

ControlBuilder PageBuilder::add(Control control) {
    if (control.group.empty())
        control.group = group_;
    controls_.push_back(std::make_unique<Control>(std::move(control)));
    return ControlBuilder(*controls_.back());
}

ControlBuilder PageBuilder::custom(Control control) {
    return add(std::move(control));
}

ControlBuilder PageBuilder::text(std::string label, std::string& member) {
    Control c;
    c.label = std::move(label);
    c.shown = [&member] { return member; };
    c.store = [&member](const std::string& text) -> base::Result<void> {
        member = text;
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::integer(std::string label, int& member) {
    return integer(std::move(label), member, std::numeric_limits<int>::min(),
                   std::numeric_limits<int>::max());
}

ControlBuilder PageBuilder::integer(std::string label, int& member, int lowest, int highest) {
    Control c;
    c.label = std::move(label);
    c.shown = [&member] { return std::to_string(member); };
    c.store = [&member, lowest, highest](const std::string& text) {
        return storeInteger(text, member, lowest, highest);
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::real(std::string label, double& member) {
    return real(std::move(label), member, std::numeric_limits<double>::lowest(),
                std::numeric_limits<double>::max());
}

ControlBuilder PageBuilder::real(std::string label, double& member, double lowest, double highest) {
    Control c;
    c.label = std::move(label);
    c.shown = [&member] { return base::shortest(member); };
    c.store = [&member, lowest, highest](const std::string& text) {
        return storeReal(text, member, lowest, highest);
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::information(std::string label, std::function<std::string()> shown) {
    Control c;
    c.kind = ControlKind::information;
    c.label = std::move(label);
    c.shown = std::move(shown);
    return add(std::move(c));
}

ControlBuilder PageBuilder::check(std::string label, bool& member) {
    Control c;
    c.kind = ControlKind::check;
    c.label = std::move(label);
    c.shown = [&member] { return std::string(member ? "1" : "0"); };
    c.store = [&member](const std::string& text) -> base::Result<void> {
        member = text == "1";
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::radio(std::string label, std::vector<std::string> options,
                                  int& member) {
    Control c;
    c.kind = ControlKind::radio;
    c.label = std::move(label);
    c.options = std::move(options);
    c.shown = [&member] { return std::to_string(member); };
    c.store = [&member](const std::string& text) -> base::Result<void> {
        member = base::leadingInt(text);
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::dropList(std::string label, Choices choices, std::string& member) {
    Control c;
    c.kind = ControlKind::dropList;
    c.label = std::move(label);
    c.choices = std::move(choices);
    c.shown = [&member] { return member; };
    c.store = [&member](const std::string& text) -> base::Result<void> {
        member = text;
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::dropList(std::string label, const std::vector<std::string>& choices,
                                     int& member) {
    Control c;
    c.kind = ControlKind::dropList;
    c.label = std::move(label);
    c.choices = [choices] { return choices; };
    c.shown = [&member, choices] {
        const bool chosen = member >= 0 && member < static_cast<int>(choices.size());
        return chosen ? choices[static_cast<std::size_t>(member)] : std::string{};
    };
    c.store = [&member, choices](const std::string& text) -> base::Result<void> {
        member = indexOf(choices, text);
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::names(std::string label, std::vector<std::string>& member) {
    Control c;
    c.kind = ControlKind::names;
    c.label = std::move(label);
    c.shown = [&member] { return base::joined(member, ","); };
    c.store = [&member](const std::string& text) -> base::Result<void> {
        member = base::nameList(text);
        return {};
    };
    return add(std::move(c));
}

ControlBuilder PageBuilder::list(std::string label, std::vector<std::string> columns,
                                 std::function<std::vector<Control::Row>()> rows,
                                 std::vector<int>& selection) {
    Control c;
    c.kind = ControlKind::list;
    c.label = std::move(label);
    c.columns = std::move(columns);
    c.rows = std::move(rows);
    c.selection = &selection;
    return add(std::move(c));
}

ControlBuilder PageBuilder::button(std::string label, Action action) {
    Control c;
    c.kind = ControlKind::button;
    c.label = std::move(label);
    c.pressed = std::move(action);
    return add(std::move(c));
}

ControlBuilder PageBuilder::link(std::string label, const std::string& target) {
    Control c;
    c.kind = ControlKind::link;
    c.label = std::move(label);
    c.shown = [target] { return target; };
    c.pressed = [target](DialogSession& session) { session.host().openLink(target); };
    return add(std::move(c));
}

} // namespace tessaran::host
