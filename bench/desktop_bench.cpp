// The window on a drawing of 200,000 polylines of 10 vertices: from the file to the first picture,
// frames of panning and zooming at three zooms, and a grid of four million cells as colours. Beside
// each frame stands the plain way: the whole walk over the drawing for every frame.

#include "console/drawing_files.h"
#include "desktop/desktop_session.h"
#include "drawing/dxf_save.h"
#include "drawing/scene.h"

#include <benchmark/benchmark.h>

#include <QApplication>
#include <algorithm>
#include <chrono>
#include <filesystem>
#include <memory>
#include <random>
#include <vector>

namespace tessaran {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kPolylines = 200'000;
constexpr int kFrames = 100;

double milliseconds(Clock::duration time) {
    return std::chrono::duration<double, std::milli>(time).count();
}

double median(std::vector<double> times) {
    std::nth_element(times.begin(), times.begin() + static_cast<std::ptrdiff_t>(times.size() / 2),
                     times.end());
    return times[times.size() / 2];
}

// Short wavy lines all over a square of 100 km.
void fill(drawing::Database& database) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> place(0.0, 100'000.0);
    std::uniform_real_distribution<double> step(-120.0, 120.0);
    for (int k = 0; k < kPolylines; ++k) {
        host::Entity entity;
        entity.colour = 1 + k % 200;
        host::Polyline polyline;
        host::Point2 at{place(random), place(random)};
        for (int v = 0; v < 10; ++v) {
            polyline.vertices.push_back({.at = at});
            at = at + host::Point2{step(random), step(random)};
        }
        entity.geometry = std::move(polyline);
        static_cast<void>(database.add(std::move(entity)));
    }
}

const std::string& drawingFile() {
    static const std::string file = [] {
        const auto path = std::filesystem::temp_directory_path() / "desktop_bench.dxf";
        drawing::Database database;
        fill(database);
        static_cast<void>(drawing::saveDxf(database, path, {.keepBackup = false}));
        return path.string();
    }();
    return file;
}

// A session whose drawing is open; its window is as large as a usual screen.
std::unique_ptr<desktop::DesktopSession>& held() {
    static std::unique_ptr<desktop::DesktopSession> session;
    return session;
}

desktop::DesktopSession& session() {
    if (!held())
        held() = std::make_unique<desktop::DesktopSession>(desktop::DesktopSession::Options{});
    return *held();
}

void openDrawing() {
    base::NoProgress progress;
    auto opened = console::openDrawing(drawingFile(), progress);
    session().workspace().add(std::move(opened->database));
}

desktop::DrawingView& shownView() {
    desktop::DrawingView& view = session().window().view();
    if (session().workspace().database().entityCount() == 0)
        openDrawing();
    session().window().resize(1600, 1000);
    session().window().show();
    view.refresh();
    return view;
}

void openToFirstPicture(benchmark::State& state) {
    drawingFile();
    for (auto _ : state) {
        desktop::DesktopSession fresh{desktop::DesktopSession::Options{}};
        fresh.window().resize(1600, 1000);
        fresh.window().show();
        const auto start = Clock::now();
        base::NoProgress progress;
        auto opened = console::openDrawing(drawingFile(), progress);
        const auto read = Clock::now();
        fresh.workspace().add(std::move(opened->database));
        fresh.window().view().refresh();
        fresh.window().view().settle();
        state.counters["read_ms"] = milliseconds(read - start);
        state.counters["picture_ms"] = milliseconds(Clock::now() - read);
        state.SetIterationTime(milliseconds(Clock::now() - start) / 1000.0);
    }
}
BENCHMARK(openToFirstPicture)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

// The plain way: everything that may be seen is walked and painted.
double plainFrame(const drawing::Database& database, const QSize& size) {
    const auto start = Clock::now();
    const drawing::View view = database.view();
    QImage image(size, QImage::Format_RGB32);
    image.fill(Qt::black);
    QPainter painter(&image);
    desktop::PainterCanvas canvas(
        painter,
        {view.centre, {0.5 * size.width(), 0.5 * size.height()}, 1.0 / view.unitsPerPixel()}, {});
    for (const drawing::EntityRecord* record : database.near(view.box()))
        drawing::drawEntity(database, *record, drawing::Visibility::shown, canvas);
    painter.end();
    return milliseconds(Clock::now() - start);
}

// Frames of a move: the events that are due come between them, as in a drag.
template <class Move>
double medianFrame(desktop::DrawingView& view, const Move& move) {
    std::vector<double> times;
    for (int k = 0; k < kFrames; ++k) {
        const auto start = Clock::now();
        move(k);
        QApplication::processEvents();
        view.repaint();
        times.push_back(milliseconds(Clock::now() - start));
    }
    return median(times);
}

// Argument: the view shows the whole drawing's height divided by it.
void frames(benchmark::State& state) {
    desktop::DrawingView& view = shownView();
    const drawing::Database& database = session().workspace().database();
    for (auto _ : state) {
        view.zoomExtents();
        const drawing::View all = database.view();
        view.showView(all.centre, all.height / static_cast<double>(state.range(0)));
        view.settle();
        const double plain = plainFrame(database, view.size());
        const double pan = medianFrame(
            view, [&](int k) { view.panBy(k % 2 == 0 ? QPointF(9, 4) : QPointF(-8, -5)); });
        view.settle();
        const double zoom = medianFrame(view, [&](int k) {
            view.zoomBy((k / 10) % 2 == 0 ? 1.05 : 1.0 / 1.05, QPointF(500, 300));
        });
        state.counters["pan_ms"] = pan;
        state.counters["zoom_ms"] = zoom;
        state.counters["plain_ms"] = plain;
        state.counters["plain/pan"] = plain / pan;
        const auto rest = Clock::now();
        view.settle();
        state.counters["exact_ms"] = milliseconds(Clock::now() - rest);
        state.SetIterationTime(pan / 1000.0);
    }
}
BENCHMARK(frames)->Arg(1)->Arg(8)->Arg(64)->UseManualTime()->Iterations(1)->Unit(
    benchmark::kMillisecond);

void gridAsColours(benchmark::State& state) {
    desktop::DrawingView& view = shownView();
    host::CellPatch patch{.origin = {10'000, 10'000},
                          .xStep = {39, 4},
                          .yStep = {-4, 39},
                          .nX = 2000,
                          .nY = 2000,
                          .colours = {}};
    patch.filled = true;
    patch.colours.resize(4'000'000);
    for (std::size_t k = 0; k < patch.colours.size(); ++k)
        patch.colours[k] = static_cast<std::uint8_t>(10 + k / 2000 % 240);
    host::TemporaryGraphics& graphics = session().host().graphics();
    for (auto _ : state) {
        view.zoomExtents();
        view.settle();
        const auto start = Clock::now();
        const host::GraphicId id = graphics.showCells(patch);
        view.refresh();
        view.settle();
        const auto shown = Clock::now() - start;
        state.counters["shown_ms"] = milliseconds(shown);
        state.counters["frame_ms"] = medianFrame(
            view, [&](int k) { view.panBy(k % 2 == 0 ? QPointF(9, 4) : QPointF(-9, -4)); });
        graphics.remove(id);
        state.SetIterationTime(milliseconds(shown) / 1000.0);
    }
}
BENCHMARK(gridAsColours)->UseManualTime()->Iterations(1)->Unit(benchmark::kMillisecond);

} // namespace

void closeSession() {
    held().reset();
}

} // namespace tessaran

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    tessaran::closeSession(); // before the application
    return 0;
}
