#include "desktop/message_boxes.h"

#include "base/text.h"
#include "console/answer_buttons.h"

#include <QMessageBox>
#include <QPushButton>
#include <array>
#include <utility>

namespace tessaran::desktop {
namespace {

using host::Answer;
using host::Buttons;
using host::Question;

constexpr const char* kTitle = "Tessaran";

constexpr std::array<std::pair<QMessageBox::StandardButton, Answer>, 4> kButtons{{
    {QMessageBox::Ok, Answer::ok},
    {QMessageBox::Yes, Answer::yes},
    {QMessageBox::No, Answer::no},
    {QMessageBox::Cancel, Answer::cancel},
}};

QMessageBox::StandardButtons buttonsOf(Buttons buttons) {
    switch (buttons) {
    case Buttons::okCancel:
        return QMessageBox::Ok | QMessageBox::Cancel;
    case Buttons::yesNo:
        return QMessageBox::Yes | QMessageBox::No;
    default:
        return QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel;
    }
}

QMessageBox::StandardButton buttonOf(Answer answer) {
    for (const auto& [button, meaning] : kButtons)
        if (meaning == answer)
            return button;
    return QMessageBox::NoButton;
}

// Enter must lose nothing: not an overwritten file, and not what a "save first?" is about, which
// has a Cancel besides.
Answer enterAnswer(const Question& question) {
    return question.buttons == Buttons::yesNoCancel ? Answer::yes
                                                    : console::defaultAnswer(question);
}

QString shownText(const std::string& text) {
    return QString::fromStdString(std::string(base::trimmed(text)));
}

void prepare(QMessageBox& box, const std::string& text) {
    box.setWindowTitle(kTitle);
    box.setTextFormat(Qt::PlainText);
    box.setText(shownText(text));
    box.setTextInteractionFlags(Qt::TextSelectableByMouse);
}

} // namespace

void showMessage(QWidget* parent, const std::string& text) {
    QMessageBox box(parent);
    prepare(box, text);
    box.setObjectName("message");
    box.setIcon(QMessageBox::Information);
    box.exec();
}

Answer askQuestion(QWidget* parent, const Question& question) {
    QMessageBox box(parent);
    prepare(box, question.text);
    box.setObjectName("question");
    box.setIcon(QMessageBox::Question);
    box.setStandardButtons(buttonsOf(question.buttons));
    box.setDefaultButton(buttonOf(enterAnswer(question)));
    box.setEscapeButton(buttonOf(console::cancelAnswer(question.buttons)));
    const int pressed = box.exec();
    for (const auto& [button, answer] : kButtons)
        if (pressed == button)
            return answer;
    return console::cancelAnswer(question.buttons);
}

} // namespace tessaran::desktop
