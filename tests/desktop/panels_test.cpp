// The panels: what they tell, and that what is changed in them is a command of the script.

#include "desktop/entity_facts.h"
#include "desktop/grid_histogram.h"
#include "desktop/grid_panel.h"
#include "desktop/layer_panel.h"
#include "desktop/property_panel.h"
#include "grid/grid_file.h"
#include "support/script_run.h"
#include "user.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QLineEdit>
#include <QTest>
#include <cmath>

namespace tessaran::test {
namespace {

using desktop::CommandLine;
using desktop::LayerPanel;

QTreeWidgetItem* layerItem(User& user, const QString& name) {
    const auto found =
        user.window().layers().list().findItems(name, Qt::MatchExactly, LayerPanel::kName);
    return found.isEmpty() ? nullptr : found.front();
}

void clickCell(QTreeWidget& list, QTreeWidgetItem* item, int column) {
    const QRect cell = list.visualRect(list.indexFromItem(item, column));
    const QPoint at(cell.left() + 12, cell.center().y());
    QTest::mouseClick(list.viewport(), Qt::LeftButton, {}, at);
}

TEST(WindowPanels, LayersAreSwitchedByTheirBoxesThroughTheLayerCommand) {
    User user;
    ASSERT_TRUE(user.drawing().createLayer({.name = "ROOF FALLS", .colour = 3}).ok());
    user.look([&] {
        auto* item = layerItem(user, "ROOF FALLS");
        ASSERT_NE(item, nullptr);
        EXPECT_EQ(item->text(LayerPanel::kColour), "3");
        clickCell(user.window().layers().list(), item, LayerPanel::kOn);
    });
    user.look([&] {
        EXPECT_FALSE(user.drawing().layer("ROOF FALLS")->on);
        auto* item = layerItem(user, "ROOF FALLS");
        QTest::mouseDClick(user.window().layers().list().viewport(), Qt::LeftButton, {},
                           user.window().layers().list().visualItemRect(item).center());
        clickCell(user.window().layers().list(), item, LayerPanel::kFrozen);
    });
    user.work();
    EXPECT_THAT(user.script(), ::testing::StartsWith("LAYER\nOFF\nROOF FALLS\n\n"));
    EXPECT_THAT(user.script(), ::testing::HasSubstr("LAYER\nFreeze\nROOF FALLS\n\n"));
}

TEST(WindowPanels, PropertiesTellAndChangeTheSelection) {
    User user;
    ASSERT_TRUE(user.drawing().createLayer({.name = "GOB"}).ok());
    host::Entity entity;
    host::Polyline square;
    square.closed = true;
    for (const host::Point2 at : {host::Point2{10, 10}, {20, 10}, {20, 20}, {10, 20}})
        square.vertices.push_back({.at = at});
    entity.geometry = square;
    const auto id = *user.drawing().add(entity);
    user.clickAt({15, 10}).look([&] {
        const auto facts = desktop::factsOf(*user.drawing().record(id));
        EXPECT_THAT(facts, ::testing::Contains(desktop::Fact{"Length", "40.0000"}));
        EXPECT_THAT(facts, ::testing::Contains(desktop::Fact{"Area", "100.0000"}));
        EXPECT_GT(user.window().properties().facts().topLevelItemCount(), 4);
        QComboBox& layer = user.window().properties().layer();
        layer.setCurrentIndex(layer.findText("GOB"));
        Q_EMIT layer.textActivated("GOB");
    });
    user.look([&] { EXPECT_EQ(user.drawing().find(id)->layer, "GOB"); });
    user.menu("Undo CHPROP").look([&] { EXPECT_EQ(user.drawing().find(id)->layer, "0"); });
    user.work();
    EXPECT_THAT(user.script(), ::testing::HasSubstr("CHPROP\n#"));
}

// A polyline's width is the level of a defect.
TEST(WindowPanels, AValueIsTypedOverTheOneShown) {
    User user;
    host::Entity entity;
    host::Polyline line;
    line.vertices = {{.at = {10, 10}}, {.at = {30, 10}}};
    line.constantWidth = 0.5;
    entity.geometry = line;
    const auto first = *user.drawing().add(entity);
    line.vertices = {{.at = {10, 30}}, {.at = {30, 30}}};
    line.elevation = 2.0;
    entity.geometry = line;
    const auto second = *user.drawing().add(entity);
    const auto width = [&](host::EntityId id) {
        return std::get<host::Polyline>(user.drawing().find(id)->geometry).constantWidth;
    };
    const auto overtype = [&](const char* name, const char* value) {
        user.look([&user, name, value] {
            QTreeWidget& facts = user.window().properties().facts();
            const auto found = facts.findItems(name, Qt::MatchExactly);
            ASSERT_EQ(found.size(), 1);
            clickCell(facts, found.front(), 1);
            auto* edit = facts.viewport()->findChild<QLineEdit*>();
            ASSERT_NE(edit, nullptr);
            QTest::keyClicks(edit, value);
            QTest::keyClick(edit, Qt::Key_Return);
        });
        user.look([] {}).look([] {}); // the list takes the value a moment later
    };
    user.clickAt({20, 10});
    overtype("Constant width", "3");
    user.look([&] {
        EXPECT_EQ(width(first), 3.0);
        EXPECT_EQ(width(second), 0.5);
    });
    user.menu("Undo CHPROP").look([&] { EXPECT_EQ(width(first), 0.5); });
    user.clickAt({20, 30}); // both
    overtype("Constant width", "4");
    overtype("Elevation", "wide"); // refused: no number
    user.look([&] {
        EXPECT_EQ(width(first), 4.0);
        EXPECT_EQ(width(second), 4.0);
        EXPECT_EQ(std::get<host::Polyline>(user.drawing().find(second)->geometry).elevation, 2.0);
        QTreeWidget& facts = user.window().properties().facts();
        EXPECT_EQ(facts.findItems("Elevation", Qt::MatchExactly).front()->text(1), "(various)");
    });
    user.work();
}

TEST(WindowPanels, LinesTypedAreThereInTheNextRun) {
    const TemporaryFolder kept;
    User first({.profile = kept / "profile.ini"});
    first.type("POINT 1,1").type("ZOOM E");
    first.work();
    User second({.profile = kept / "profile.ini"});
    second.look([&] {
        CommandLine& line = second.window().commands().line();
        QTest::keyClick(&line, Qt::Key_Up);
        EXPECT_EQ(line.text(), "ZOOM E");
        QTest::keyClick(&line, Qt::Key_Up);
        EXPECT_EQ(line.text(), "POINT 1,1");
        QTest::keyClick(&line, Qt::Key_Escape);
    });
    second.work();
}

// --- grids --------------------------------------------------------------------------------------

// 3 x 2 cells of 10 by 10 from 20,20: values 1 to 6, the last without value.
void writeGrid(const std::filesystem::path& path) {
    grid::myGrid grid;
    ASSERT_TRUE(grid.setupGrid(3, 2, 10.0, 10.0, 0.0));
    grid.setOrigin(20.0, 20.0, 0.0);
    for (int k = 0; k < 6; ++k)
        grid.setValue(k % 3, k / 3, k < 5 ? k + 1.0 : -1e20);
    base::NoProgress progress;
    ASSERT_TRUE(grid::writeGridFile(grid, path.string(), progress).ok());
}

TEST(WindowPanels, AClickOnAShownGridTellsTheCell) {
    User user;
    writeGrid(user.folder() / "roof.grd");
    user.look([&] {
        user.window().showGrid(QString::fromStdString((user.folder() / "roof.grd").string()));
    });
    user.clickAt({35, 35}).look([&] {
        EXPECT_THAT(user.window().grid().cellText().toStdString(),
                    ::testing::HasSubstr("Column 1, row 1: 5\n"));
    });
    user.clickAt({45, 35}).look([&] {
        EXPECT_THAT(user.window().grid().cellText().toStdString(),
                    ::testing::HasSubstr("Column 2, row 1: no value"));
    });
    user.clickAt({55, 55}).look([&] { // beside the grid: the drawing's again
        EXPECT_THAT(user.window().grid().cellText().toStdString(),
                    ::testing::HasSubstr("Column 2"));
    });
    user.work();
}

TEST(WindowPanels, StatisticsAndHistogramCountTheCellsWithAValue) {
    grid::myGrid grid;
    ASSERT_TRUE(grid.setupGrid(3, 2, 10.0, 5.0, 0.0));
    for (int k = 0; k < 6; ++k)
        grid.setValue(k % 3, k / 3, k < 5 ? k + 1.0 : -1e20);
    const desktop::GridStatistics s = desktop::statisticsOf(grid);
    EXPECT_EQ(s.withValue, 5u);
    EXPECT_EQ(s.withoutValue, 1u);
    EXPECT_EQ(s.least, 1.0);
    EXPECT_EQ(s.most, 5.0);
    EXPECT_EQ(s.mean, 3.0);
    EXPECT_DOUBLE_EQ(s.deviation, std::sqrt(2.0));
    EXPECT_EQ(s.lowerQuarter, 2.0);
    EXPECT_EQ(s.median, 3.0);
    EXPECT_EQ(s.upperQuarter, 4.0);
    EXPECT_EQ(s.area, 250.0);
    EXPECT_EQ(desktop::histogramOf(grid, 2), (std::vector<std::size_t>{2, 3}));
    grid.fillValue(7.0);
    EXPECT_EQ(desktop::histogramOf(grid, 3), (std::vector<std::size_t>{6, 0, 0}));
    grid.fillValue(-1e20);
    EXPECT_TRUE(desktop::histogramOf(grid, 3).empty());
    EXPECT_EQ(desktop::statisticsOf(grid).withValue, 0u);
}

// --- the command behind the property panel, without a window
// -----------------------------------------

TEST(ChangeProperties, RefusesWhatTheDrawingDoesNotKnow) {
    const auto outcome = [](const std::string& lines) {
        ScriptRun run;
        host::Entity entity;
        entity.geometry = host::PointMark{{1, 1, 0}};
        EXPECT_TRUE(run.drawing().add(entity).ok());
        run("CHPROP\nall\n\n" + lines + "\n");
        const host::Entity& changed = *run.drawing().find(run.drawing().lastEntity());
        return std::tuple(run.status(), changed.colour, changed.linetype);
    };
    const int byLayer = host::colour::kByLayer;
    EXPECT_EQ(outcome("Color\n3"), std::tuple(0, 3, "ByLayer"));
    EXPECT_EQ(outcome("Color\n256"), std::tuple(1, byLayer, "ByLayer"));
    EXPECT_EQ(outcome("LAyer\nNOWHERE"), std::tuple(1, byLayer, "ByLayer"));
    EXPECT_EQ(outcome("LType\nContinuous"), std::tuple(0, byLayer, "Continuous"));
    EXPECT_EQ(outcome("LType\nWAVES"), std::tuple(1, byLayer, "ByLayer"));
}

TEST(ChangeProperties, ChangesWhatEachKindHas) {
    ScriptRun run;
    host::Polyline path;
    path.vertices = {{.at = {0, 0}, .startWidth = 1.0}, {.at = {9, 0}}, {.at = {9, 9}}};
    host::Text note;
    note.text = "old";
    const auto add = [&](host::EntityGeometry geometry) {
        return *run.drawing().add({{}, "0", 256, "ByLayer", std::move(geometry)});
    };
    const auto polyline = add(path);
    const auto text = add(note);
    run("CHPROP\nall\n\nWidth\n2.5\nElevation\n-7\nCLosed\nyes\nTExt\n\\:new one\nHeight\n3\n\n"
        "CHPROP\nall\n\nHeight\n-1\n\n");
    ASSERT_EQ(run.status(), 0) << run.report();
    const auto& changed = std::get<host::Polyline>(run.drawing().find(polyline)->geometry);
    EXPECT_EQ(changed.constantWidth, 2.5);
    EXPECT_EQ(changed.vertices[0].startWidth, 0.0);
    EXPECT_EQ(changed.elevation, -7.0);
    EXPECT_TRUE(changed.closed);
    const auto& written = std::get<host::Text>(run.drawing().find(text)->geometry);
    EXPECT_EQ(written.text, ":new one");
    EXPECT_EQ(written.height, 3.0);
    EXPECT_THAT(run.transcript(), ::testing::HasSubstr("1 could not be changed"));
    EXPECT_THAT(run.transcript(), ::testing::HasSubstr("2 could not be changed")); // height -1
}

} // namespace
} // namespace tessaran::test
