#include "support/script_run.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

using tessaran::test::ScriptRun;
using testing::HasSubstr;

TEST(Script, DrawsAndUndoes) {
    ScriptRun run;
    run("LINE\n0,0\n10,0\n@0,5\n\nUNDO\n\n_line 1,1 2,2\n\n");
    EXPECT_EQ(run.status(), 0) << run.report();
    EXPECT_EQ(run.drawing().entityCount(), 1u);
}
