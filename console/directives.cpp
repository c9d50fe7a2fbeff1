#include "console/directives.h"

#include "base/text.h"
#include "console/answer_buttons.h"

#include <fmt/format.h>

#include <algorithm>

namespace tessaran::console {
namespace {

using host::Control;
using host::DialogSession;
using Purpose = DialogSession::Purpose;

bool isPlainName(const std::string& name) {
    return !name.empty() && name != "*" && !name.starts_with('#') &&
           name.find(',') == std::string::npos;
}

// The row by the name in its first column, by its number where that would not lead to it alone.
std::string rowName(const std::vector<Control::Row>& rows, int row) {
    const auto nameOf = [](const Control::Row& r) {
        return r.empty() ? std::string{} : host::plainLabel(r.front());
    };
    const std::string name = nameOf(rows[static_cast<std::size_t>(row)]);
    const auto equal = std::count_if(rows.begin(), rows.end(),
                                     [&](const Control::Row& r) { return nameOf(r) == name; });
    if (equal == 1 && isPlainName(name))
        return std::string(base::trimmed(rows[static_cast<std::size_t>(row)].front()));
    return "#" + std::to_string(row + 1);
}

std::string assignmentLine(const char* verb, const DialogSession& session, const Place& place,
                           Purpose purpose, const std::string& value) {
    return fmt::format(":{} {} = {}", verb, session.labelOf(place, purpose), value);
}

} // namespace

std::string setDirective(const DialogSession& session, const Place& place,
                         const std::string& text) {
    return assignmentLine("set", session, place, Purpose::set, text);
}

std::string checkDirective(const DialogSession& session, const Place& place, bool on) {
    return fmt::format(":{} {}", on ? "check" : "uncheck", session.labelOf(place, Purpose::check));
}

std::string chooseDirective(const DialogSession& session, const Place& place) {
    return ":choose " + session.labelOf(place, Purpose::choose);
}

std::string selectDirective(const DialogSession& session, const Place& place,
                            const std::vector<int>& rows) {
    const std::vector<Control::Row> all = place.control->rows();
    std::vector<std::string> names;
    for (const int row : rows)
        names.push_back(rowName(all, row));
    const bool everyOne = rows.size() > 1 && rows.size() == all.size();
    return assignmentLine("select", session, place, Purpose::select,
                          everyOne ? "*" : base::joined(names, ","));
}

std::string openDirective(const DialogSession& session, const Place& place, int row) {
    return assignmentLine("open", session, place, Purpose::select,
                          rowName(place.control->rows(), row));
}

std::string pressDirective(const DialogSession& session, const Place& place) {
    return ":press " + session.labelOf(place, Purpose::press);
}

std::string pageDirective(const DialogSession& session, int page) {
    return ":page " +
           host::writtenLabel(session.pages()[static_cast<std::size_t>(page)].page->title());
}

std::string answerDirective(host::Answer answer) {
    return ":answer " + answerName(answer);
}

std::string fileDirective(const std::string& path) {
    return path.empty() ? ":file" : ":file " + path;
}

} // namespace tessaran::console
