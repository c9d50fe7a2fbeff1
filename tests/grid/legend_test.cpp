#include "grid/legend.h"
#include "support/recording_host.h"

#include <gtest/gtest.h>

namespace tessaran::grid {
namespace {

using geometry::Point2;
using geometry::Point3;
using host::Entity;
using host::EntityId;
using test::RecordingHost;

const std::vector<ColourBreak> kTable = ColourRamp::between(0.0, 100.0, 5).table();

TEST(Legend, StacksABoxAndALabelForEachBand) {
    RecordingHost host;
    host.ucsOrigin = {1000.0, 0.0, 0.0};
    host.points = {{30.0, 10.0, 0.0}, {10.0, 60.0, 0.0}}; // any two opposite corners
    EXPECT_TRUE(drawLegend(host, kTable));
    EXPECT_EQ(host.asked[0], "\nPick a Position Point:");
    EXPECT_EQ(host.asked[1], "\nPick Another Corner Point:");
    const std::vector<EntityId> ids = host.database.group("ZELK Lengend");
    ASSERT_EQ(ids.size(), 10u);

    const Entity& second = *host.database.find(ids[2]); // the band 20 to 40
    EXPECT_EQ(second.colour, 190);
    const auto& loop = std::get<host::Hatch>(second.geometry).loops.at(0);
    EXPECT_EQ(loop.vertices[0].at, (Point2{1010.0, 20.0}));
    EXPECT_EQ(loop.vertices[2].at, (Point2{1030.0, 30.0}));
    const auto& text = std::get<host::Text>(host.database.find(ids[3])->geometry);
    EXPECT_EQ(text.text, "20 - 40");
    EXPECT_DOUBLE_EQ(text.height, 3.3);
    EXPECT_EQ(text.at.y, 25.0);
    EXPECT_GT(text.at.x, 1030.0);
}

TEST(Legend, EndsOnCancelFlatBoxesAndMissingBands) {
    RecordingHost host;
    EXPECT_FALSE(drawLegend(host, kTable)); // first point cancelled
    host.points = {{1.0, 1.0, 0.0}};
    EXPECT_FALSE(drawLegend(host, kTable)); // second one
    EXPECT_EQ(host.printed, "");
    host.points = {{1.0, 1.0, 0.0}, {1.0, 5.0, 0.0}};
    EXPECT_FALSE(drawLegend(host, kTable));
    EXPECT_EQ(host.printed, "\nInvalid point pair!");
    host.asked.clear();
    EXPECT_FALSE(drawLegend(host, {{0.0, 1}}));
    EXPECT_TRUE(host.asked.empty());
    EXPECT_EQ(host.database.entityCount(), 0u);
}

} // namespace
} // namespace tessaran::grid
