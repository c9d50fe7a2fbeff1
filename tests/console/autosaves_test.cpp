#include "console/autosaves.h"
#include "support/temporary_folder.h"

#include <gtest/gtest.h>

using namespace tessaran;
using namespace tessaran::console;

TEST(Autosaves, CopyWhatIsOpenAndChangedAndLeaveNothingBehind) {
    const test::TemporaryFolder folder;
    Workspace workspace;
    {
        Autosaves autosaves(folder.path());
        autosaves.offer(workspace);
        EXPECT_FALSE(folder.has("Drawing1.autosave.dxf")) << "nothing to lose";
        host::Entity point;
        point.geometry = host::PointMark{};
        ASSERT_TRUE(workspace.database().add(point));
        autosaves.offer(workspace);
        EXPECT_TRUE(folder.has("Drawing1.autosave.dxf"));
        workspace.addEmpty();
        ASSERT_TRUE(workspace.database().add(point));
        autosaves.offer(workspace);
        EXPECT_TRUE(folder.has("Drawing2.autosave.dxf"));
        workspace.closeCurrent();
        autosaves.offer(workspace);
        EXPECT_FALSE(folder.has("Drawing2.autosave.dxf")) << "closed in good order";
    }
    EXPECT_FALSE(folder.has("Drawing1.autosave.dxf"));
}
