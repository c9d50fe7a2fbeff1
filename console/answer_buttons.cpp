#include "console/answer_buttons.h"

#include "base/text.h"

namespace tessaran::console {

using host::Answer;
using host::Buttons;

std::string buttonNames(Buttons buttons) {
    switch (buttons) {
    case Buttons::okCancel:
        return "OK/Cancel";
    case Buttons::yesNo:
        return "Yes/No";
    default:
        return "Yes/No/Cancel";
    }
}

std::string answerName(Answer answer) {
    switch (answer) {
    case Answer::ok:
        return "ok";
    case Answer::yes:
        return "yes";
    case Answer::no:
        return "no";
    default:
        return "cancel";
    }
}

std::optional<Answer> parseAnswer(std::string_view text, Buttons buttons) {
    const std::string name = base::lowered(base::trimmed(text));
    if (name == "yes" || name == "ok" || name == "y" || name == "o")
        return buttons == Buttons::okCancel ? Answer::ok : Answer::yes;
    if (name == "no" || name == "n")
        return buttons == Buttons::okCancel ? Answer::cancel : Answer::no;
    if (name == "cancel" || name == "c")
        return cancelAnswer(buttons);
    return std::nullopt;
}

Answer defaultAnswer(const host::Question& question) {
    if (question.stake == host::Question::Stake::guarded)
        return question.buttons == Buttons::okCancel ? Answer::cancel : Answer::no;
    return question.buttons == Buttons::okCancel ? Answer::ok : Answer::yes;
}

Answer cancelAnswer(Buttons buttons) {
    return buttons == Buttons::yesNo ? Answer::no : Answer::cancel;
}

} // namespace tessaran::console
