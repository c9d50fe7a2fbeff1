// Scripts in, all they give out: every file of tests/data/scripts.

#include "base/file.h"
#include "console/case_file.h"
#include "console/rehearsal.h"
#include "support/comma_locale.h"
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

void expectCase(const std::string& name) {
    const auto text = base::readFile(TESSARAN_SOURCE_DIR "/tests/data/scripts/" + name + ".case");
    ASSERT_TRUE(text);
    const CaseFile wanted = parseCase(*text);
    ScriptRun run;
    addRehearsalCommands(run.host());
    for (const auto& [file, content] : wanted.given)
        run.folder().write(file, content);
    run(wanted.script);
    EXPECT_EQ(run.transcript(), wanted.transcript);
    EXPECT_EQ(run.error(), wanted.error.substr(0, wanted.error.find('\n')));
    EXPECT_EQ(run.status(), wanted.status);
    for (const auto& [file, content] : wanted.files)
        EXPECT_EQ(run.folder().read(file) + "\n", content) << file;
    for (const std::string& file : wanted.absent)
        EXPECT_FALSE(run.folder().has(file)) << file;
}

class Cases : public testing::TestWithParam<std::string> {};

TEST_P(Cases, GiveWhatTheyGave) {
    expectCase(GetParam());
}

TEST(CaseFiles, GiveTheSameUnderACommaLocale) {
    const CommaLocale comma;
    ASSERT_TRUE(comma.inForce());
    for (const std::string& name : caseNames()) {
        SCOPED_TRACE(name);
        expectCase(name);
    }
}

std::string caseName(const testing::TestParamInfo<std::string>& tested) {
    return tested.param;
}

INSTANTIATE_TEST_SUITE_P(Scripts, Cases, testing::ValuesIn(caseNames()), caseName);

} // namespace
} // namespace tessaran::test
