#include "desktop/dialog_host.h"

#include "console/answer_buttons.h"
#include "host/dialog_model.h"

#include <QFileDialog>
#include <QMessageBox>

namespace tessaran::desktop {

using host::Answer;
using host::Buttons;

void DialogHost::record(const std::string& line) {
    if (recorder_ != nullptr)
        recorder_->record(line);
}

void DialogHost::message(const std::string& text) {
    QMessageBox::information(&parent_, "Tessaran", QString::fromStdString(text));
}

Answer DialogHost::ask(const host::Question& question) {
    QMessageBox::StandardButtons buttons = question.buttons == Buttons::okCancel
                                               ? QMessageBox::Ok | QMessageBox::Cancel
                                               : QMessageBox::Yes | QMessageBox::No;
    if (question.buttons == Buttons::yesNoCancel)
        buttons |= QMessageBox::Cancel;
    const auto pressed =
        QMessageBox::question(&parent_, "Tessaran", QString::fromStdString(question.text), buttons);
    const Answer answer = pressed == QMessageBox::Ok    ? Answer::ok
                          : pressed == QMessageBox::Yes ? Answer::yes
                          : pressed == QMessageBox::No  ? Answer::no
                                                        : console::cancelAnswer(question.buttons);
    record(":answer " + console::answerName(answer));
    return answer;
}

std::optional<std::string> DialogHost::chooseFile(const host::FileRequest& request) {
    const QString title = QString::fromStdString(request.title);
    const QString start = QString::fromStdString(
        request.folder.empty() ? request.proposed : request.folder + "/" + request.proposed);
    const QString path = request.mode == host::FileRequest::Mode::open
                             ? QFileDialog::getOpenFileName(&parent_, title, start)
                             : QFileDialog::getSaveFileName(&parent_, title, start);
    record(path.isEmpty() ? ":file" : ":file " + path.toStdString());
    return path.isEmpty() ? std::nullopt : std::optional(path.toStdString());
}

// Dialogs are not drawn yet: they end as cancelled.
bool DialogHost::run(host::DialogSession& session) {
    session.open();
    if (!session.ended())
        session.end(false);
    return session.accepted();
}

} // namespace tessaran::desktop
