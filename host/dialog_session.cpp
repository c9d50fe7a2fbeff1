#include "base/text.h"
#include "host/dialog_model.h"
#include "host/host.h"

#include <algorithm>

namespace tessaran::host {
namespace {

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
    if (page < 0 || page >= static_cast<int>(pages_.size()))
        return false;
    if (!pages_[static_cast<std::size_t>(front_)].page->mayLeave(*this)) {
        refresh();
        return false;
    }
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
