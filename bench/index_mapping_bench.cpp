// From an index grid and pillars to merged regions: walking equal cells against the plain way,
// which subtracts the pillars from every cell and unites the pieces of each colour.

#include "geometry/region.h"
#include "grid/colour_ramp.h"
#include "index/index_mapping.h"

#include <benchmark/benchmark.h>
#include <geos_c.h>

#include <chrono>
#include <cmath>
#include <map>
#include <numbers>
#include <random>

namespace tessaran::index {
namespace {

using geometry::Point2;
using geometry::Polygon;

struct Plan {
    grid::myGrid grid;
    std::vector<Polygon> pillars;
    std::vector<grid::ColourBreak> colours;
};

// Rooms and pillars: about 64 % of the area stands, outlines of 4 to 12 corners at any angle. The
// index is smooth with some noise, so that areas of a colour are large and frayed, as in practice.
void makePlan(int cells, int pillarsAcross, Plan& plan) {
    std::mt19937 random(7);
    std::uniform_real_distribution<double> noise(-2.0, 2.0);
    std::uniform_real_distribution<double> share(0.85, 1.0);
    std::uniform_int_distribution<int> corners(4, 12);
    plan.grid.setupGrid(cells, cells, 10.0, 10.0, 15.0);
    plan.grid.setOrigin(2.0e6, 1.0e6, 0.0);
    const grid::CellFrame frame(plan.grid);
    for (int i = 0; i < cells; ++i) {
        for (int j = 0; j < cells; ++j) {
            const double x = 9.0 * i / cells;
            const double y = 7.0 * j / cells;
            plan.grid.setValue(i, j, 50.0 + 48.0 * std::sin(x) * std::cos(y) + noise(random));
        }
    }
    const double spacing = static_cast<double>(cells) / pillarsAcross;
    for (int a = 0; a < pillarsAcross; ++a) {
        for (int b = 0; b < pillarsAcross; ++b) {
            const Point2 centre{(a + 0.5) * spacing, (b + 0.5) * spacing};
            const int n = corners(random);
            Polygon pillar;
            for (int k = 0; k < n; ++k) {
                const double angle = 2.0 * std::numbers::pi * (k + 0.1 * a) / n;
                const double r = 0.5 * spacing * share(random);
                pillar.push_back(
                    frame.toWorld(centre + r * Point2{std::cos(angle), std::sin(angle)}));
            }
            plan.pillars.push_back(std::move(pillar));
        }
    }
    const auto range = plan.grid.getMinMax();
    plan.colours = grid::ColourRamp::between(range->min, range->max, 10).table();
}

std::size_t byWalking(const Plan& plan) {
    IndexMapping mapping(plan.grid, plan.colours);
    mapping.filterCells(ValueFilter::all, 0.0);
    long identifier = 0;
    for (const Polygon& pillar : plan.pillars)
        (void)mapping.addPillar(++identifier, pillar);
    return mapping.combinedRegions()->size();
}

// --- the plain way, straight on the overlay library ----------------------------------------------

GEOSGeometry* polygonOf(GEOSContextHandle_t geos, std::span<const Point2> points) {
    const auto n = static_cast<unsigned>(points.size());
    GEOSCoordSequence* sequence = GEOSCoordSeq_create_r(geos, n + 1, 2);
    for (unsigned k = 0; k <= n; ++k)
        GEOSCoordSeq_setXY_r(geos, sequence, k, points[k % n].x, points[k % n].y);
    return GEOSGeom_createPolygon_r(geos, GEOSGeom_createLinearRing_r(geos, sequence), nullptr, 0);
}

struct Nearby {
    GEOSContextHandle_t geos;
    GEOSGeometry* rest;
};

void subtractOne(void* item, void* data) {
    auto* nearby = static_cast<Nearby*>(data);
    GEOSGeometry* less =
        GEOSDifference_r(nearby->geos, nearby->rest, static_cast<GEOSGeometry*>(item));
    GEOSGeom_destroy_r(nearby->geos, nearby->rest);
    nearby->rest = less;
}

std::size_t byCells(const Plan& plan) {
    GEOSContextHandle_t geos = GEOS_init_r();
    std::vector<GEOSGeometry*> pillars;
    GEOSSTRtree* tree = GEOSSTRtree_create_r(geos, 10);
    for (const Polygon& pillar : plan.pillars) {
        pillars.push_back(polygonOf(geos, pillar));
        GEOSSTRtree_insert_r(geos, tree, pillars.back(), pillars.back());
    }
    std::map<int, std::vector<GEOSGeometry*>> cells;
    for (int i = 0; i < plan.grid.nX(); ++i) {
        for (int j = 0; j < plan.grid.nY(); ++j) {
            Nearby nearby{geos, polygonOf(geos, *plan.grid.cellCorners(i, j))};
            GEOSGeometry* cell = GEOSGeom_clone_r(geos, nearby.rest);
            GEOSSTRtree_query_r(geos, tree, cell, subtractOne, &nearby);
            GEOSGeom_destroy_r(geos, cell);
            const int colour = grid::colourOfValue(plan.colours, plan.grid.getValue(i, j));
            cells[colour].push_back(nearby.rest);
        }
    }
    for (auto& [colour, parts] : cells) {
        GEOSGeometry* all = GEOSGeom_createCollection_r(geos, GEOS_GEOMETRYCOLLECTION, parts.data(),
                                                        static_cast<unsigned>(parts.size()));
        GEOSGeom_destroy_r(geos, GEOSUnaryUnion_r(geos, all));
        GEOSGeom_destroy_r(geos, all);
    }
    GEOSSTRtree_destroy_r(geos, tree);
    for (GEOSGeometry* pillar : pillars)
        GEOSGeom_destroy_r(geos, pillar);
    const std::size_t count = cells.size();
    GEOS_finish_r(geos);
    return count;
}

template <class Work>
double secondsOf(const Work& work) {
    const auto start = std::chrono::steady_clock::now();
    benchmark::DoNotOptimize(work());
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

// 200 x 200 cells, 196 pillars, both ways.
void compareOnTwoHundred(benchmark::State& state) {
    Plan plan;
    makePlan(200, 14, plan);
    double plain = 0.0;
    double walking = 0.0;
    for (auto _ : state) {
        plain += secondsOf([&] { return byCells(plan); });
        walking += secondsOf([&] { return byWalking(plan); });
    }
    state.counters["plain_s"] = plain / static_cast<double>(state.iterations());
    state.counters["walking_s"] = walking / static_cast<double>(state.iterations());
    state.counters["ratio"] = plain / walking;
}
BENCHMARK(compareOnTwoHundred)->Unit(benchmark::kMillisecond)->Iterations(2);

// 1000 x 1000 cells, 5,041 pillars, 10 colours.
void combineOnAThousand(benchmark::State& state) {
    Plan plan;
    makePlan(1000, 71, plan);
    for (auto _ : state)
        benchmark::DoNotOptimize(byWalking(plan));
}
BENCHMARK(combineOnAThousand)->Unit(benchmark::kMillisecond)->Iterations(1);

// The same with an index that changes from cell to cell: hardly any two neighbours are equal.
void combineNoiseOnAThousand(benchmark::State& state) {
    Plan plan;
    makePlan(1000, 71, plan);
    std::mt19937 random(3);
    std::uniform_real_distribution<double> value(0.0, 100.0);
    for (double& cell : plan.grid.values())
        cell = value(random);
    for (auto _ : state)
        benchmark::DoNotOptimize(byWalking(plan));
}
BENCHMARK(combineNoiseOnAThousand)->Unit(benchmark::kMillisecond)->Iterations(1);

// The first with every cell by itself.
void cellsOfAThousand(benchmark::State& state) {
    Plan plan;
    makePlan(1000, 71, plan);
    IndexMapping mapping(plan.grid, plan.colours);
    mapping.filterCells(ValueFilter::all, 0.0);
    for (const Polygon& pillar : plan.pillars)
        (void)mapping.addPillar(1, pillar);
    for (auto _ : state)
        benchmark::DoNotOptimize(mapping.cellRegions(0, plan.grid.nY())->size());
}
BENCHMARK(cellsOfAThousand)->Unit(benchmark::kMillisecond)->Iterations(1);

} // namespace
} // namespace tessaran::index

BENCHMARK_MAIN();
