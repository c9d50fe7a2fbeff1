#include "base/file.h"
#include "drawing/database_builder.h"
#include "drawing/page_furniture.h"
#include "drawing/picture.h"

#include <cairo.h>
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <memory>
#include <unistd.h>

using namespace tessaran;
using namespace tessaran::drawing;
using host::Box2;
using host::Point2;

namespace {

constexpr Rgb kWhite{255, 255, 255};
constexpr Rgb kBlack{0, 0, 0};
constexpr Rgb kRed{255, 0, 0};
constexpr Rgb kGreen{0, 255, 0};

void add(Database& database, host::EntityGeometry geometry, int colour = 256,
         const std::string& layer = "0") {
    host::Entity entity;
    entity.layer = layer;
    entity.colour = colour;
    entity.geometry = std::move(geometry);
    const auto id = database.add(std::move(entity));
    ASSERT_TRUE(id) << id.error().text;
}

host::Loop square(double x0, double y0, double x1, double y1) {
    return {{{{x0, y0}}, {{x1, y0}}, {{x1, y1}}, {{x0, y1}}}};
}

class Picture : public ::testing::Test {
  protected:
    void SetUp() override {
        folder_ = std::filesystem::temp_directory_path() /
                  ("picture-" + std::to_string(::getpid()) + "-" +
                   ::testing::UnitTest::GetInstance()->current_test_info()->name());
        std::filesystem::create_directories(folder_);
        options.extent = Box2{{0, 0}, {100, 50}};
        options.width = 800;
    }
    void TearDown() override { std::filesystem::remove_all(folder_); }

    std::filesystem::path file(const char* name) const { return folder_ / name; }

    void draw() {
        const auto drawn = writePicture(database, file("map.png"), options);
        ASSERT_TRUE(drawn) << drawn.error().message();
        summary = *drawn;
        image_.reset(cairo_image_surface_create_from_png(file("map.png").c_str()));
        ASSERT_EQ(cairo_surface_status(image_.get()), CAIRO_STATUS_SUCCESS);
    }

    Rgb pixel(double x, double y) const {
        const unsigned char* bytes = cairo_image_surface_get_data(image_.get());
        const std::ptrdiff_t offset =
            static_cast<std::ptrdiff_t>(y) * cairo_image_surface_get_stride(image_.get()) +
            static_cast<std::ptrdiff_t>(x) * 4;
        return {bytes[offset + 2], bytes[offset + 1], bytes[offset]};
    }
    // The colour of a place of the world.
    Rgb at(double x, double y) const {
        const Point2 p =
            layOut(options.width, *options.extent, !options.title.empty()).place(Point2{x, y});
        return pixel(p.x, p.y);
    }
    // Whether anything but background lies in a box of the world.
    bool inked(const Box2& box) const {
        constexpr int kSteps = 120;
        for (int k = 0; k < kSteps * kSteps; ++k) {
            const double x = box.low.x + box.width() * (k % kSteps) / kSteps;
            const int row = k / kSteps;
            const double y = box.low.y + box.height() * row / kSteps;
            if (at(x, y) != options.background)
                return true;
        }
        return false;
    }

    Database database;
    PictureOptions options;
    PictureSummary summary;

  private:
    struct Destroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    std::filesystem::path folder_;
    std::unique_ptr<cairo_surface_t, Destroy> image_;
};

} // namespace

TEST_F(Picture, FillsHatchesWithHolesByTheEvenOddRule) {
    add(database, host::Hatch{{square(10, 10, 40, 40), square(20, 20, 30, 30)}}, 3);
    // A round hole: two half circles about 60,25 of radius 5.
    add(database, host::Hatch{{square(50, 10, 70, 40), {{{{55, 25}, 1.0}, {{65, 25}, 1.0}}}}}, 1);
    draw();
    EXPECT_EQ(at(15, 15), kGreen);
    EXPECT_EQ(at(25, 25), kWhite);
    EXPECT_EQ(at(60, 35), kRed);
    EXPECT_EQ(at(60, 28), kWhite);
    EXPECT_EQ(at(60, 21), kWhite); // the bow below the chord
    EXPECT_EQ(at(45, 25), kWhite);
    EXPECT_EQ(summary.drawn, 2u);
}

