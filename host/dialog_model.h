#pragma once

// Dialogs as data. A page describes its controls once, bound to its own members; a dialog is a
// title and some pages. A DialogSession is one modal run of a dialog: it keeps what was typed and
// not yet accepted, says what is enabled, moves pages to the front and carries out what the user
// does. Front ends (console, window) draw a session and drive it; they know no dialog by name.
//
// Values live in the pages. A field's text goes into its member as soon as the field is left, if it
// can be read; a text that cannot is kept in the field, and validate() tells the user and puts the
// focus there. Pages call validate() before they use their values.

#include "base/result.h"

#include <functional>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::host {

class Host;
class DialogSession;

enum class ControlKind {
    text,        // an edit field
    information, // a read-only text, possibly of several lines
    check,       // a check box
    radio,       // a group of radio buttons; `label` is the group's, `options` are the buttons'
    dropList,    // one of some choices, or a new name where `takesNewNames`
    names,       // a list of names, such as layers; its text is the names joined by ","
    list,        // rows in columns, with a selection
    button,
    link, // opens its target with the system's default handler
};

struct Control {
    using Row = std::vector<std::string>;

    ControlKind kind = ControlKind::text;
    std::string label; // as shown: "&" before the mnemonic, "< " where the dialog hides
    std::string group; // the title of the group box around it; may be empty
    std::string toolTip;
    std::function<std::string()> unit; // shown behind the label in parentheses; empty: none

    // text, information, check ("0" or "1"), radio (number of the option, -1 none), dropList,
    // names: the member as text, and back. A failed `store` says why in its error's text.
    std::function<std::string()> shown;
    std::function<base::Result<void>(const std::string&)> store;

    std::vector<std::string> options;                  // radio
    std::function<std::vector<std::string>()> choices; // dropList
    bool takesNewNames = false;                        // dropList

    std::vector<std::string> columns;       // list
    std::function<std::vector<Row>()> rows; // list
    std::vector<int>* selection = nullptr;  // list: selected row numbers, ascending
    bool manySelected = false;              // list: more than one row may be selected
    // list: the columns' parts of its width; empty: as wide as what stands in them.
    std::vector<int> columnShares;

    std::function<bool()> enabled; // empty: always
    // After the value (or a list's selection) changed and the field was left; `before` is the
    // earlier text.
    std::function<void(DialogSession&, const std::string& before)> changed;
    std::function<void(DialogSession&)> pressed;         // button, link
    std::function<void(DialogSession&, int row)> opened; // list: double click

    bool checkedWithOthers = true; // whether validate() looks at it
    // Stands on the line of the control before it, as the button does that picks a field's value.
    bool beside = false;
};

// Refines the control just added.
class ControlBuilder {
  public:
    explicit ControlBuilder(Control& control) : control_(control) {}

    ControlBuilder& group(std::string title);
    ControlBuilder& tip(std::string text);
    ControlBuilder& unit(std::function<std::string()> text);
    ControlBuilder& enabledWhen(std::function<bool()> condition);
    ControlBuilder& onChange(std::function<void(DialogSession&, const std::string& before)> action);
    ControlBuilder& onChange(std::function<void(DialogSession&)> action);
    ControlBuilder& onOpen(std::function<void(DialogSession&, int row)> action);
    ControlBuilder& takesNewNames();
    ControlBuilder& manySelected();
    ControlBuilder& columnShares(std::vector<int> shares);
    // Its text may be anything until the page looks at it itself.
    ControlBuilder& unchecked();
    // Stands on the line of the control before it.
    ControlBuilder& beside();

  private:
    Control& control_;
};

// Adds controls in the order in which they are shown and found. Bound members must outlive the
// session.
class PageBuilder {
  public:
    using Choices = std::function<std::vector<std::string>()>;
    using Action = std::function<void(DialogSession&)>;

    // The group box that the following controls stand in; "" ends it.
    void group(std::string title);

