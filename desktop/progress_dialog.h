#pragma once

// The small window of a long run: a text, a bar and a " Cancel" button.

#include "desktop/busy.h"
#include "host/host.h"

#include <QDialog>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <functional>

namespace tessaran::desktop {

class ProgressDialog final : public QDialog, public host::ProgressView {
  public:
    ProgressDialog(Busy& busy, QWidget* parent);

    // Tells whether Escape was pressed; in this window it goes to `busy`.
    void setPoll(std::function<bool()> poll) { poll_ = std::move(poll); }

    void open(int x, int y) override;
    void setCaption(const std::string& caption) override;
    void setText(const std::string& text) override;
    void setBar(int lower, int upper, int position) override;
    Events pump(bool keepFocus) override;
    host::Point2 corner() const override;
    void close() override;

  protected:
    void keyPressEvent(QKeyEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

  private:
    Busy& busy_;
    QLabel* text_;
    QProgressBar* bar_;
    QPushButton* cancel_;
    std::function<bool()> poll_;
    bool cancelClicked_ = false;
};

} // namespace tessaran::desktop
