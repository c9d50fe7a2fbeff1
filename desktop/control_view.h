#pragma once

// One control of a dialog as widgets. The widget that takes the focus carries the control's label
// (as scripts write it) as its object name.

#include "desktop/dialog_actions.h"

#include <QLabel>
#include <QString>
#include <QWidget>
#include <memory>

namespace tessaran::desktop {

class ControlView {
  public:
    ControlView(DialogActions& actions, const DialogActions::Place& place)
        : actions_(actions), place_(place) {}
    ControlView(const ControlView&) = delete;
    ControlView& operator=(const ControlView&) = delete;
    virtual ~ControlView() = default;

    const host::Control& control() const { return *place_.control; }
    // The outermost widget.
    virtual QWidget* widget() = 0;
    // Shows the session's values, without reporting them as the user's.
    virtual void refresh() = 0;
    // Hands on what was typed.
    virtual void commit() {}
    virtual void focus() { widget()->setFocus(Qt::OtherFocusReason); }

    // The text that stands before the widget; it names the value's unit and is grey with it.
    void setCaption(QLabel* caption) { caption_ = caption; }
    QString captionText() const;
    void refreshAll();

  protected:
    host::DialogSession& session() const { return actions_.session(); }
    QString text() const;
    void name(QWidget& widget, host::DialogSession::Purpose purpose, int option = -1) const;

    DialogActions& actions_;
    DialogActions::Place place_;

  private:
    QLabel* caption_ = nullptr;
};

// The view of any control; its widget has no parent yet.
std::unique_ptr<ControlView> makeControlView(DialogActions& actions,
                                             const DialogActions::Place& place);

} // namespace tessaran::desktop
