#pragma once

// A dialog session on the screen. Nothing of any dialog is written here: pages, controls, captions
// and what is enabled come from the session, what the user does goes to it.

#include "desktop/dialog_actions.h"
#include "desktop/page_layout.h"

#include <QDialog>
#include <QPoint>
#include <QTimer>

class QPushButton;
class QStackedWidget;

namespace tessaran::desktop {

class PageSelector;

class DialogWindow final : public QDialog {
    Q_OBJECT
  public:
    // `recorder` may be null.
    DialogWindow(host::DialogSession& session, SessionRecorder* recorder, QWidget* parent);
    ~DialogWindow() override;

    const host::DialogSession& session() const { return session_; }

    // Opens the session and shows it until it has ended. Throws what an action threw.
    void run();

    // Hidden while the drawing is used, and back where it was.
    void setShown(bool shown);
    // Told when the session wants to be hidden or seen, instead of doing it alone: the dialogs
    // under this one have to go as well.
    void setOnVisible(std::function<void()> onVisible) { onVisible_ = std::move(onVisible); }

    // Escape and the window's close button.
    void reject() override;
    // Enter, in whatever field.
    void accept() override;

  protected:
    void closeEvent(QCloseEvent* event) override;

  private:
    class View;

    QWidget* makePages();
    QWidget* makePage(int page);
    QWidget* makeEndButtons();
    void refresh();
    void refreshEndButtons();
    void growToFit();
    void focusOn(const host::Control& control);
    void focusFirst();
    void commitTyped();
    void done();

    host::DialogSession& session_;
    DialogActions actions_;
    std::unique_ptr<View> view_;
    ControlViews views_;
    PageSelector* selector_ = nullptr;
    QStackedWidget* stack_ = nullptr;
    QPushButton* ok_ = nullptr;
    QPushButton* cancel_ = nullptr;
    std::function<void()> onVisible_;
    std::function<void()> quitLoop_;
    QTimer growing_; // to when control is back in the event loop
    QPoint place_;
    bool placed_ = false;
};

} // namespace tessaran::desktop
