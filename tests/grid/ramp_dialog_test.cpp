#include "grid/my_grid.h"
#include "grid/ramp_dialog.h"
#include "support/recording_host.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace tessaran::grid {
namespace {

using host::DialogSession;
using test::RecordingHost;
using testing::ElementsAre;
using Purpose = DialogSession::Purpose;

void set(DialogSession& session, const char* label, const char* text) {
    const auto place = session.find(label, Purpose::set);
    ASSERT_TRUE(place) << label;
    EXPECT_TRUE(session.set(*place, text));
}

base::Result<void> press(DialogSession& session, const char* label) {
    return session.press(session.find(label, Purpose::press).value());
}

void select(DialogSession& session, int row) {
    EXPECT_TRUE(session.select(session.find("Break Values", Purpose::select).value(), {row}));
}

TEST(RampDialog, BuildsFromRangeAndBandsAndDeletesBreaks) {
    RecordingHost host;
    host.boxAnswers = {host::Answer::no, host::Answer::yes};
    host.dialogScript = [](DialogSession& session) {
        set(session, "Lowest", "20");
        set(session, "Highest", "100");
        set(session, "Bands", "4");
        EXPECT_FALSE(press(session, "Delete")); // nothing selected: disabled
        select(session, 1);
        EXPECT_TRUE(press(session, "Delete")); // answered No
        select(session, 1);
        EXPECT_TRUE(press(session, "Delete"));
        session.ok();
    };
    const std::optional<ColourRamp> ramp = askColourRamp(host, 0.0, 10.0, 5);
    ASSERT_TRUE(ramp);
    EXPECT_THAT(ramp->breaks(), ElementsAre(20, 60, 80, 100));
    EXPECT_THAT(ramp->colours(), ElementsAre(174, 210, 50)); // trunc(i * 9 / 2) = 0, 4, 9
    EXPECT_THAT(host.questions,
                ElementsAre("Delete value break point: 40", "Delete value break point: 40"));
}

TEST(RampDialog, RefusesBadNumbersAndCancels) {
    RecordingHost host;
    host.dialogScript = [](DialogSession& session) {
        set(session, "Bands", "0");
        session.ok();
        EXPECT_FALSE(session.ended());
        set(session, "Bands", "many");
        session.ok();
        EXPECT_FALSE(session.ended());
        session.cancel();
    };
    EXPECT_FALSE(askColourRamp(host, 0.0, 10.0, 5));
    EXPECT_THAT(host.messages, ElementsAre("Please enter an integer between 1 and 1000.",
                                           testing::HasSubstr("Please enter")));
}

TEST(RampDialog, SetsTheGridsTable) {
    RecordingHost host;
    host.dialogScript = [](DialogSession& session) {
        set(session, "Bands", "2");
        session.ok();
    };
    myGrid grid;
    ASSERT_TRUE(grid.setupGrid(2, 2, 1.0, 1.0, 0.0));
    grid.setValue(0, 0, 8.0);
    EXPECT_TRUE(editColours(host, grid));
    EXPECT_EQ(grid.bandCount(), 2);
    EXPECT_EQ(grid.breakValue(1), 4.0);
    EXPECT_EQ(grid.colourOfValue(3.9), 174);
    EXPECT_EQ(grid.colourOfValue(4.0), 50);
}

} // namespace
} // namespace tessaran::grid