TEST_F(Picture, LeavesOutHiddenAndUnnamedLayers) {
    for (const char* name : {"Off", "Frozen", "A", "B"})
        ASSERT_TRUE(database.createLayer({name, 1}));
    add(database, host::Hatch{{square(0, 0, 10, 10)}}, 256, "Off");
    add(database, host::Hatch{{square(20, 0, 30, 10)}}, 256, "Frozen");
    add(database, host::Hatch{{square(40, 0, 50, 10)}}, 256, "A");
    add(database, host::Hatch{{square(60, 0, 70, 10)}}, 256, "B");
    host::Layer layer = *database.layer("Off");
    layer.on = false;
    ASSERT_TRUE(database.modifyLayer(layer));
    layer = *database.layer("Frozen");
    layer.frozen = true;
    ASSERT_TRUE(database.modifyLayer(layer));
    draw();
    EXPECT_EQ(at(5, 5), kWhite);
    EXPECT_EQ(at(25, 5), kWhite);
    EXPECT_EQ(at(45, 5), kRed); // by layer
    EXPECT_EQ(at(65, 5), kRed);
    options.layers = {"b"};
    draw();
    EXPECT_EQ(at(45, 5), kWhite);
    EXPECT_EQ(at(65, 5), kRed);
    EXPECT_EQ(summary.drawn, 1u);
}

TEST_F(Picture, ShowsWidthsArcsAndBlocks) {
    add(database,
        host::Polyline{host::Polyline::Form::light, {{{10, 10}}, {{40, 10}}}, false, 0, 6}, 1);
    add(database, host::Arc{{25, 25, 0}, 10, 0, std::acos(-1.0)}, 1); // the upper half
    host::Entity filled;
    filled.geometry = host::Hatch{{square(0, 0, 2, 1)}};
    filled.colour = host::colour::kByBlock;
    {
        DatabaseBuilder builder(database);
        builder.addBlock({"MARK", {0, 0, 0}, {filled}});
    }
    add(database, host::Insert{"MARK", {80, 10, 0}, {5, 10, 1}, std::acos(0.0)}, 3);
    draw();
    EXPECT_EQ(at(25, 12.5), kRed);
    EXPECT_EQ(at(25, 7.5), kRed);
    EXPECT_EQ(at(25, 13.5), kWhite);
    EXPECT_TRUE(inked({{24, 34.5}, {26, 35.5}}));
    EXPECT_FALSE(inked({{24, 14.5}, {26, 15.5}}));
    // 2 x 1, scaled to 10 x 10, turned left about 80,10: from 70,10 to 80,20.
    EXPECT_EQ(at(75, 15), kGreen);
    EXPECT_EQ(at(71, 19), kGreen);
    EXPECT_EQ(at(81, 11), kWhite);
}

TEST_F(Picture, PutsTextsWhereTheirJustificationSays) {
    using Across = host::Text::Across;
    using Up = host::Text::Up;
    add(database, host::Text{{50, 10, 0}, "HHHH", 4, 0, Across::left, Up::baseline});
    add(database, host::Text{{50, 25, 0}, "HHHH", 4, 0, Across::right, Up::top});
    add(database, host::Text{{50, 40, 0}, "HHHH", 4, 0, Across::centre, Up::middle});
    draw();
    EXPECT_TRUE(inked({{50.2, 10.2}, {56, 13.8}}));
    EXPECT_FALSE(inked({{40, 8}, {49.8, 16}}));
    EXPECT_FALSE(inked({{45, 14.3}, {60, 16}})); // capitals are as high as the text
    EXPECT_FALSE(inked({{45, 8}, {60, 9.7}}));
    EXPECT_TRUE(inked({{44, 21.2}, {49.8, 24.8}}));
    EXPECT_FALSE(inked({{50.3, 18}, {60, 30}}));
    EXPECT_FALSE(inked({{40, 25.3}, {50, 30}}));
    EXPECT_TRUE(inked({{45, 38.2}, {49, 41.8}}));
    EXPECT_TRUE(inked({{51, 38.2}, {55, 41.8}}));
    EXPECT_FALSE(inked({{40, 42.4}, {60, 44}}));
}