    ControlBuilder text(std::string label, std::string& member);
    ControlBuilder integer(std::string label, int& member);
    ControlBuilder integer(std::string label, int& member, int lowest, int highest);
    ControlBuilder real(std::string label, double& member);
    ControlBuilder real(std::string label, double& member, double lowest, double highest);
    ControlBuilder information(std::string label, std::function<std::string()> shown);
    ControlBuilder check(std::string label, bool& member);
    ControlBuilder radio(std::string label, std::vector<std::string> options, int& member);
    ControlBuilder dropList(std::string label, Choices choices, std::string& member);
    // Bound to the number of the choice, -1 for none.
    ControlBuilder dropList(std::string label, const std::vector<std::string>& choices,
                            int& member);
    ControlBuilder names(std::string label, std::vector<std::string>& member);
    ControlBuilder list(std::string label, std::vector<std::string> columns,
                        std::function<std::vector<Control::Row>()> rows,
                        std::vector<int>& selection);
    ControlBuilder button(std::string label, Action action);
    ControlBuilder link(std::string label, const std::string& target);
    ControlBuilder custom(Control control);

    const std::vector<std::unique_ptr<Control>>& controls() const { return controls_; }

  private:
    ControlBuilder add(Control control);

    std::vector<std::unique_ptr<Control>> controls_;
    std::string group_;
};

// One tab of a dialog, or the whole of a dialog without tabs. Owns its values and actions and knows
// nothing of widgets.
class DialogPage {
  public:
    virtual ~DialogPage() = default;

    virtual std::string title() const {
        return {};
    } // the tab's; empty where the dialog has no tabs
    virtual void describe(PageBuilder& page) = 0;

    // When the dialog opens, before anything is shown.
    virtual void opened(DialogSession& /*session*/) {}
    // When the page comes to the front (also at the opening).
    virtual void activated(DialogSession& /*session*/) {}
    // Before another page comes to the front and before OK ends the dialog: false keeps it in
    // front. As it stands it validates the page's fields.
    virtual bool mayLeave(DialogSession& session);
    // When OK ends the dialog, for every page in order: false keeps the dialog open on this page.
    virtual bool accept(DialogSession& /*session*/) { return true; }
    // Before the dialog closes for good, by OK or Cancel: the place to ask about unsaved work.
    virtual bool mayClose(DialogSession& /*session*/, bool /*accepted*/) { return true; }
};

class Dialog {
  public:
    Dialog(std::string title, std::vector<DialogPage*> pages)
        : title_(std::move(title)), pages_(std::move(pages)) {}
    virtual ~Dialog() = default;

    const std::string& title() const { return title_; }
    void setTitle(std::string title) { title_ = std::move(title); }
    const std::vector<DialogPage*>& pages() const { return pages_; }

    // What the buttons in OK's and Cancel's place read at the moment; empty: there is none.
    virtual std::string okLabel(const DialogSession& /*session*/) const { return "OK"; }
    virtual std::string cancelLabel(const DialogSession& /*session*/) const { return "Cancel"; }
    // What they do; true ends the dialog.
    virtual bool okPressed(DialogSession& session);
    virtual bool cancelPressed(DialogSession& session);

  private:
    std::string title_;
    std::vector<DialogPage*> pages_;
};

// What a front end does on screen while a session goes on. All calls come from the session.
class DialogView {
  public:
    virtual ~DialogView() = default;
    virtual void refresh() {}                    // values, enabled states or pages changed
    virtual void setVisible(bool /*visible*/) {} // hidden while the drawing is used
    virtual void focus(const Control& /*control*/) {}
};

class DialogSession {
  public:
    DialogSession(Host& host, Dialog& dialog);

    Host& host() { return host_; }
    Dialog& dialog() { return dialog_; }
    const Dialog& dialog() const { return dialog_; }

    // --- for front ends --------------------------------------------------------------------------
    void setView(DialogView* view) { view_ = view; }
    // Runs the pages' opened() and activates the first page; called once, before the first drawing.
    void open();

