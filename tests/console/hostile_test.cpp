// Scripts that mean no good: every one comes to its end, in good order, and saves nothing.

#include "console/rehearsal.h"
#include "support/script_run.h"

#include <gtest/gtest.h>

#include <array>
#include <random>

namespace tessaran::test {
namespace {

// One of the rehearsal commands, answers of every kind and directives, in any order.
std::string randomLine(std::mt19937& random) {
    static const std::array<std::string, 54> pieces = {"ask",
                                                       "select",
                                                       "questions",
                                                       "files",
                                                       "pages",
                                                       "stubborn",
                                                       "loop",
                                                       "work",
                                                       "throws",
                                                       "LINE",
                                                       "PLINE",
                                                       "POINT 1,1",
                                                       "LAYER",
                                                       "UCS",
                                                       "ZOOM",
                                                       "UNDO",
                                                       "REDO",
                                                       "SETVAR",
                                                       "NEW",
                                                       "CLOSE",
                                                       "SAVEAS x",
                                                       "OPEN x.dxf",
                                                       "LIST all",
                                                       "MOVE last",
                                                       "ERASE all",
                                                       "DOCUMENT",
                                                       "",
                                                       "",
                                                       "",
                                                       "^C",
                                                       "1,1",
                                                       "@2,3",
                                                       "1e308,1",
                                                       "12",
                                                       "0",
                                                       "Close",
                                                       "all",
                                                       "#100",
                                                       "window -9,-9 9,9",
                                                       "; note",
                                                       ":ok",
                                                       ":cancel",
                                                       ":page Second",
                                                       ":set Title = x",
                                                       ":set Layers = A,B",
                                                       ":press Details",
                                                       ":press Build Grid",
                                                       ":show",
                                                       ":break 1",
                                                       ":answer yes",
                                                       ":answer no",
                                                       ":file",
                                                       ":file y.txt",
                                                       "\\:x"};
    return pieces[random() % pieces.size()];
}

class Hostile : public testing::TestWithParam<unsigned> {};

TEST_P(Hostile, ScriptsEnd) {
    std::mt19937 random(GetParam());
    std::string script;
    for (int k = 0; k < 60; ++k)
        script += randomLine(random) + "\n";
    ScriptRun run;
    addRehearsalCommands(run.host());
    run.saveTo("saved.dxf");
    run(script);
    EXPECT_TRUE(run.status() == 0 || run.status() == 1) << script << run.report();
    EXPECT_EQ(run.folder().has("saved.dxf"), run.status() == 0) << script << run.report();
    EXPECT_FALSE(run.drawing().inCommand());
}

INSTANTIATE_TEST_SUITE_P(Random, Hostile, testing::Range(1u, 301u));

} // namespace

TEST(HostileText, IsRefusedOrTakenAsText) {
    for (const std::string& line :
         {std::string(100000, 'x'), std::string(100000, '('), std::string("a\0b", 3),
          std::string("\xFF\xFE"), ":set " + std::string(10000, '='), std::string(":select ==="),
          std::string(":open #"), std::string(":break 99999999999999999999"),
          std::string(":break -1")}) {
        ScriptRun run;
        addRehearsalCommands(run.host());
        run("pages\n" + line + "\n");
        EXPECT_EQ(run.status(), 1) << line.substr(0, 40);
        EXPECT_EQ(run.error().substr(0, 9), "script:2:") << line.substr(0, 40);
    }
}

} // namespace tessaran::test