TEST_F(Picture, ShowsTheForegroundAgainstAnyBackground) {
    add(database, host::Hatch{{square(10, 10, 20, 20)}}, 7);
    draw();
    EXPECT_EQ(at(15, 15), kBlack);
    options.background = {20, 20, 20};
    draw();
    EXPECT_EQ(at(15, 15), kWhite);
    EXPECT_EQ(at(50, 25), (Rgb{20, 20, 20}));
}

TEST_F(Picture, DrawsAGridsCellsOverTheDrawing) {
    options.overlay = [](Canvas& canvas) {
        host::CellPatch patch;
        patch.origin = {10, 10};
        patch.xStep = {10, 0};
        patch.yStep = {0, 10};
        patch.nX = 2;
        patch.nY = 2;
        patch.filled = true;
        patch.colours = {1, 0, 3, 5}; // the lower row first
        canvas.cells(patch);
    };
    draw();
    EXPECT_EQ(at(15, 15), kRed);
    EXPECT_EQ(at(25, 15), kWhite);
    EXPECT_EQ(at(15, 25), kGreen);
    EXPECT_EQ(at(25, 25), (Rgb{0, 0, 255}));
}

TEST_F(Picture, StandsWhateverTheDrawingHolds) {
    options.extent.reset();
    const auto drawn = [&] { return writePicture(database, file("any.png"), options).ok(); };
    EXPECT_TRUE(drawn()); // empty
    add(database, host::PointMark{{5e6, 3e6, 0}});
    EXPECT_TRUE(drawn()); // a single place
    add(database, host::Line{{5e6, 3e6, 0}, {5e6 + 1e-9, 3e6, 0}});
    EXPECT_TRUE(drawn());
    add(database, host::Line{{1e300, -1e300, 0}, {0, 1e308, 0}});
    add(database, host::Circle{{1e200, 0, 0}, 1e-300});
    add(database, host::Circle{{0, 0, 0}, 1e150});
    add(database, host::Text{{0, 0, 0}, "\xFF\x01 %%c%%d %%", 1e-9});
    add(database, host::Text{{0, 0, 0}, "\xFF", 1e11, 1e300});
    add(database, host::Polyline{host::Polyline::Form::light,
                                 {{{0, 0}, 1e300}, {{1, 0}, -1e-300}, {{1, 0}}},
                                 true,
                                 0,
                                 1e300});
    add(database, host::Hatch{{square(-1e11, -1e11, 1e11, 1e11), {{{{0, 0}}}}}});
    EXPECT_TRUE(drawn());
    options.extent = Box2{{5e6, 3e6}, {5e6 + 1e-12, 3e6 + 1e-12}};
    EXPECT_FALSE(drawn()); // sides that doubles cannot tell apart
    options.extent = Box2{{-1e100, -1e100}, {1e100, 1e100}};
    EXPECT_TRUE(drawn());
    options.extent = Box2{{0, 0}, {1e-3, 1e3}};
    EXPECT_TRUE(drawn());
}

