#include "base/text.h"
#include "host/dialog_model.h"
#include "host/host.h"

#include <algorithm>

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

std::optional<std::string> matchingChoice(const Control& control, const std::string& text) {
    for (const std::string& choice : control.choices())
        if (choice == text)
            return choice;
    for (const std::string& choice : control.choices())
        if (base::equalsIgnoringCase(base::trimmed(choice), base::trimmed(text)))
            return choice;
    return std::nullopt;
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

bool DialogPage::mayLeave(DialogSession& session) {
    return session.validate(*this);
}

bool Dialog::okPressed(DialogSession& session) {
    return session.acceptPages() && session.mayClosePages(true);
}

bool Dialog::cancelPressed(DialogSession& session) {
    return session.mayClosePages(false);
}

DialogSession::DialogSession(Host& host, Dialog& dialog) : host_(host), dialog_(dialog) {
    for (DialogPage* page : dialog.pages()) {
        PageBuilder builder;
        page->describe(builder);
        PageControls controls{page, {}};
        for (const std::unique_ptr<Control>& control : builder.controls())
            controls.controls.push_back(std::make_unique<Control>(std::move(*control)));
        pages_.push_back(std::move(controls));
    }
}

void DialogSession::open() {
    for (const PageControls& page : pages_)
        page.page->opened(*this);
    if (!pages_.empty())
        pages_.front().page->activated(*this);
}

std::string DialogSession::text(const Control& control) const {
    for (const Typed& typed : typed_)
        if (typed.control == &control)
            return typed.text;
    return control.shown ? control.shown() : std::string{};
}

bool DialogSession::isEnabled(const Control& control) const {
    return !control.enabled || control.enabled();
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

// Brings the control's page to the front and refuses a disabled control.
base::Result<void> DialogSession::reach(const Place& place) {
    if (place.page != front_ && !bringToFront(place.page))
        return base::stateError("the page in front would not let go");
    if (!isEnabled(*place.control))
        return base::stateError("\"" + place.control->label + "\" is disabled");
    focused_ = place.control;
    return {};
}

void DialogSession::forgetTyped(const Control& control) {
    std::erase_if(typed_, [&](const Typed& typed) { return typed.control == &control; });
}

void DialogSession::storeText(Control& control, const std::string& text) {
    const std::string before = this->text(control);
    forgetTyped(control);
    const bool stored = control.store(text).ok();
    if (!stored)
        typed_.push_back({&control, text});
    if (stored && control.changed && this->text(control) != before)
        control.changed(*this, before);
    refresh();
}

base::Result<void> DialogSession::set(const Place& place, const std::string& text) {
    if (const auto reached = reach(place); !reached)
        return reached;
    Control& control = *place.control;
    std::string value = text;
    if (control.kind == ControlKind::dropList) {
        const std::optional<std::string> choice = matchingChoice(control, text);
        if (!choice && !control.takesNewNames)
            return base::rangeError("\"" + control.label + "\" has no choice \"" + text + "\"");
        value = choice.value_or(text);
    }
    storeText(control, value);
    return {};
}

base::Result<void> DialogSession::check(const Place& place, bool on) {
    if (const auto reached = reach(place); !reached)
        return reached;
    storeText(*place.control, on ? "1" : "0");
    return {};
}

base::Result<void> DialogSession::choose(const Place& place) {
    if (const auto reached = reach(place); !reached)
        return reached;
    storeText(*place.control, std::to_string(place.option));
    return {};
}

base::Result<void> DialogSession::select(const Place& place, std::vector<int> rows) {
    if (const auto reached = reach(place); !reached)
        return reached;
    Control& control = *place.control;
    if (rows.size() > 1 && !control.manySelected)
        return base::rangeError("\"" + control.label + "\" takes one row at a time");
    const int count = static_cast<int>(control.rows().size());
    for (const int row : rows)
        if (row < 0 || row >= count)
            return base::rangeError("\"" + control.label + "\" has no such row");
    std::sort(rows.begin(), rows.end());
    rows.erase(std::unique(rows.begin(), rows.end()), rows.end());
    const bool differs = *control.selection != rows;
    *control.selection = std::move(rows);
    if (differs && control.changed)
        control.changed(*this, {});
    refresh();
    return {};
}

base::Result<void> DialogSession::openRow(const Place& place, int row) {
    if (const auto selected = select(place, {row}); !selected)
        return selected;
    if (place.control->opened)
        place.control->opened(*this, row);
    refresh();
    return {};
}

base::Result<void> DialogSession::press(const Place& place) {
    if (const auto reached = reach(place); !reached)
        return reached;
    if (place.control->pressed)
        place.control->pressed(*this);
    refresh();
    return {};
}

bool DialogSession::bringToFront(int page) {
    if (page == front_)
        return true;
    if (page < 0 || page >= static_cast<int>(pages_.size()) ||
        !pages_[static_cast<std::size_t>(front_)].page->mayLeave(*this))
        return false;
    showPage(*pages_[static_cast<std::size_t>(page)].page);
    return true;
}

void DialogSession::ok() {
    if (dialog_.okPressed(*this))
        end(true);
    refresh();
}

void DialogSession::cancel() {
    if (dialog_.cancelPressed(*this))
        end(false);
    refresh();
}

int DialogSession::pageOf(const DialogPage& page) const {
    for (std::size_t i = 0; i < pages_.size(); ++i)
        if (pages_[i].page == &page)
            return static_cast<int>(i);
    return -1;
}

bool DialogSession::validate(const DialogPage& page) {
    const int number = pageOf(page);
    if (number < 0)
        return true;
    for (const std::unique_ptr<Control>& control :
         pages_[static_cast<std::size_t>(number)].controls) {
        if (control->kind != ControlKind::text || !control->checkedWithOthers ||
            !isEnabled(*control))
            continue;
        const auto stored = control->store(text(*control));
        if (stored) {
            forgetTyped(*control);
            continue;
        }
        host_.dialogs().message(stored.error().text);
        showPage(page);
        focused_ = control.get();
        if (view_)
            view_->focus(*control);
        return false;
    }
    return true;
}

void DialogSession::focus(std::string_view label) {
    const auto place = find(label, Purpose::show);
    if (!place)
        return;
    if (place->page != front_)
        showPage(*pages_[static_cast<std::size_t>(place->page)].page);
    focused_ = place->control;
    if (view_)
        view_->focus(*place->control);
}

void DialogSession::showPage(const DialogPage& page) {
    const int number = pageOf(page);
    if (number < 0 || number == front_)
        return;
    front_ = number;
    pages_[static_cast<std::size_t>(number)].page->activated(*this);
    refresh();
}

void DialogSession::refresh() {
    if (view_)
        view_->refresh();
}

void DialogSession::discardTyped(const DialogPage& page) {
    const int number = pageOf(page);
    if (number < 0)
        return;
    for (const std::unique_ptr<Control>& control :
         pages_[static_cast<std::size_t>(number)].controls)
        forgetTyped(*control);
}

void DialogSession::end(bool accepted) {
    ended_ = true;
    accepted_ = accepted;
}

bool DialogSession::acceptPages() {
    if (pages_.empty())
        return true;
    if (!pages_[static_cast<std::size_t>(front_)].page->mayLeave(*this))
        return false;
    for (const PageControls& page : pages_) {
        if (!page.page->accept(*this)) {
            showPage(*page.page);
            return false;
        }
    }
    return true;
}

bool DialogSession::mayClosePages(bool accepted) {
    return std::all_of(pages_.begin(), pages_.end(), [&](const PageControls& page) {
        return page.page->mayClose(*this, accepted);
    });
}

void DialogSession::setVisible(bool visible) {
    hidden_ += visible ? -1 : 1;
    const bool changed = visible ? hidden_ == 0 : hidden_ == 1;
    if (changed && view_)
        view_->setVisible(visible);
}

DialogSession::Hidden::Hidden(DialogSession& session) : session_(session) {
    session_.setVisible(false);
}

DialogSession::Hidden::~Hidden() {
    session_.setVisible(true);
}

bool runDialog(Host& host, Dialog& dialog) {
    DialogSession session(host, dialog);
    return host.dialogs().run(session);
}

} // namespace tessaran::host
