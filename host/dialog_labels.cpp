#include "base/text.h"
#include "host/dialog_model.h"

#include <algorithm>

// How controls are named by people and scripts, and the way back from a control to its name.

namespace tessaran::host {
namespace {

using Purpose = DialogSession::Purpose;

bool serves(ControlKind kind, Purpose purpose) {
    switch (purpose) {
    case Purpose::set:
        return kind == ControlKind::text || kind == ControlKind::dropList ||
               kind == ControlKind::names;
    case Purpose::check:
        return kind == ControlKind::check;
    case Purpose::choose:
        return kind == ControlKind::radio;
    case Purpose::select:
        return kind == ControlKind::list;
    case Purpose::press:
        return kind == ControlKind::button || kind == ControlKind::link;
    case Purpose::show:
        return true;
    }
    return false;
}

// How a label is asked for: an optional group or page before "/", an optional count behind "#".
struct Wanted {
    std::string label;
    std::string place; // plain title of the group or page; empty: any
    int count = 1;
};

// All readings of a label, the whole text as a label first.
std::vector<Wanted> readings(std::string_view label) {
    std::vector<Wanted> out{{plainLabel(label), {}, 1}};
    const auto addPlaced = [&](std::string_view text, int count) {
        for (std::size_t slash = text.find('/'); slash != std::string_view::npos;
             slash = text.find('/', slash + 1))
            out.push_back(
                {plainLabel(text.substr(slash + 1)), plainLabel(text.substr(0, slash)), count});
    };
    addPlaced(label, 1);
    const std::size_t hash = label.rfind('#');
    if (hash == std::string_view::npos)
        return out;
    const std::string digits(base::trimmed(label.substr(hash + 1)));
    if (digits.empty() || digits.size() > 4 ||
        digits.find_first_not_of("0123456789") != std::string::npos)
        return out;
    const int count = std::stoi(digits);
    out.push_back({plainLabel(label.substr(0, hash)), {}, count});
    addPlaced(label.substr(0, hash), count);
    return out;
}

bool standsIn(const Control& control, const DialogPage& page, const std::string& place) {
    return place.empty() || plainLabel(control.group) == place ||
           plainLabel(page.title()) == place ||
           (control.kind == ControlKind::radio && plainLabel(control.label) == place);
}

// Counts the matches of `wanted` on one page down to the one asked for.
std::optional<DialogSession::Place> findOn(const DialogSession::PageControls& page, int number,
                                           const Wanted& wanted, Purpose purpose, int& left) {
    for (const std::unique_ptr<Control>& control : page.controls) {
        if (!serves(control->kind, purpose) || !standsIn(*control, *page.page, wanted.place))
            continue;
        if (control->kind == ControlKind::radio && purpose == Purpose::choose) {
            for (std::size_t k = 0; k < control->options.size(); ++k)
                if (plainLabel(control->options[k]) == wanted.label && --left == 0)
                    return DialogSession::Place{number, control.get(), static_cast<int>(k)};
        } else if ((plainLabel(control->label) == wanted.label ||
                    plainLabel(labelWithUnit(*control)) == wanted.label) &&
                   --left == 0) {
            return DialogSession::Place{number, control.get(), -1};
        }
    }
    return std::nullopt;
}

// The label of the control itself, or of the button that a radio group's place speaks of.
const std::string& labelAt(const DialogSession::Place& place) {
    const Control& control = *place.control;
    return place.option < 0 ? control.label
                            : control.options[static_cast<std::size_t>(place.option)];
}

// What may stand before "/" in front of the label, the nearest first.
std::vector<std::string> prefixes(const DialogSession::Place& place, const DialogPage& page) {
    std::vector<std::string> out{""};
    std::vector<std::string> titles{place.control->group, page.title()};
    if (place.option >= 0)
        titles.insert(titles.begin(), place.control->label);
    for (const std::string& title : titles)
        if (!plainLabel(title).empty())
            out.push_back(writtenLabel(title) + "/");
    return out;
}

} // namespace

std::string labelWithUnit(const Control& control) {
    return control.unit ? control.label + " (" + control.unit() + ")" : control.label;
}

std::string plainLabel(std::string_view label) {
    std::string_view rest = base::trimmed(label);
    while (!rest.empty() && (rest.front() == '<' || rest.front() == ' '))
        rest.remove_prefix(1);
    for (;;) {
        rest = base::trimmed(rest);
        if (rest.ends_with("..."))
            rest.remove_suffix(3);
        else if (rest.ends_with(':'))
            rest.remove_suffix(1);
        else
            break;
    }
    std::string out;
    for (const char c : rest) {
        const bool blank = c == ' ' || (c >= '\t' && c <= '\r');
        if (c == '&' || (blank && !out.empty() && out.back() == ' '))
            continue;
        out += blank ? ' ' : c;
    }
    return base::lowered(out);
}

std::string writtenLabel(std::string_view label) {
    std::string out;
    std::copy_if(label.begin(), label.end(), std::back_inserter(out),
                 [](char c) { return c != '&'; });
    std::string_view text = base::trimmed(out);
    while (text.starts_with('<'))
        text = base::trimmed(text.substr(1));
    while (text.ends_with(':'))
        text = base::trimmed(text.substr(0, text.size() - 1));
    return std::string(text);
}

base::Result<DialogSession::Place> DialogSession::find(std::string_view label,
                                                       Purpose purpose) const {
    std::vector<int> order;
    for (int i = 0; i < static_cast<int>(pages_.size()); ++i)
        order.push_back(i);
    if (!order.empty())
        std::rotate(order.begin(), order.begin() + front_, order.begin() + front_ + 1);
    for (const Wanted& wanted : readings(label)) {
        int left = wanted.count;
        for (const int page : order)
            if (const auto place =
                    findOn(pages_[static_cast<std::size_t>(page)], page, wanted, purpose, left))
                return *place;
    }
    return base::stateError("no control \"" + std::string(label) + "\" for this in the dialog \"" +
                            dialog_.title() + "\"");
}

base::Result<int> DialogSession::findPage(std::string_view title) const {
    for (std::size_t i = 0; i < pages_.size(); ++i)
        if (plainLabel(pages_[i].page->title()) == plainLabel(title))
            return static_cast<int>(i);
    return base::stateError("no page \"" + std::string(title) + "\" in the dialog \"" +
                            dialog_.title() + "\"");
}

bool DialogSession::leadsTo(const std::string& label, Purpose purpose, const Place& place) const {
    const auto found = find(label, purpose);
    return found && found->control == place.control && found->option == place.option;
}

std::string DialogSession::labelOf(const Place& place, Purpose purpose) const {
    const std::string own = writtenLabel(labelAt(place));
    const std::vector<std::string> before =
        prefixes(place, *pages_[static_cast<std::size_t>(place.page)].page);
    for (const std::string& prefix : before)
        if (leadsTo(prefix + own, purpose, place) && !find(prefix + own + "#2", purpose))
            return prefix + own;
    constexpr int kMostEqual = 200; // equal labels counted through
    for (int count = 1; count <= kMostEqual; ++count)
        for (const std::string& prefix : before) {
            const std::string label = prefix + own + (count > 1 ? "#" + std::to_string(count) : "");
            if (leadsTo(label, purpose, place))
                return label;
        }
    return own;
}

} // namespace tessaran::host
