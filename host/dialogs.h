#pragma once

// The port to message boxes, question boxes, file dialogs and modal dialogs.

#include <optional>
#include <string>

namespace tessaran::host {

class DialogSession;

enum class Buttons { okCancel, yesNo, yesNoCancel };
enum class Answer { ok, cancel, yes, no };

struct Question {
    // What an answer costs, which decides what an unattended run answers.
    enum class Stake {
        ordinary,     // default button: OK or Yes
        guarded,      // whether to save, overwrite or discard: unanswered means No or Cancel
        confirmsSave, // confirms a save that was just asked for: OK
    };
    std::string text{};
    Buttons buttons = Buttons::yesNo;
    Stake stake = Stake::ordinary;
};

struct FileRequest {
    enum class Mode { open, save };
    Mode mode = Mode::open;
    std::string title = "File Name";
    std::string extension;  // without the dot: "grd"
    std::string filter{};   // "Select Files (*.grd)|*.grd|All files(*.*)|*.*||"
    std::string proposed{}; // file name proposed; may be empty
    std::string folder{};   // the folder it starts in; empty: the host's choice
};

class Dialogs {
  public:
    virtual ~Dialogs() = default;

    virtual void message(const std::string& text) = 0; // one button
    virtual Answer ask(const Question& question) = 0;
    // The chosen path; for `open` an existing file; for `save` the host asks before overwriting.
    virtual std::optional<std::string> chooseFile(const FileRequest& request) = 0;
    // Shows the session's dialog until it has ended; whether it ended by OK.
    virtual bool run(DialogSession& session) = 0;
};

} // namespace tessaran::host
