// Scripts in, all they give out: every file of tests/data/scripts.

#include "base/file.h"
#include "console/case_file.h"
#include "console/rehearsal.h"
#include "support/script_run.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

namespace tessaran::test {
namespace {

std::vector<std::string> caseNames() {
    std::vector<std::string> names;
    for (const auto& entry :
         std::filesystem::directory_iterator(TESSARAN_SOURCE_DIR "/tests/data/scripts"))
        if (entry.path().extension() == ".case")
            names.push_back(entry.path().stem().string());
    std::sort(names.begin(), names.end());
    return names;
}

TEST(CaseFiles, AreThere) {
    EXPECT_GE(caseNames().size(), 40u);
}

class Cases : public testing::TestWithParam<std::string> {};

TEST_P(Cases, GiveWhatTheyGave) {
    const auto text =
        base::readFile(TESSARAN_SOURCE_DIR "/tests/data/scripts/" + GetParam() + ".case");
    ASSERT_TRUE(text);
    const CaseFile wanted = parseCase(*text);
    ScriptRun run;
    addRehearsalCommands(run.host());
    for (const auto& [name, content] : wanted.given)
        run.folder().write(name, content);
    run(wanted.script);
    EXPECT_EQ(run.transcript(), wanted.transcript);
    EXPECT_EQ(run.error(), wanted.error.substr(0, wanted.error.find('\n')));
    EXPECT_EQ(run.status(), wanted.status);
    for (const auto& [name, content] : wanted.files)
        EXPECT_EQ(run.folder().read(name) + "\n", content) << name;
    for (const std::string& name : wanted.absent)
        EXPECT_FALSE(run.folder().has(name)) << name;
}

std::string caseName(const testing::TestParamInfo<std::string>& tested) {
    return tested.param;
}

INSTANTIATE_TEST_SUITE_P(Scripts, Cases, testing::ValuesIn(caseNames()), caseName);

} // namespace
} // namespace tessaran::test
