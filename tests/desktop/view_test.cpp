// The view: what zooming and panning keep, and that the picture at rest is exact.

#include "dialog_bench.h"
#include "user.h"

#include <gtest/gtest.h>

#include <QProcess>
#include <QTest>
#include <QToolBar>
#include <cmath>

namespace tessaran::test {
namespace {

using host::Point2;

void addMany(drawing::Database& drawing, int count) {
    for (int k = 0; k < count; ++k) {
        host::Entity entity;
        entity.colour = 1 + k % 7;
        host::Polyline polyline;
        const double x = 5.0 + 0.9 * (k % 100);
        const int row = k / 100;
        const double y = 5.0 + 0.9 * row;
        for (int v = 0; v < 6; ++v)
            polyline.vertices.push_back({.at = {x + 0.1 * v, y + 0.3 * (v % 2)}});
        polyline.vertices[2].bulge = 0.5;
        entity.geometry = polyline;
        ASSERT_TRUE(drawing.add(entity).ok());
    }
}

void wheel(desktop::DrawingView& view, QPointF at, int notches) {
    QWheelEvent event(at, view.mapToGlobal(at), {}, {0, 120 * notches}, Qt::NoButton, {},
                      Qt::NoScrollPhase, false);
    QApplication::sendEvent(&view, &event);
}

TEST(WindowView, TheWheelKeepsThePlaceUnderTheCursor) {
    User user;
    user.look([&] {
        const QPointF at(123, 77);
        const Point2 before = user.view().map().toWorld({at.x(), at.y()});
        wheel(user.view(), at, 3);
        const Point2 after = user.view().map().toWorld({at.x(), at.y()});
        EXPECT_NEAR(before.x, after.x, 1e-9);
        EXPECT_NEAR(before.y, after.y, 1e-9);
        EXPECT_NEAR(user.drawing().view().height * 1.2 * 1.2 * 1.2, 62.5 * 1.05, 62.5);
    });
    user.work();
}

TEST(WindowView, PreviousGoesBackAndExtentsShowsAll) {
    User user;
    addMany(user.drawing(), 50);
    user.look([&] {
        user.view().zoomExtents();
        const drawing::View all = user.drawing().view();
        EXPECT_TRUE(all.box().contains(user.drawing().extents()));
        QTest::qWait(700); // a view that was looked at
        user.view().showView({1000, 1000}, 5.0);
        user.view().zoomPrevious();
        EXPECT_EQ(user.drawing().view().centre, all.centre);
        EXPECT_EQ(user.drawing().view().height, all.height);
    });
    user.work();
}

TEST(WindowView, PreviousGoesBackFromATypedZoomToo) {
    User user;
    addMany(user.drawing(), 50);
    drawing::View before;
    user.look([&] {
        user.view().showView({20, 20}, 30.0);
        before = user.drawing().view();
        QTest::qSleep(700); // a view that was looked at
    });
    user.type("ZOOM 1,1 3,2").menu("Zoom Previous").look([&] {
        EXPECT_EQ(user.drawing().view().centre, before.centre);
        EXPECT_EQ(user.drawing().view().height, before.height);
    });
    user.work();
}

TEST(WindowView, TheToolBarsButtonsAreTheMenusItems) {
    User user;
    addMany(user.drawing(), 50);
    user.look([&] {
        user.view().showView({1000, 1000}, 5.0);
        auto* bar = user.window().findChild<QToolBar*>("toolBar");
        ASSERT_NE(bar, nullptr);
        for (QAction* action : bar->actions()) {
            EXPECT_TRUE(action->isSeparator() || !action->icon().isNull())
                << action->text().toStdString();
            if (action->text().remove('&') == "Zoom Extents")
                QTest::mouseClick(bar->widgetForAction(action), Qt::LeftButton);
        }
        EXPECT_TRUE(user.drawing().view().box().contains(user.drawing().extents()));
    });
    user.work();
}

TEST(WindowView, ZoomWindowShowsTheBox) {
    User user;
    user.menu("Zoom Window").drag({20, 20}, {30, 25});
    user.look([&] {
        const host::Box2 seen = user.drawing().view().box();
        EXPECT_TRUE(seen.contains(Point2{20.2, 20.2}) && seen.contains(Point2{29.8, 24.8}));
        EXPECT_LT(seen.width(), 15.0);
        EXPECT_TRUE(user.session().lines().atCommandPrompt());
    });
    user.work();
    EXPECT_EQ(user.script(), "");
}

// After any way there, the view at rest shows pixel by pixel what a fresh one shows.
TEST(WindowView, ThePictureAtRestIsTheOneOfAFreshView) {
    User user;
    addMany(user.drawing(), 3000);
    QImage travelled;
    QImage fresh;
    user.look([&] {
        desktop::DrawingView& view = user.view();
        view.settle();
        for (int k = 0; k < 5; ++k) {
            wheel(view, QPointF(200 + 20 * k, 150), 1);
            view.panBy({7, -3});
            view.repaint();
        }
        view.settle();
        travelled = view.grab().toImage();
        const drawing::View shown = user.drawing().view();
        const double ratio = view.devicePixelRatioF();
        desktop::ScenePicture picture;
        const desktop::PictureKey key{&user.drawing(),
                                      user.drawing().revision(),
                                      shown.centre,
                                      shown.unitsPerPixel() * view.height(),
                                      static_cast<int>(std::lround(view.width() * ratio)),
                                      static_cast<int>(std::lround(view.height() * ratio)),
                                      ratio,
                                      view.style().background};
        picture.want(key);
        while (!picture.work(std::chrono::milliseconds(100)))
            ;
        fresh = picture.image();
    });
    user.work();
    ASSERT_EQ(travelled.size(), fresh.size());
    int different = 0;
    const int axes = static_cast<int>(80 * fresh.devicePixelRatio()); // stand below
    for (int y = 0; y < fresh.height() - axes; ++y)
        for (int x = 0; x < fresh.width(); ++x)
            different += travelled.pixel(x, y) != fresh.pixel(x, y) ? 1 : 0;
    EXPECT_EQ(different, 0);
}

TEST(WindowView, HairlinesReachTheirEndsAndStayInTheImage) {
    const auto drawn = [](std::vector<QPointF> points) {
        QImage image(5, 4, QImage::Format_RGB32);
        image.fill(Qt::black);
        desktop::Hairline(image).polyline(points, qRgb(255, 255, 255));
        std::string out;
        for (int y = 0; y < 4; ++y)
            for (int x = 0; x < 5; ++x)
                out += image.pixelColor(x, y) == Qt::white ? '#' : '.';
        return out;
    };
    EXPECT_EQ(drawn({{0.5, 1.5}, {4.5, 1.5}}), ".....#####..........");
    EXPECT_EQ(drawn({{3.5, 3.5}, {0.5, 0.5}}), "#.....#.....#.....#.");
    EXPECT_EQ(drawn({{1.2, 2.7}}), "...........#........");
    EXPECT_EQ(drawn({{2.5, -100}, {2.5, 1e6}}), "..#....#....#....#..");
    EXPECT_EQ(drawn({{-9, 2.5}, {2.5, 2.5}, {2.5, -9}}), "..#....#..###.......");
    EXPECT_EQ(drawn({{-5, -5}, {-1, 20}}), "....................");
}

TEST(WindowView, ThickHairlinesCoverTheirWidth) {
    QImage image(6, 4, QImage::Format_RGB32);
    image.fill(Qt::black);
    const QPointF points[] = {{1.5, 1.5}, {4.5, 1.5}};
    desktop::Hairline(image, 2).polyline(points, qRgb(255, 255, 255));
    std::string out;
    for (int y = 0; y < 4; ++y)
        for (int x = 0; x < 6; ++x)
            out += image.pixelColor(x, y) == Qt::white ? '#' : '.';
    EXPECT_EQ(out, "#####.#####.............");
}

// The same tests on screens whose pixels are finer than those that widgets count.
TEST(WindowFineScreen, PicksSnapsAndPicturesAreTheSame) {
    application(); // knows this program's path
    for (const char* factor : {"1.5", "2"}) {
        QProcess again;
        auto environment = QProcessEnvironment::systemEnvironment();
        environment.insert("QT_SCALE_FACTOR", factor);
        again.setProcessEnvironment(environment);
        again.setProcessChannelMode(QProcess::MergedChannels);
        again.start(QCoreApplication::applicationFilePath(),
                    {"--gtest_filter=WindowView.*:WindowPrompts.*:WindowPanels.*"});
        ASSERT_TRUE(again.waitForFinished(200'000));
        EXPECT_EQ(again.exitCode(), 0) << factor << again.readAll().toStdString();
    }
}

TEST(WindowView, ManyHighlightsAreAsSharpAsFewOnFineScreens) {
    User user;
    addMany(user.drawing(), 1000);
    user.menu("Select All").look([&] {
        user.view().settle();
        const QImage image = user.view().grab().toImage();
        const QColor wanted = user.view().style().highlight;
        int exact = 0;
        for (int y = 0; y < image.height(); ++y)
            for (int x = 0; x < image.width(); ++x)
                exact += image.pixelColor(x, y) == wanted ? 1 : 0;
        EXPECT_GT(exact, 1000);
    });
    user.work();
}

TEST(WindowView, ACellPatchShowsItsColoursWhereTheCellsLie) {
    User user;
    host::CellPatch patch{
        .origin = {20, 20}, .xStep = {5, 0}, .yStep = {0, 5}, .nX = 2, .nY = 2, .colours = {}};
    patch.filled = true;
    patch.colours = {1, 0, 3, 5};
    user.look([&] {
        user.session().host().graphics().showCells(patch);
        user.view().refresh();
        user.view().settle();
        const QImage image = user.view().grab().toImage();
        const auto at = [&](Point2 world) {
            const Point2 p = image.devicePixelRatio() * user.view().map()(world);
            return image.pixelColor(static_cast<int>(p.x), static_cast<int>(p.y));
        };
        EXPECT_EQ(at({22.5, 22.5}), QColor(255, 0, 0));
        EXPECT_EQ(at({22.5, 27.5}), QColor(0, 255, 0));
        EXPECT_EQ(at({27.5, 27.5}), QColor(0, 0, 255));
        const drawing::Rgb paper = user.view().style().background;
        EXPECT_EQ(at({27.5, 22.5}), QColor(paper.red, paper.green, paper.blue));
    });
    user.work();
}

} // namespace
} // namespace tessaran::test
