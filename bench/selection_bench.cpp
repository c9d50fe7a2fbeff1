// Picks and window selections on a drawing of 200,000 polylines, beside a walk over all of them.

#include "drawing/database_builder.h"
#include "drawing/extents.h"
#include "drawing/hit_test.h"
#include "drawing/selection.h"
#include "geometry/curve.h"

#include <benchmark/benchmark.h>

#include <chrono>
#include <cmath>

using namespace tessaran;
using namespace tessaran::drawing;

namespace {

constexpr int kColumns = 500;
constexpr int kRows = 400;
constexpr double kPitch = 40.0;

// Closed polylines of ten vertices and one arc, in rows and columns.
const Database& plan() {
    static Database database;
    static const bool filled = [] {
        DatabaseBuilder builder(database);
        builder.reserve(kColumns * kRows);
        for (int k = 0; k < kColumns * kRows; ++k) {
            host::Polyline pillar;
            pillar.closed = true;
            for (int i = 0; i < 10; ++i) {
                const double angle = 0.628 * i;
                pillar.vertices.push_back({{(k % kColumns) * kPitch + 15.0 * std::cos(angle),
                                            (k / kColumns) * kPitch + 15.0 * std::sin(angle)},
                                           i == 3 ? 0.2 : 0.0});
            }
            EntityRecord record;
            record.entity.geometry = std::move(pillar);
            if (!builder.add(std::move(record)))
                return false;
        }
        return true;
    }();
    benchmark::DoNotOptimize(filled);
    return database;
}

// The topmost entity near a point, by asking every one of them.
host::EntityId literalPick(const Database& database, host::Point2 at, double tolerance) {
    host::EntityId hit;
    database.forEachEntity([&](const EntityRecord& record) {
        const auto& pillar = std::get<host::Polyline>(record.entity.geometry);
        std::vector<geometry::CurveVertex> vertices;
        for (const auto& v : pillar.vertices)
            vertices.push_back({{v.at.x, v.at.y, 0.0}, v.bulge});
        const auto closest = geometry::Curve(std::move(vertices), true).closestTo(at);
        if (closest && closest->distance <= tolerance)
            hit = record.entity.id;
    });
    return hit;
}

template <class Work>
double seconds(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

void pick(benchmark::State& state) {
    const Database& database = plan();
    const host::Point2 at{200 * kPitch + 15.0, 100 * kPitch};
    if (hitTest(database, at, 1.0)->entity != literalPick(database, at, 1.0))
        state.SkipWithError("the picks differ");
    const double plain = seconds([&] { (void)literalPick(database, at, 1.0); });
    double fast = 0.0;
    for (auto _ : state)
        fast += seconds([&] { benchmark::DoNotOptimize(hitTest(database, at, 1.0)); });
    state.counters["times_the_plain_walk"] =
        plain / (fast / static_cast<double>(state.iterations()));
}
BENCHMARK(pick)->Unit(benchmark::kMicrosecond);

void windowOfAThousand(benchmark::State& state) {
    const Database& database = plan();
    const host::SelectionShape window{host::SelectionShape::Kind::window,
                                      {{4000, 4000}, {5280, 4000}, {5280, 5280}, {4000, 5280}}};
    for (auto _ : state)
        benchmark::DoNotOptimize(database.select(window, {}));
}
BENCHMARK(windowOfAThousand)->Unit(benchmark::kMicrosecond);

void extentsOfTheDrawing(benchmark::State& state) {
    const Database& database = plan();
    for (auto _ : state)
        benchmark::DoNotOptimize(database.extents());
}
BENCHMARK(extentsOfTheDrawing)->Unit(benchmark::kMillisecond);

} // namespace

BENCHMARK_MAIN();
