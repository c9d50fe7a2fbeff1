#pragma once

// The talk between whoever gives the lines and whatever waits for one: the command prompt, a
// prompt, a question box, a file dialog, a dialog. It holds the line that comes next, so that what
// waits can look at it before it takes it, carries out the lines that answer nothing, and knows
// whether the talk is over: at the end of the lines, or after a line in error of a script.

#include "base/result.h"
#include "console/line.h"
#include "console/line_source.h"
#include "console/transcript.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::host {
class DialogSession;
}

namespace tessaran::console {

class Conversation {
  public:
    Conversation(LineSource& source, Transcript& transcript)
        : source_(source), transcript_(transcript) {}

    Transcript& transcript() { return transcript_; }
    bool interactive() const { return source_.interactive(); }

    // --- lines
    // What waits for a line.
    struct Waiting {
        std::string text{};    // as ":show" and ":expect" see it
        std::string prompt{};  // printed before each line that is read
        bool prompted = false; // the prompt has been printed once
    };
    // The line that comes next; null when the talk is over.
    const Line* next(const Waiting& waiting);
    // Takes the line that comes next; it is echoed and is the one that errors speak of.
    Line take();
    // The line taken last is in error. True: a person typed it, so ask again; false: the talk is
    // over.
    bool refuse(const std::string& why);
    // What was given behind the command's name and nothing took is in error; none is no error.
    void refuseLeftOver();
    // The command failed as a whole: the lines since its name came to nothing.
    void refuseCommand(const std::string& why);
    // Whether nothing more is answered: everything open is to be cancelled.
    bool over() const { return failure_.has_value() || ended_; }
    void end() { ended_ = true; }
    // What of a person's lines was refused.
    struct Refusal {
        enum class What {
            line,   // the one taken last
            given,  // the end of the command's line, from the answer refused on
            command // the command's line and all that followed
        };
        What what = What::line;
        std::string unused{}; // for `given`: that end of the line
    };
    // Told when something was refused and a person is asked again.
    void setRefused(std::function<void(const Refusal&)> refused) { refused_ = std::move(refused); }
    // "SCRIPT:LINE: why" of the line in error.
    const std::optional<std::string>& failure() const { return failure_; }

    // --- prompts
    struct Answer {
        enum class Kind { enter, escape, text };
        Kind kind = Kind::escape;
        std::string text{};
    };
    // Prints the message and takes its answer. `oneWord`: of an answer given behind the command's
    // name only the first word is taken.
    Answer ask(const std::string& message, bool oneWord);
    // Answers given behind the command's name, for its first prompts.
    void setGiven(std::string text) { given_ = std::move(text); }
    const std::string& given() const { return given_; }
    // Changes whenever something happened that is not just another asking of the same prompt.
    void setActivity(std::function<std::uint64_t()> activity) { activity_ = std::move(activity); }

    // --- dialogs
    void push(host::DialogSession& session) { sessions_.push_back(&session); }
    void pop() { sessions_.pop_back(); }
    // The one in front; null when none is showing.
    const host::DialogSession* dialog() const {
        return sessions_.empty() ? nullptr : sessions_.back();
    }

    // --- the user break
    // One poll of the user break or of a Cancel button.
    bool poll();
    void forgetBreak() { broken_ = false; }
    void setInterrupted(std::function<bool()> interrupted) {
        interrupted_ = std::move(interrupted);
    }
    void beginCommand();

  private:
    bool fill(const Waiting& waiting);
    bool refuse(const std::string& why, const Refusal& refusal);
    bool carryOut(const Line& line, const std::string& waiting);
    void show(const std::string& waiting);
    void expect(const Line& line, const std::string& waiting);
    void breakAt(const Line& line);
    void echo(const Line& line, bool counted);
    std::optional<Answer> givenAnswer(bool oneWord);
    Answer automaticAnswer(const std::string& message);

    LineSource& source_;
    Transcript& transcript_;
    std::optional<Line> next_;
    std::string prompt_;                                        // still to be printed
    Transcript::Place place_ = Transcript::Place::behindPrompt; // of what is read
    int number_ = 0;                                            // of the line read last
    int current_ = 0;                                           // of the line taken last
    std::string given_;
    std::optional<std::string> givenFrom_; // the answer taken last stood there, and what follows it
    std::vector<host::DialogSession*> sessions_;
    bool ended_ = false;
    std::optional<std::string> failure_;

    // Enter given without a line: the prompt, what had happened until then, and how often.
    std::string entered_;
    std::uint64_t enteredActivity_ = 0;
    int enters_ = 0;
    int automatic_ = 0;
    std::function<std::uint64_t()> activity_;

    std::function<void(const Refusal&)> refused_;
    std::function<bool()> interrupted_;
    long pollsLeft_ = 0; // 0: no break ordered
    bool broken_ = false;
};

} // namespace tessaran::console
