#include "app/document_data.h"
#include "grid/base_grid.h"
#include "grid/base_grid_commands.h"
#include "grid/base_grid_pages.h"
#include "grid/grid_output.h"
#include "support/recording_host.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>

namespace tessaran::grid {
namespace {

using host::DialogSession;
using test::RecordingHost;
using Purpose = DialogSession::Purpose;

class BaseGridPage : public testing::Test {
  protected:
    BaseGridPage() {
        host.documentSlot().setFactory([] { return std::make_unique<app::CDocData>(); });
    }

    // Runs zelk_setGrid with these steps in its dialog.
    void setGrid(std::function<void(DialogSession&)> steps) {
        host.dialogScript = std::move(steps);
        zelk_setGrid(host);
    }

    static void type(DialogSession& session, const char* label, const std::string& text) {
        const auto place = session.find(label, Purpose::set);
        ASSERT_TRUE(place) << label;
        ASSERT_TRUE(session.set(*place, text));
    }
    static void press(DialogSession& session, const char* label) {
        const auto place = session.find(label, Purpose::press);
        ASSERT_TRUE(place) << label;
        ASSERT_TRUE(session.press(*place));
    }
    static std::string shown(DialogSession& session, const char* label) {
        const auto place = session.find(label, Purpose::show);
        return place ? session.text(*place->control) : "no such control";
    }

