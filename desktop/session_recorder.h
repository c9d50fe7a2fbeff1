#pragma once

// What was typed, picked and clicked since the program began, as lines of the script language. Run
// without a screen on the same drawing they give the same files.

#include <cstddef>
#include <functional>
#include <string>
#include <vector>

namespace tessaran::desktop {

class SessionRecorder {
  public:
    // One line, as a script would hold it: an answer, a command, ":set Cell Width = 10". A press
    // is recorded before what it does, so that the lines of the prompts it opens follow it.
    void record(const std::string& scriptLine);
    // A line at the command prompt, which may go on with the command's first answers.
    void recordCommand(const std::string& scriptLine);

    // Called with every line: whatever the user broke before is over.
    void setRecorded(std::function<void()> recorded) { recorded_ = std::move(recorded); }

    // The line recorded last was refused and asked for again: it is no part of the script.
    void dropLast();
    // So was the end of the command's line: an answer behind the name, and what followed it.
    void shortenCommand(const std::string& unused);
    // The command failed: neither its line nor what followed is part of the script.
    void dropCommand();
    // The line recorded last was taken but could not be used; in its place the script cancels.
    void cancelLast();

    // --- the user break, which a script orders before the line that runs into it
    void polled() { ++polls_; }
    void broken(); // the poll counted last ended the run

    std::size_t size() const { return lines_.size(); }
    // The lines from there on, each ended.
    std::string script(std::size_t from = 0) const;

  private:
    std::function<void()> recorded_;
    std::vector<std::string> lines_;
    std::size_t command_ = 0; // the line of the command that runs
    long polls_ = 0;          // since the last line
};

} // namespace tessaran::desktop
