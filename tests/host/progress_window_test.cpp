#include "host/progress_window.h"
#include "support/recording_host.h"

#include <gtest/gtest.h>

namespace tessaran::host {
namespace {

using test::RecordingHost;

TEST(ProgressWindow, ShowsThePercentageInItsCaptionWhenItChanges) {
    RecordingHost host;
    CProgressWnd window(host);
    EXPECT_EQ(host.captions.back(), "Progress");
    window.setRange(0, 200);
    window.setText("Step 3");
    EXPECT_EQ(window.setPosition(50), 0);
    EXPECT_EQ(host.captions.back(), "Progress [Step 325%]");
    const std::size_t captions = host.captions.size();
    EXPECT_EQ(window.setPosition(51), 50); // still 25 %
    EXPECT_EQ(host.captions.size(), captions);
    window.offsetPosition(1);
    EXPECT_EQ(window.percent(), 26);
}

TEST(ProgressWindow, DoesNotTakeTheLowerBoundOffThePosition) {
    RecordingHost host;
    CProgressWnd window(host, "Run");
    window.setRange(100, 200, 10);
    window.setPosition(150);
    EXPECT_EQ(window.percent(), 150);
    window.stepIt();
    EXPECT_EQ(window.percent(), 160);
    window.setRange(5, 5);
    window.setPosition(5);
    EXPECT_EQ(window.percent(), 0);
    window.setRange(0, 2000000000);
    window.setPosition(1500000000);
    EXPECT_EQ(window.percent(), 75);
}

TEST(ProgressWindow, IsCancelledByEscapeOrItsButtonUntilDestroyed) {
    RecordingHost host;
    CProgressWnd window(host);
    window.peekAndPump();
    EXPECT_FALSE(window.cancelled());
    window.allowEscape(false);
    host.events = {.escape = true, .cancelClicked = false};
    window.peekAndPump();
    EXPECT_FALSE(window.cancelled());
    host.events = {.escape = false, .cancelClicked = true};
    WindowProgress progress(window);
    EXPECT_TRUE(progress.cancelled());
    EXPECT_TRUE(progress.cancelled());

    CProgressWnd another(host);
    host.events = {.escape = true, .cancelClicked = false};
    another.peekAndPump();
    EXPECT_TRUE(another.cancelled());
}

TEST(ProgressWindow, ComesBackWhereItStood) {
    RecordingHost host;
    host.settings["Settings/X"] = "300";
    host.settings["Settings/Y"] = "-40";
    {
        CProgressWnd window(host);
        EXPECT_EQ(host.windowCorner, (Point2{300.0, -40.0}));
        host.windowCorner = {12.0, 34.0};
    }
    EXPECT_EQ(host.settings["Settings/X"], "12");
    EXPECT_EQ(host.settings["Settings/Y"], "34");
}

} // namespace
} // namespace tessaran::host
