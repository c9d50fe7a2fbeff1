#include "console/dialog_lines.h"

#include "base/numbers.h"
#include "base/text.h"

#include <fmt/format.h>

#include <algorithm>
#include <string>
#include <vector>

namespace tessaran::console {
namespace {

using host::Control;
using host::DialogSession;
using Purpose = DialogSession::Purpose;

struct Assignment {
    DialogSession::Place place;
    std::string value;
};

// "LABEL = VALUE". Labels may hold "=" themselves: the first split whose label is one is meant.
base::Result<Assignment> assignment(const std::string& text, const DialogSession& session,
                                    Purpose purpose) {
    const std::size_t firstSign = text.find('=');
    if (firstSign == std::string::npos)
        return base::formatError("this directive is written LABEL = VALUE");
    for (std::size_t sign = firstSign; sign != std::string::npos; sign = text.find('=', sign + 1)) {
        const auto place = session.find(base::trimmed(text.substr(0, sign)), purpose);
        if (place)
            return Assignment{*place, std::string(base::trimmed(text.substr(sign + 1)))};
    }
    return session.find(base::trimmed(text.substr(0, firstSign)), purpose).error();
}

// The rows that one name or number of a `:select` stands for.
std::vector<int> rowsNamed(const std::vector<Control::Row>& rows, std::string_view name) {
    std::vector<int> found;
    const std::string plain = host::plainLabel(name);
    for (std::size_t i = 0; i < rows.size(); ++i)
        if (!rows[i].empty() && host::plainLabel(rows[i].front()) == plain)
            found.push_back(static_cast<int>(i));
    if (!found.empty() || !name.starts_with('#'))
        return found;
    const auto number = base::wholeInt(name.substr(1));
    if (number && *number >= 1 && *number <= static_cast<long long>(rows.size()))
        found.push_back(static_cast<int>(*number) - 1);
    return found;
}

base::Result<std::vector<int>> rowsMeant(const Control& control, const std::string& text) {
    const std::vector<Control::Row> rows = control.rows();
    std::vector<int> all;
    if (text == "*") {
        for (std::size_t i = 0; i < rows.size(); ++i)
            all.push_back(static_cast<int>(i));
        return all;
    }
    // A row whose name holds commas comes before several names.
    const bool whole = !rowsNamed(rows, text).empty();
    for (const std::string& name : whole ? std::vector<std::string>{text} : base::nameList(text)) {
        const std::vector<int> found = rowsNamed(rows, name);
        if (found.empty())
            return base::stateError(fmt::format("\"{}\" has no row \"{}\"", control.label, name));
        for (const int row : found) {
            all.push_back(row);
            if (!control.manySelected)
                break;
        }
    }
    return all;
}

base::Result<void> set(const Line& line, DialogSession& session) {
    const auto wanted = assignment(line.text, session, Purpose::set);
    return wanted ? session.set(wanted->place, wanted->value) : wanted.error();
}

base::Result<void> check(const Line& line, DialogSession& session, bool on) {
    const auto place = session.find(line.text, Purpose::check);
    return place ? session.check(*place, on) : place.error();
}

base::Result<void> choose(const Line& line, DialogSession& session) {
    const auto place = session.find(line.text, Purpose::choose);
    return place ? session.choose(*place) : place.error();
}

base::Result<void> select(const Line& line, DialogSession& session) {
    const auto wanted = assignment(line.text, session, Purpose::select);
    if (!wanted)
        return wanted.error();
    const auto rows = rowsMeant(*wanted->place.control, wanted->value);
    return rows ? session.select(wanted->place, *rows) : rows.error();
}

base::Result<void> openRow(const Line& line, DialogSession& session) {
    const auto wanted = assignment(line.text, session, Purpose::select);
    if (!wanted)
        return wanted.error();
    const auto rows = rowsMeant(*wanted->place.control, wanted->value);
    if (!rows)
        return rows.error();
    if (rows->size() != 1)
        return base::stateError("a double click is on one row");
    return session.openRow(wanted->place, rows->front());
}

base::Result<void> press(const Line& line, DialogSession& session) {
    const auto place = session.find(line.text, Purpose::press);
    if (place)
        return session.press(*place);
    // The buttons in OK's and Cancel's place are buttons by their text, too.
    const std::string plain = host::plainLabel(line.text);
    const host::Dialog& dialog = session.dialog();
    if (!plain.empty() && plain == host::plainLabel(dialog.okLabel(session)))
        session.ok();
    else if (!plain.empty() && plain == host::plainLabel(dialog.cancelLabel(session)))
        session.cancel();
    else
        return place.error();
    return {};
}

base::Result<void> showPage(const Line& line, DialogSession& session) {
    const auto page = session.findPage(line.text);
    if (!page)
        return page.error();
    session.bringToFront(*page); // refused by the page in front: it told why
    return {};
}

base::Result<void> pressOk(DialogSession& session) {
    if (session.dialog().okLabel(session).empty())
        return base::stateError("the dialog has no button in OK's place");
    session.ok();
    return {};
}

} // namespace

base::Result<void> carryOut(const Line& directive, DialogSession& session) {
    switch (directive.verb) {
    case Verb::set:
        return set(directive, session);
    case Verb::check:
        return check(directive, session, true);
    case Verb::uncheck:
        return check(directive, session, false);
    case Verb::choose:
        return choose(directive, session);
    case Verb::select:
        return select(directive, session);
    case Verb::open:
        return openRow(directive, session);
    case Verb::press:
        return press(directive, session);
    case Verb::page:
        return showPage(directive, session);
    case Verb::ok:
        return pressOk(session);
    case Verb::cancel:
        session.cancel();
        return {};
    case Verb::answer:
        return base::stateError("no question is showing");
    case Verb::file:
        return base::stateError("no file dialog is showing");
    default:
        return {};
    }
}

} // namespace tessaran::console