    RecordingHost host;
};

TEST(BaseGrid, CountsAndWidthsThatReadAsZeroBecomeTen) {
    BaseGrid base{"", "x7", "0.5", "-3", "0.5", "", "0"};
    const auto resets = fillCountsAndWidths(base);
    EXPECT_EQ(base, (BaseGrid{"10", "10", "10", "-3", "0.5", "", "0"}));
    ASSERT_EQ(resets.size(), 2u); // the empty one is no surprise
    EXPECT_EQ(resets[0].text, "x7");
    EXPECT_EQ(resets[1].what, "cell width in X direction");
}

TEST(BaseGrid, SetsUpAGridThatDescribesItselfTheSame) {
    myGrid grid;
    const BaseGrid base{"4", "3", "2.500000", "1.000000", "90.000000", "1000.250000", "-7.000000"};
    ASSERT_TRUE(setupFromBaseGrid(base, grid));
    EXPECT_EQ(baseGridOf(grid), base);
    EXPECT_NEAR(grid.nodePoint(1, 0).y, -4.5, 1e-6); // the X axis points up
    EXPECT_EQ(totalCells(base), 12);
    EXPECT_FALSE(setupFromBaseGrid({"1", "5", "1", "1", "0", "0", "0"}, grid)); // one column
    EXPECT_FALSE(setupFromBaseGrid({"0", "5", "1", "1", "0", "0", "0"}, grid));
    EXPECT_FALSE(setupFromBaseGrid({"5", "5", "1", "nan", "0", "0", "0"}, grid));
}

TEST_F(BaseGridPage, StoresWhatWasTypedOnOk) {
    setGrid([](DialogSession& session) {
        EXPECT_EQ(session.dialog().title(), "Define a Grid");
        EXPECT_EQ(shown(session, "Number of Cells in X Direction"), "10");
        type(session, "Number of Cells in X Direction", "100");
        type(session, "Number of Cells in Y Direction", "80");
        type(session, "Cell Width in X Direction", "2.5");
        type(session, "Rotation to X axis (degree)", "30");
        type(session, "X Coordinate of Grid Origin", "5000");
        EXPECT_EQ(shown(session, "Total number of Cells"), "8000");
        session.ok();
        EXPECT_TRUE(session.ended());
    });
    EXPECT_EQ(baseGrid(host),
              (BaseGrid{"100", "80", "2.5", "10", "30", "5000.000000", "0.000000"}));
    EXPECT_EQ(host.printed, "\nDocument Base Grid for this session is defined!");
    EXPECT_EQ(
        host.database.readRecord("ZELK_STABILITY_DICTIONARY", "ZelkBaseGrid").texts,
        (std::vector<std::string>{"100", "80", "2.5", "10", "5000.000000", "0.000000", "30"}));
    EXPECT_EQ(host.settings["Settings/GridXCellXW"], "2.5");
    EXPECT_EQ(host.settings["Settings/GridRotA"], "30");
    EXPECT_EQ(host.settings["Settings/GridOX"], "5000.000000");

    myGrid grid;
    ASSERT_TRUE(defineFromBaseGrid(host, grid));
    EXPECT_EQ(grid.nX(), 100);
}

TEST_F(BaseGridPage, CancelChangesNothingAndTabTestStoresNothing) {
    setGrid([](DialogSession& session) {
        type(session, "Number of Cells in X Direction", "77");
        session.cancel();
    });
    EXPECT_EQ(baseGrid(host), BaseGrid{});
    host.dialogScript = [](DialogSession& session) {
        type(session, "Number of Cells in X Direction", "78");
        session.ok();
        EXPECT_TRUE(session.ended());
    };
    tabTest(host);
    EXPECT_EQ(baseGrid(host), BaseGrid{});
    EXPECT_EQ(host.printed, "");
    EXPECT_TRUE(host.settings.empty());
}

TEST_F(BaseGridPage, RefusesBadCountsAndNumbersWithTheFocusThere) {
    setGrid([this](DialogSession& session) {
        struct Case {
            const char* label;
            const char* bad;
            const char* good;
            const char* message;
        };
        for (const Case& c :
             {Case{"Number of Cells in X Direction", "0", "5",
                   "Error: Size of cells should be larger than zero!"},
              Case{"Number of Cells in Y Direction", "-4", "5",
                   "Error: Size of cells should be larger than zero!"},
              Case{"Number of Cells in Y Direction", "2001", "2000",
                   "Please enter an integer between 1 and 2000."},
              Case{"Cell Width in Y Direction", "wide", "1", "Please enter a number."},
              Case{"X Coordinate of Grid Origin", "nan", "1", "Please enter a number."}}) {
            type(session, c.label, c.bad);
            session.ok();
            EXPECT_FALSE(session.ended());
            EXPECT_EQ(host.messages.back(), c.message);
            EXPECT_EQ(host::plainLabel(session.focused()->label), host::plainLabel(c.label));
            type(session, c.label, c.good);
        }
        const std::size_t messages = host.messages.size();
        session.ok();
        EXPECT_TRUE(session.ended());
        EXPECT_EQ(host.messages.size(), messages);
    });
}

TEST_F(BaseGridPage, ShowsTheOriginInUserCoordinatesAndKeepsItsDigitsUnlessEdited) {
    baseGrid(host) = {"10", "10", "1", "1", "0", "1000.123456", "2000.987654"};
    host.ucsOrigin = {1000.0, 2000.0, 0.0};
    host.values["LUPREC"] = 2;
    setGrid([](DialogSession& session) {
        EXPECT_EQ(shown(session, "X Coordinate of Grid Origin"), "0.12");
        EXPECT_EQ(shown(session, "Y Coordinate of Grid Origin"), "0.99");
        session.ok();
    });
    EXPECT_EQ(baseGrid(host).originX, "1000.123456");
    setGrid([](DialogSession& session) {
        type(session, "Y Coordinate of Grid Origin", "5");
        session.ok();
    });
    EXPECT_EQ(baseGrid(host).originX, "1000.123456");
    EXPECT_EQ(baseGrid(host).originY, "2005.000000");
}

TEST_F(BaseGridPage, GeometryCountsTheCellsUpToTheCorner) {
    baseGrid(host) = {"10", "10", "5", "5", "90", "100", "0"};
    setGrid([this](DialogSession& session) {
        // Along the grid's axes, which are turned by 90 degrees, the corner is at (40, 30).
        host.points = {{70.0, 40.0, 0.0}};
        host.numbers = {4.0, std::nan("")}; // 4 along X, Enter for 5 along Y
        press(session, "Geometry");
        EXPECT_EQ(shown(session, "Number of Cells in X Direction"), "10");
        EXPECT_EQ(shown(session, "Number of Cells in Y Direction"), "6");
        EXPECT_EQ(shown(session, "Cell Width in X Direction"), "4.000000");
        EXPECT_EQ(host.asked,
                  (std::vector<std::string>{"\nPick a opposite Point(up right corner): ",
                                            "\nWidth of Cells in X direction<5>",
                                            "\nWidth of Cells in Y direction<5>"}));
        // A corner on the wrong side changes nothing.
        host.points = {{100.0, -40.0, 0.0}};
        host.numbers = {1.0, 1.0};
        press(session, "Geometry");
        EXPECT_EQ(shown(session, "Number of Cells in X Direction"), "10");
    });
}

TEST_F(BaseGridPage, PicksTheOriginAndCellSizes) {
    host.ucsOrigin = {10.0, 0.0, 0.0};
    setGrid([this](DialogSession& session) {
        host.points = {{1.5, 2.5, 0.0}};
        press(session, "Pick a Point");
        EXPECT_EQ(host.asked.back(), "\nSpecify the orign point of grid (low-left corner): ");
        host.numbers = {7.0, 8.0};
        press(session, "Cell Size#1");
        EXPECT_EQ(host.asked.back(), "\nInput the size of a cell<10.000000> in X direction:");
        press(session, "Cell Size#2");
        EXPECT_EQ(host.asked.back(), "\nInput the size of a cell<10.000000> in Y direction:");
        session.ok();
    });
    EXPECT_EQ(baseGrid(host),
              (BaseGrid{"10", "10", "7.000000", "8.000000", "0", "11.500000", "2.500000"}));
    setGrid([this](DialogSession& session) {
        press(session, "Pick a Point"); // Escape
        EXPECT_EQ(host.asked.back(), "\nNew position:");
        session.ok();
    });
    EXPECT_EQ(baseGrid(host).originX, "11.500000");
}

TEST_F(BaseGridPage, SavesAndImportsADefinition) {
    const std::string file =
        (std::filesystem::temp_directory_path() / "tessaran_base_grid_test.grd").string();
    baseGrid(host) = {"12", "9", "2.5", "4", "0", "100", "200"};
    setGrid([&](DialogSession& session) {
        host.files = {file};
        press(session, "Save As");
        EXPECT_EQ(host.fileRequests.back().title, "Save Grid Definition to file: ");
        EXPECT_EQ(host.fileRequests.back().proposed, "Untitled.grd");
    });
    baseGrid(host) = BaseGrid{};
    setGrid([&](DialogSession& session) {
        host.files = {file};
        press(session, "Import From");
        EXPECT_EQ(host.messages.back(), "Grid file definition loaded!");
        host.files = {"/no/such/folder/plan.txt"};
        press(session, "Import From");
        EXPECT_EQ(host.messages.back(), "Unknown grid file !");
        host.files = {"/no/such/folder/plan.grd"};
        press(session, "Import From");
        EXPECT_EQ(host.messages.back(), "Grid file definition is not correct!");
        session.ok();
    });
    std::filesystem::remove(file);
    EXPECT_EQ(baseGrid(host), (BaseGrid{"12", "9", "2.500000", "4.000000", "0.000000", "100.000000",
                                        "200.000000"}));
}

// A page with nothing but the output fields.
class OutputPage final : public host::DialogPage {
  public:
    explicit OutputPage(GridOutput& output) : output_(output) {}
    void describe(host::PageBuilder& page) override {
        output_.describeFile(page);
        output_.describeDescription(page);
    }