    struct PageControls {
        DialogPage* page = nullptr;
        std::vector<std::unique_ptr<Control>> controls;
    };
    const std::vector<PageControls>& pages() const { return pages_; }
    int frontPage() const { return front_; }
    bool ended() const { return ended_; }
    bool accepted() const { return accepted_; }
    bool visible() const { return hidden_ == 0; }
    const Control* focused() const { return focused_; }

    // The text in the control now: what was typed and not accepted, else the member's.
    std::string text(const Control& control) const;
    bool isEnabled(const Control& control) const;

    // A control's place: page number, control, and for radio groups the button.
    struct Place {
        int page = -1;
        Control* control = nullptr;
        int option = -1;
    };
    enum class Purpose { set, check, choose, select, press, show };
    // Finds a control by its label as people write it: without "&", leading "<", trailing ":" and
    // "...", blanks at the ends and capitals, runs of blanks as one; "Group/Label" or "Page/Label"
    // and "Label#2" tell equal labels apart. The front page is searched first.
    base::Result<Place> find(std::string_view label, Purpose purpose) const;
    base::Result<int> findPage(std::string_view title) const;
    // The way back: a short label that find() takes to this place while its page is in front.
    std::string labelOf(const Place& place, Purpose purpose) const;

    // What the user does. An error means that the control could not be reached (disabled, no such
    // choice, the page in front would not let go); what the dialog itself refuses is told by it.
    base::Result<void> set(const Place& place, const std::string& text);
    base::Result<void> check(const Place& place, bool on);
    base::Result<void> choose(const Place& place);
    base::Result<void> select(const Place& place, std::vector<int> rows);
    base::Result<void> openRow(const Place& place, int row);
    base::Result<void> press(const Place& place);
    bool bringToFront(int page); // false: the page in front would not let go
    void ok();
    void cancel();

    // --- for pages and dialogs -------------------------------------------------------------------
    // Stores every enabled field of the page into its member; at the first that cannot be, shows
    // the reason, puts the focus there and returns false.
    bool validate(const DialogPage& page);
    void focus(std::string_view label);        // a control of the page in front or of another
    void showPage(const DialogPage& page);     // to the front without asking the present one
    void refresh();                            // shows the members' values again
    void discardTyped(const DialogPage& page); // drops texts that could not be stored
    void end(bool accepted);
    // The standard ends: all pages asked. True when the dialog may end.
    bool acceptPages();
    bool mayClosePages(bool accepted);

    // Hides the dialog while the drawing is used.
    class Hidden {
      public:
        explicit Hidden(DialogSession& session);
        Hidden(const Hidden&) = delete;
        Hidden& operator=(const Hidden&) = delete;
        ~Hidden();

      private:
        DialogSession& session_;
    };

  private:
    struct Typed { // a text that its member could not take
        const Control* control;
        std::string text;
    };

    bool leadsTo(const std::string& label, Purpose purpose, const Place& place) const;
    base::Result<void> reach(const Place& place);
    void storeText(Control& control, const std::string& text);
    void forgetTyped(const Control& control);
    int pageOf(const DialogPage& page) const;
    void setVisible(bool visible);

    Host& host_;
    Dialog& dialog_;
    DialogView* view_ = nullptr;
    std::vector<PageControls> pages_;
    std::vector<Typed> typed_;
    const Control* focused_ = nullptr;
    int front_ = 0;
    int hidden_ = 0;
    bool ended_ = false;
    bool accepted_ = false;
};

// Opens and runs the dialog on the host; whether it ended by OK.
bool runDialog(Host& host, Dialog& dialog);

// A control's label as it is shown, with its unit: "Seam Z (ft)".
std::string labelWithUnit(const Control& control);

// A label as it is compared: "< &Build Grid" gives "build grid".
std::string plainLabel(std::string_view label);
// A label as people write it: "< &Build Grid" gives "Build Grid".
std::string writtenLabel(std::string_view label);

} // namespace tessaran::host
