#include "index/cell_cut.h"

#include "geometry/polygon.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <iterator>

namespace tessaran::index {

namespace {

using geometry::PlanarRegion;
using geometry::Point2;
using geometry::Polygon;

// Of a cell's side: places closer together than this are told apart by the overlay only.
constexpr double kApart = 1e-9;
constexpr double kPerimeter = 4.0;

// Everything relative to the cell's low-left corner.
constexpr std::array<Point2, 4> kCorners{{{0, 0}, {1, 0}, {1, 1}, {0, 1}}};

// A stretch of the outline inside the cell, from side to side.
struct Stretch {
    double entry = 0.0; // places along the perimeter, counter-clockwise from the corner (0, 0)
    double exit = 0.0;
    Polygon points;
};

bool isNear(double a, double b) {
    return std::abs(a - b) <= kApart;
}

bool isOnSide(Point2 p) {
    const bool within =
        p.x >= -kApart && p.x <= 1.0 + kApart && p.y >= -kApart && p.y <= 1.0 + kApart;
    return within && (isNear(p.x, 0.0) || isNear(p.x, 1.0) || isNear(p.y, 0.0) || isNear(p.y, 1.0));
}

bool isInside(Point2 p) {
    return p.x > 0.0 && p.x < 1.0 && p.y > 0.0 && p.y < 1.0;
}

double placeOf(Point2 p, int side) {
    const std::array<double, 4> along{p.x, p.y, 1.0 - p.x, 1.0 - p.y};
    return side + along[static_cast<std::size_t>(side)];
}

// Where a line comes into the square and goes out of it (Liang, Y.-D. and Barsky, B. A. (1984), A
// new concept and method for line clipping, ACM Trans. Graph. 3, 1-22). Sides are numbered like the
// corners that they begin at.
struct Chord {
    double in = 0.0;
    double out = 1.0;
    int inSide = -1; // -1: it begins inside
    int outSide = -1;
};

std::optional<Chord> chordOf(Point2 a, Point2 b) {
    const geometry::Vector2 d = b - a;
    const std::array<double, 4> towards{-d.y, d.x, d.y, -d.x}; // above 0: leaving by that side
    const std::array<double, 4> left{a.y, 1.0 - a.x, 1.0 - a.y, a.x};
    Chord chord;
    for (int side = 0; side < 4; ++side) {
        const double speed = towards[static_cast<std::size_t>(side)];
        const double room = left[static_cast<std::size_t>(side)];
        if (speed == 0.0) {
            if (room < 0.0)
                return std::nullopt;
        } else if (const double t = room / speed; speed > 0.0 && t < chord.out) {
            chord.out = t;
            chord.outSide = side;
        } else if (speed < 0.0 && t > chord.in) {
            chord.in = t;
            chord.inSide = side;
        }
    }
    return chord.in < chord.out ? std::optional(chord) : std::nullopt;
}

// All stretches; nothing when a vertex lies on a side or the outline does not begin outside.
std::optional<std::vector<Stretch>> stretchesOf(const Polygon& outline) {
    std::vector<Stretch> stretches;
    bool open = false;
    for (std::size_t k = 0; k < outline.size(); ++k) {
        const Point2 a = outline[k];
        const Point2 b = outline[k + 1 < outline.size() ? k + 1 : 0];
        if (isOnSide(a))
            return std::nullopt;
        const std::optional<Chord> chord = chordOf(a, b);
        if (!chord)
            continue;
        if (chord->inSide >= 0) {
            const Point2 p = a + chord->in * (b - a);
            stretches.push_back({placeOf(p, chord->inSide), 0.0, {p}});
            open = true;
        }
        if (!open)
            return std::nullopt;
        const Point2 q = chord->outSide >= 0 ? a + chord->out * (b - a) : b;
        stretches.back().points.push_back(q);
        if (chord->outSide >= 0) {
            stretches.back().exit = placeOf(q, chord->outSide);
            open = false;
        }
    }
    return open ? std::nullopt : std::optional(std::move(stretches));
}

// Whether all places lie apart from each other and from the corners.
bool liesApart(const std::vector<Stretch>& stretches) {
    std::vector<double> places{0.0, 1.0, 2.0, 3.0, kPerimeter};
    for (const Stretch& stretch : stretches) {
        places.push_back(stretch.entry);
        places.push_back(stretch.exit);
    }
    std::sort(places.begin(), places.end());
    return std::adjacent_find(places.begin(), places.end(), isNear) == places.end();
}

double aheadOf(double from, double to) {
    return to > from ? to - from : to - from + kPerimeter;
}

std::size_t nextEntry(const std::vector<Stretch>& stretches, double exit) {
    const auto next = std::min_element(stretches.begin(), stretches.end(),
                                       [&](const Stretch& a, const Stretch& b) {
                                           return aheadOf(exit, a.entry) < aheadOf(exit, b.entry);
                                       });
    return static_cast<std::size_t>(next - stretches.begin());
}

void addCorners(double from, double to, Polygon& loop) {
    const double end = from + aheadOf(from, to);
    for (int corner = static_cast<int>(std::ceil(from)); corner < end; ++corner)
        loop.push_back(kCorners[static_cast<std::size_t>(corner % 4)]);
}

std::vector<Polygon> linked(const std::vector<Stretch>& stretches) {
    std::vector<Polygon> loops;
    std::vector<bool> used(stretches.size(), false);
    for (std::size_t first = 0; first < stretches.size(); ++first) {
        if (used[first])
            continue;
        Polygon& loop = loops.emplace_back();
        for (std::size_t k = first; !used[k];) {
            used[k] = true;
            loop.insert(loop.end(), stretches[k].points.begin(), stretches[k].points.end());
            const std::size_t next = nextEntry(stretches, stretches[k].exit);
            addCorners(stretches[k].exit, stretches[next].entry, loop);
            k = next;
        }
    }
    return loops;
}

} // namespace

std::optional<PlanarRegion> cellLessOutline(int i, int j, const Polygon& outline) {
    const Point2 corner{static_cast<double>(i), static_cast<double>(j)};
    Polygon backwards;
    backwards.reserve(outline.size());
    std::transform(outline.rbegin(), outline.rend(), std::back_inserter(backwards),
                   [&](Point2 p) { return p - corner; });
    const auto outside =
        std::find_if(backwards.begin(), backwards.end(), [](Point2 p) { return !isInside(p); });
    if (outside == backwards.end())
        return std::nullopt;
    std::rotate(backwards.begin(), outside, backwards.end());
    const auto stretches = stretchesOf(backwards);
    if (!stretches || stretches->empty() || !liesApart(*stretches))
        return std::nullopt;
    PlanarRegion open{linked(*stretches)};
    double area = 0.0;
    for (const Polygon& loop : open.loops)
        area += geometry::signedArea(loop);
    if (!isNear(area, 1.0 - geometry::intersectionArea(kCorners, backwards)))
        return std::nullopt;
    for (Polygon& loop : open.loops)
        for (Point2& p : loop)
            p = p + corner;
    return open;
}

std::optional<PlanarRegion> cellLessPillar(int i, int j, const PlanarRegion& pillar) {
    return pillar.loops.size() == 1 ? cellLessOutline(i, j, pillar.loops.front()) : std::nullopt;
}

} // namespace tessaran::index