  private:
    GridOutput& output_;
};

TEST(GridOutput, CompletesNamesAsksBeforeOverwritingAndSaves) {
    const auto folder = std::filesystem::temp_directory_path() / "tessaran_grid_output_test";
    std::filesystem::create_directories(folder);
    const std::string name = (folder / "ponds").string();
    RecordingHost host;
    myGrid grid;
    grid.setupGrid(2, 2, 1.0, 1.0, 0.0);
    GridOutput output(grid);
    OutputPage page(output);
    host::Dialog dialog("Output", {&page});
    DialogSession session(host, dialog);
    session.open();
    const auto field = session.find("Output File (.grd)", Purpose::set);
    ASSERT_TRUE(field);

    ASSERT_TRUE(session.set(*field, name));
    EXPECT_EQ(output.fileName(), name + ".grd");
    EXPECT_FALSE(output.save(host)); // nothing built
    output.markBuilt();
    EXPECT_FALSE(output.save(host)); // not confirmed
    EXPECT_EQ(host.questions.back(), "Grid value will be saved to < " + name + ".grd >");
    EXPECT_FALSE(output.mayRebuild(host));
    EXPECT_EQ(host.questions.back(), "Modified Grid is not saved yet! continue to rebuild");
    host.boxAnswers = {host::Answer::yes, host::Answer::ok};
    output.setDescription("Ponds");
    EXPECT_TRUE(output.mayClose(host)); // asks, saves
    EXPECT_EQ(host.questions[host.questions.size() - 2], "The Grid is not saved! Save it?");
    EXPECT_TRUE(output.saved());
    EXPECT_EQ(grid.title(), "Ponds");
    EXPECT_TRUE(output.mayRebuild(host));
    EXPECT_TRUE(std::filesystem::exists(name + ".grd"));

    ASSERT_TRUE(session.set(*field, (folder / "other").string()));
    ASSERT_TRUE(session.set(*field, name + ".GRD")); // another file where capitals count
    EXPECT_EQ(output.fileName(), name + ".GRD");
    ASSERT_TRUE(session.set(*field, name)); // exists; No brings the earlier name back
    EXPECT_EQ(host.questions.back(), "File Exists, Do you want to Overwrite it?");
    EXPECT_EQ(output.fileName(), name + ".GRD");
    host.boxAnswers = {host::Answer::yes};
    ASSERT_TRUE(session.set(*field, name));
    EXPECT_EQ(output.fileName(), name + ".grd");
    std::filesystem::remove_all(folder);
}

} // namespace
} // namespace tessaran::grid
