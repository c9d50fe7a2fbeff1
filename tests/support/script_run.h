#pragma once

// A script run through the console, as `tessaran run` does it, in a temporary folder:
//
//     ScriptRun run;
//     run.drawing().createLayer({.name = "PILLARS"});  // put things in before
//     run.folder().write("roof.grd", "...");
//     run("zelk_genFactor\n:set Input File = roof.grd\n:ok\n");
//     EXPECT_EQ(run.status(), 0) << run.report();
//     EXPECT_THAT(run.transcript(), HasSubstr("..."));
//     run.folder().read("roof_index.grd"), run.drawing() ...
//
// One script a ScriptRun. The folder is the current one while it lives.

#include "console/script_runner.h"
#include "support/temporary_folder.h"

#include <optional>
#include <string>

namespace tessaran::test {

class ScriptRun {
  public:
    ScriptRun();

    TemporaryFolder& folder() { return folder_; }
    // The current drawing; before the run an empty one, or the one opened.
    drawing::Database& drawing() { return runner_.session().workspace().database(); }
    console::ConsoleHost& host() { return runner_.session().host(); }
    console::HostState& state() { return runner_.session().state(); }
    // --drawing: a file of the folder.
    void open(const std::string& file);
    // --save
    void saveTo(const std::string& file) { save_ = file; }

    ScriptRun& operator()(const std::string& script);

    int status() const { return outcome_.status; }
    const std::string& error() const { return outcome_.error; } // "script:3: why"
    const std::string& transcript() const { return text_; }
    std::string report() const; // error and transcript, for failing tests

  private:
    TemporaryFolder folder_;
    std::string text_;
    console::Transcript transcript_;
    console::ScriptRunner runner_;
    std::optional<std::filesystem::path> save_;
    console::ScriptOutcome outcome_;
};

} // namespace tessaran::test
