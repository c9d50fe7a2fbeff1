// Chaining and joining polylines, without a drawing.

#include "factors/polyline_chain.h"
#include "factors/polyline_joining.h"
#include "geometry/curve.h"
#include "host/curves.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>

namespace tessaran::factors {
namespace {

using host::Point2;
using host::Polyline;
using host::Polyline3d;

Polyline polyline(VertexRun vertices, double elevation = 0.0) {
    Polyline out;
    out.vertices = std::move(vertices);
    out.elevation = elevation;
    return out;
}

std::vector<PolylineEnds> allEnds(const std::vector<Polyline>& polylines) {
    std::vector<PolylineEnds> ends;
    for (const Polyline& p : polylines)
        ends.push_back(endsOf(p));
    return ends;
}

std::vector<Point2> places(const VertexRun& run) {
    std::vector<Point2> out;
    for (const auto& vertex : run)
        out.push_back(vertex.at);
    return out;
}

// A wavy contour with arcs and widths, cut at random, shuffled, some pieces turned around.
TEST(Joining, GivesBackAShuffledAndPartlyReversedContour) {
    std::mt19937 random(7);
    for (const bool ring : {false, true}) {
        VertexRun whole;
        for (int k = 0; k < 400; ++k) {
            const double a = 2.0 * std::numbers::pi * k / 400;
            const Point2 at = ring ? Point2{500.0 * std::cos(a), 300.0 * std::sin(a)}
                                   : Point2{10.0 * k, 40.0 * std::sin(9.0 * a)};
            whole.push_back({{1e6 + at.x, 2e6 + at.y}, 0.1 * (k % 3 - 1), 0.01 * k, 0.02 * k});
        }
        if (ring)
            whole.push_back(whole.front());
        whole.back() = {whole.back().at};

        std::vector<Polyline> pieces;
        for (std::size_t from = 0; from + 1 < whole.size();) {
            const std::size_t to = std::min(whole.size() - 1, from + 1 + random() % 9);
            VertexRun piece(whole.begin() + static_cast<std::ptrdiff_t>(from),
                            whole.begin() + static_cast<std::ptrdiff_t>(to) + 1);
            piece.back() = {piece.back().at};
            pieces.push_back(polyline(from > 0 && random() % 2 ? reversed(piece) : piece));
            from = to;
        }
        std::shuffle(pieces.begin() + 1, pieces.end(), random); // the first gives the direction
        const auto chains = joinedChains(allEnds(pieces), 1e-9);
        ASSERT_EQ(chains.size(), 1u);
        EXPECT_EQ(chains[0].links.size(), pieces.size());
        EXPECT_EQ(firstMember(chains[0]), 0u);
        const Polyline back = joined(std::span<const Polyline>(pieces), chains[0]);
        EXPECT_EQ(back.closed, ring);
        ASSERT_EQ(back.vertices.size(), ring ? 400u : whole.size());
        for (std::size_t k = 0; k < back.vertices.size(); ++k) {
            EXPECT_EQ(back.vertices[k].at, whole[k].at);
            EXPECT_EQ(back.vertices[k].bulge, whole[k].bulge);
            EXPECT_EQ(back.vertices[k].startWidth, whole[k].startWidth);
            EXPECT_EQ(back.vertices[k].endWidth, whole[k].endWidth);
        }
    }
}

TEST(Joining, TakesTheNearestFreeEndsFirst) {
    const std::vector<Polyline> fork{polyline({{{0, 0}}, {{10, 0}}}),
                                     polyline({{{10.3, 0}}, {{20, 5}}}),
                                     polyline({{{10.1, 0}}, {{20, -5}}})};
    const auto chains = joinedChains(allEnds(fork), 0.5);
    ASSERT_EQ(chains.size(), 1u);
    EXPECT_EQ(chains[0].links, (std::vector<ChainLink>{{0, false}, {2, false}}));
    EXPECT_TRUE(joinedChains(allEnds(fork), 0.05).empty());
}

TEST(Joining, LeavesWhatDoesNotMeet) {
    // Equal places in plan, other heights; a 2-vertex line whose ends are near; three ends in one
    // place of which two are joined.
    EXPECT_TRUE(joinedChains(allEnds({polyline({{{0, 0}}, {{1, 0}}}, 5.0),
                                      polyline({{{1, 0}}, {{2, 0}}}, 6.0)}),
                             1e-3)
                    .empty());
    EXPECT_TRUE(joinedChains(allEnds({polyline({{{0, 0}}, {{0.001, 0}}})}), 0.1).empty());
    const auto star =
        joinedChains(allEnds({polyline({{{0, 0}}, {{5, 0}}}), polyline({{{0, 0}}, {{-5, 0}}}),
                              polyline({{{0, 0}}, {{0, 5}}})}),
                     1e-9);
    ASSERT_EQ(star.size(), 1u);
    EXPECT_EQ(star[0].links, (std::vector<ChainLink>{{1, true}, {0, false}}));
    EXPECT_TRUE(joinedChains({}, 1.0).empty());
}

TEST(Joining, ClosesRingsAndLeavesThereAndBackOpen) {
    const std::vector<Polyline> ring{polyline({{{0, 0}}, {{1, 0}}, {{1, 1}}, {{0, 0}}})};
    const auto one = joinedChains(allEnds(ring), 1e-9);
    ASSERT_EQ(one.size(), 1u);
    const Polyline closed = joined(std::span<const Polyline>(ring), one[0]);
    EXPECT_TRUE(closed.closed);
    EXPECT_EQ(closed.vertices.size(), 3u);

    const std::vector<Polyline> twice{polyline({{{0, 0}}, {{9, 0}}}),
                                      polyline({{{0, 0}}, {{9, 0}}})};
    const auto back = joinedChains(allEnds(twice), 1e-9);
    ASSERT_EQ(back.size(), 1u);
    EXPECT_FALSE(joined(std::span<const Polyline>(twice), back[0]).closed);

    // Two half circles make a circle of two vertices.
    const std::vector<Polyline> halves{polyline({{{0, 0}, 1.0}, {{2, 0}}}),
                                       polyline({{{0, 0}, -1.0}, {{2, 0}}})};
    const Polyline circle =
        joined(std::span<const Polyline>(halves), joinedChains(allEnds(halves), 1e-9).at(0));
    EXPECT_TRUE(circle.closed);
    EXPECT_NEAR(host::curveOf({{}, "0", 0, "", circle})->length(), 2.0 * std::numbers::pi, 1e-12);
}

TEST(Joining, SpellsOutConstantWidthsThatDiffer) {
    std::vector<Polyline> parts{polyline({{{0, 0}}, {{1, 0}}}), polyline({{{1, 0}}, {{2, 0}}})};
    parts[0].constantWidth = 3.0;
    parts[1].constantWidth = 3.0;
    const auto chains = joinedChains(allEnds(parts), 1e-9);
    EXPECT_EQ(joined(std::span<const Polyline>(parts), chains.at(0)).constantWidth, 3.0);
    parts[1].constantWidth = 5.0;
    const Polyline mixed = joined(std::span<const Polyline>(parts), chains.at(0));
    EXPECT_EQ(mixed.constantWidth, 0.0);
    EXPECT_EQ(mixed.vertices[0].startWidth, 3.0);
    EXPECT_EQ(mixed.vertices[1].endWidth, 5.0);
}

TEST(Joining, JoinsInSpace) {
    const std::vector<Polyline3d> parts{{{{0, 0, 1}, {1, 0, 2}}, false},
                                        {{{2, 0, 5}, {1, 0, 2}}, false},
                                        {{{2, 0, 9}, {3, 0, 9}}, false}};
    std::vector<PolylineEnds> ends;
    for (const Polyline3d& p : parts)
        ends.push_back(endsOf(p));
    const auto chains = joinedChains(ends, 1e-6);
    ASSERT_EQ(chains.size(), 1u);
    const Polyline3d out = joined(std::span<const Polyline3d>(parts), chains[0]);
    EXPECT_EQ(out.vertices, (std::vector<host::Point3>{{0, 0, 1}, {1, 0, 2}, {2, 0, 5}}));
}

// Very many ends at nearly one place: time and memory stay small, every end but one finds another.
TEST(Joining, StandsAThickBundle) {
    std::vector<PolylineEnds> bundle;
    for (int k = 0; k < 3001; ++k)
        bundle.push_back({{1e-7 * k, 0, 0}, {100.0 + k, 50, 0}, false});
    std::size_t links = 0;
    for (const JoinedChain& chain : joinedChains(bundle, 0.01))
        links += chain.links.size();
    EXPECT_EQ(links, 3000u);
}

// --- a chain of picked objects ------------------------------------------------------------------

using End = PolylineChain::End;

TEST(Chain, GrowsAtTheEndNearToThePickOrFarFromIt) {
    PolylineChain chain;
    chain.append({{{0, 0}}, {{10, 0}}}, {5, 0}, End::nearest);
    chain.append({{{20, 0}}, {{10, 0}}}, {19, 0}, End::nearest); // turned, ends meet
    EXPECT_EQ(places(chain.vertices()), (std::vector<Point2>{{0, 0}, {10, 0}, {20, 0}}));
    chain.append({{{-5, 1}}, {{-9, 1}}}, {19, 0}, End::farthest); // at the start, over a gap
    EXPECT_EQ(places(chain.vertices()),
              (std::vector<Point2>{{-9, 1}, {-5, 1}, {0, 0}, {10, 0}, {20, 0}}));
    EXPECT_TRUE(chain.undo());
    EXPECT_EQ(chain.size(), 3u);
    chain.reverse();
    EXPECT_TRUE(chain.undo()); // the object joined second, now in front
    EXPECT_EQ(places(chain.vertices()), (std::vector<Point2>{{10, 0}, {0, 0}}));
    EXPECT_TRUE(chain.undo());
    EXPECT_FALSE(chain.undo());
    EXPECT_EQ(chain.size(), 0u);
}

TEST(Chain, KeepsArcsThroughTurnsAndUndo) {
    PolylineChain chain;
    chain.append({{{0, 0}, 1.0}, {{2, 0}}}, {0, 0}, End::nearest); // bows to -y
    chain.append({{{4, 0}, 1.0}, {{2, 0}}}, {3, 0}, End::nearest); // runs back: bows to +y
    ASSERT_EQ(chain.size(), 3u);
    EXPECT_EQ(chain.vertices()[0].bulge, 1.0);
    EXPECT_EQ(chain.vertices()[1].bulge, -1.0);
    chain.undo();
    EXPECT_EQ(chain.vertices().back().bulge, 0.0);
    chain.reverse();
    chain.reverse();
    EXPECT_EQ(chain.vertices()[0].bulge, 1.0);
}

} // namespace
} // namespace tessaran::factors