TEST_F(Picture, CutsWhatReachesFarBeyondThePage) {
    // A diagonal through 50,25 that ends a thousand kilometres away, and an area around everything.
    add(database, host::Hatch{{square(-1e9, -1e9, 1e9, 1e9)}}, 2);
    add(database,
        host::Polyline{host::Polyline::Form::light,
                       {{{-1e9 + 50, -1e9 + 25}}, {{1e9 + 50, 1e9 + 25}}},
                       false,
                       0,
                       4},
        1);
    draw();
    EXPECT_EQ(at(50, 25), kRed);
    EXPECT_EQ(at(70, 45), kRed);
    EXPECT_EQ(at(10, 45), (Rgb{255, 255, 0}));
}

TEST_F(Picture, WritesVectorFormatsAndRefusesTheRest) {
    add(database, host::Circle{{50, 25, 0}, 10}, 1);
    options.title = "Panel <3> & more";
    ASSERT_TRUE(writePicture(database, file("a.SVG"), options));
    ASSERT_TRUE(writePicture(database, file("a.pdf"), options));
    EXPECT_NE(base::readFile(file("a.SVG"))->find("<svg"), std::string::npos);
    EXPECT_EQ(base::readFile(file("a.pdf"))->substr(0, 5), "%PDF-");

    // Whatever is refused leaves the earlier file alone.
    const std::string before = *base::readFile(file("a.pdf"));
    EXPECT_FALSE(writePicture(database, file("a.bmp"), options));
    EXPECT_FALSE(writePicture(database, file("missing") / "a.png", options));
    for (const int width : {0, -5, 63, 10001}) {
        options.width = width;
        EXPECT_FALSE(writePicture(database, file("a.pdf"), options));
    }
    options.width = 64;
    options.layers = {"nowhere"};
    EXPECT_FALSE(writePicture(database, file("a.pdf"), options));
    options.layers.clear();
    for (const Box2 extent : {Box2{}, Box2{{10, 0}, {0, 10}}, Box2{{0, 0}, {0, 10}},
                              Box2{{0, 0}, {NAN, 10}}, Box2{{0, 0}, {INFINITY, 10}}}) {
        options.extent = extent;
        EXPECT_FALSE(writePicture(database, file("a.pdf"), options));
    }
    EXPECT_EQ(*base::readFile(file("a.pdf")), before);
    EXPECT_FALSE(std::filesystem::exists(file("a.bmp")));
}

TEST(ScaleBar, HasARoundLength) {
    EXPECT_EQ(roundLength(100.0), 100.0);
    EXPECT_EQ(roundLength(99.0), 50.0);
    EXPECT_EQ(roundLength(49.0), 20.0);
    EXPECT_EQ(roundLength(1.5), 1.0);
    EXPECT_DOUBLE_EQ(roundLength(0.0071), 0.005);
}

TEST(ColourTable, HoldsTheHostsColours) {
    EXPECT_EQ(tableColour(1), (Rgb{255, 0, 0}));
    EXPECT_EQ(tableColour(5), (Rgb{0, 0, 255}));
    EXPECT_EQ(tableColour(8), (Rgb{128, 128, 128}));
    EXPECT_EQ(tableColour(10), (Rgb{255, 0, 0}));
    EXPECT_EQ(tableColour(11), (Rgb{255, 127, 127}));
    EXPECT_EQ(tableColour(12), (Rgb{165, 0, 0}));
    EXPECT_EQ(tableColour(23), (Rgb{165, 103, 82}));
    EXPECT_EQ(tableColour(30), (Rgb{255, 127, 0}));
    EXPECT_EQ(tableColour(90), (Rgb{0, 255, 0}));
    EXPECT_EQ(tableColour(151), (Rgb{127, 191, 255}));
    EXPECT_EQ(tableColour(244), (Rgb{127, 0, 31}));
    EXPECT_EQ(tableColour(250), (Rgb{51, 51, 51}));
    EXPECT_EQ(tableColour(255), (Rgb{255, 255, 255}));
    EXPECT_EQ(shownColour(256, {255, 255, 255}), (Rgb{0, 0, 0}));
    EXPECT_EQ(shownColour(7, {30, 30, 30}), (Rgb{255, 255, 255}));
}
