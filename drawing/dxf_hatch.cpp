#include "drawing/dxf_hatch.h"

#include "base/text.h"
#include "drawing/dxf_entity_parts.h"
#include "drawing/loops.h"

#include <algorithm>
#include <cmath>
#include <numbers>

namespace tessaran::drawing::dxf {
namespace {

using host::Hatch;
using host::Loop;
using host::Point2;
using std::numbers::pi;

// Bits of a loop's kind, group code 92.
namespace loop_kind {
constexpr std::int64_t kExternal = 1;
constexpr std::int64_t kPolyline = 2;
constexpr std::int64_t kOutermost = 16;
} // namespace loop_kind

constexpr double kDegree = pi / 180.0;
constexpr int kPointsPerSpan = 16; // chords of a spline for each span between knots

struct ReadLoop {
    Loop loop;
    std::int64_t kind = 0;
};

// Walks the tags in order. Any surprise sets the failure, after which all reads give zero.
class BoundaryReader {
  public:
    BoundaryReader(std::span<const Tag> tags, const TagValues& values, bool fitData)
        : tags_(tags), values_(values), fitData_(fitData) {}

    base::Result<Hatch> read();

  private:
    bool fail(const std::string& reason) {
        if (reason_.empty())
            reason_ = reason;
        return false;
    }
    const Tag* at(int code) const {
        return position_ < tags_.size() && tags_[position_].code == code ? &tags_[position_]
                                                                         : nullptr;
    }
    double real(int code);
    double optionalReal(int code, double otherwise) {
        return at(code) != nullptr ? real(code) : otherwise;
    }
    std::int64_t integer(int code);
    std::int64_t optionalInteger(int code, std::int64_t otherwise) {
        return at(code) != nullptr ? integer(code) : otherwise;
    }
    // A count, held against what is left to read.
    std::size_t count(int code);
    Point2 point(int code) {
        const double x = real(code);
        return {x, real(code + 10)};
    }

    void readLoop();
    Loop readPolyline();
    LoopEdge readEdge();
    LoopEdge readArc();
    LoopEdge readEllipse();
    LoopEdge readSpline();
    void readTurn();

    std::span<const Tag> tags_;
    TagValues values_;
    bool fitData_;
    std::size_t position_ = 0;
    std::string reason_;
    std::vector<ReadLoop> loops_;
    double startAngle_ = 0.0; // of the last arc read
    double sweep_ = 0.0;
};

double BoundaryReader::real(int code) {
    const Tag* tag = at(code);
    const std::optional<double> value = tag != nullptr ? values_.real(*tag) : std::nullopt;
    if (!value || !std::isfinite(*value) || std::abs(*value) > kLargestCoordinate) {
        fail("a number of group code " + std::to_string(code) + " is missing or unusable");
        return 0.0;
    }
    ++position_;
    return *value;
}

std::int64_t BoundaryReader::integer(int code) {
    const Tag* tag = at(code);
    const std::optional<std::int64_t> value = tag != nullptr ? values_.integer(*tag) : std::nullopt;
    if (!value) {
        fail("a number of group code " + std::to_string(code) + " is missing or unusable");
        return 0;
    }
    ++position_;
    return *value;
}

std::size_t BoundaryReader::count(int code) {
    const std::int64_t value = integer(code);
    if (value < 0 || static_cast<std::uint64_t>(value) > tags_.size() - position_) {
        fail("a count of group code " + std::to_string(code) + " is larger than what follows");
        return 0;
    }
    return static_cast<std::size_t>(value);
}

base::Result<Hatch> BoundaryReader::read() {
    Hatch hatch;
    bool elevationSeen = false;
    for (; position_ < tags_.size() && tags_[position_].code != 91; ++position_) {
        const Tag& tag = tags_[position_];
        if (tag.code == 30 && !elevationSeen) {
            const std::optional<double> z = values_.real(tag);
            if (!z || !std::isfinite(*z) || std::abs(*z) > kLargestCoordinate)
                return base::formatError("its elevation is no number");
            hatch.elevation = *z;
            elevationSeen = true;
        }
    }
    const std::size_t loops = count(91);
    for (std::size_t i = 0; i < loops && reason_.empty(); ++i)
        readLoop();
    if (!reason_.empty())
        return base::formatError(reason_);
    // Style 0 fills by the even-odd rule; 1 leaves out what lies inside of the first holes; 2 fills
    // the outer loops whole.
    const std::int64_t style = optionalInteger(75, 0);
    const std::int64_t wanted = style == 1   ? loop_kind::kExternal | loop_kind::kOutermost
                                : style == 2 ? loop_kind::kExternal
                                             : 0;
    const bool choose = wanted != 0 && std::any_of(loops_.begin(), loops_.end(), [&](auto& loop) {
                            return (loop.kind & wanted) != 0;
                        });
    for (ReadLoop& loop : loops_)
        if ((!choose || (loop.kind & wanted) != 0) && !loop.loop.vertices.empty())
            hatch.loops.push_back(std::move(loop.loop));
    return hatch;
}

void BoundaryReader::readLoop() {
    ReadLoop out;
    out.kind = integer(92);
    if ((out.kind & loop_kind::kPolyline) != 0) {
        out.loop = readPolyline();
    } else {
        std::vector<LoopEdge> edges;
        const std::size_t n = count(93);
        for (std::size_t i = 0; i < n && reason_.empty(); ++i)
            edges.push_back(readEdge());
        if (reason_.empty())
            out.loop = joined(std::move(edges));
    }
    if (at(97) != nullptr) {
        const std::size_t sources = count(97);
        for (std::size_t i = 0; i < sources && at(330) != nullptr; ++i)
            ++position_;
    }
    loops_.push_back(std::move(out));
}

Loop BoundaryReader::readPolyline() {
    Loop loop;
    optionalInteger(72, 0); // whether there are bulges; they show themselves
    optionalInteger(73, 1);
    const std::size_t n = count(93);
    loop.vertices.reserve(n);
    for (std::size_t i = 0; i < n && reason_.empty(); ++i) {
        const Point2 at = point(10);
        loop.vertices.push_back({at, optionalReal(42, 0.0)});
    }
    // Some programs repeat the first vertex.
    if (loop.vertices.size() > 1 && loop.vertices.back().at == loop.vertices.front().at)
        loop.vertices.pop_back();
    return loop;
}

LoopEdge BoundaryReader::readEdge() {
    const std::int64_t kind = integer(72);
    switch (kind) {
    case 1: {
        const Point2 from = point(10);
        return straightEdge(from, point(11));
    }
    case 2:
        return readArc();
    case 3:
        return readEllipse();
    case 4:
        return readSpline();
    default:
        fail("there is no boundary edge of kind " + std::to_string(kind));
        return straightEdge({}, {});
    }
}

// Angles of clockwise arcs are stored mirrored at the X axis.
void BoundaryReader::readTurn() {
    const double from = real(50) * kDegree;
    const double to = real(51) * kDegree;
    const bool counterClockwise = integer(73) != 0;
    double sweep = std::fmod(to - from, 2.0 * pi);
    if (sweep < 0.0)
        sweep += 2.0 * pi;
    if (sweep < 1e-9 || std::abs(to - from) >= 2.0 * pi - 1e-9)
        sweep = 2.0 * pi;
    startAngle_ = counterClockwise ? from : -from;
    sweep_ = counterClockwise ? sweep : -sweep;
}

LoopEdge BoundaryReader::readArc() {
    const Point2 centre = point(10);
    const double radius = real(40);
    readTurn();
    return arcEdge(centre, radius, startAngle_, sweep_);
}

LoopEdge BoundaryReader::readEllipse() {
    const Point2 centre = point(10);
    const Point2 major = point(11);
    const double ratio = real(40);
    readTurn();
    return ellipseEdge(centre, major, ratio, startAngle_, sweep_);
}

struct Spline {
    std::size_t degree = 0;
    std::vector<double> knots;
    std::vector<Point2> points;
    std::vector<double> weights;

    bool valid() const {
        return degree >= 1 && degree <= 25 && points.size() > degree &&
               knots.size() == points.size() + degree + 1 && weights.size() == points.size() &&
               std::is_sorted(knots.begin(), knots.end());
    }
    Point2 at(double t, std::size_t span) const;
};

// De Boor's scheme in homogeneous coordinates on the span [knots[span], knots[span + 1]].
Point2 Spline::at(double t, std::size_t span) const {
    struct Homogeneous {
        Point2 p;
        double w;
    };
    std::vector<Homogeneous> d(degree + 1);
    for (std::size_t i = 0; i <= degree; ++i) {
        const std::size_t k = span - degree + i;
        d[i] = {weights[k] * points[k], weights[k]};
    }
    for (std::size_t r = 1; r <= degree; ++r)
        for (std::size_t i = degree; i >= r; --i) {
            const double low = knots[span - degree + i];
            const double high = knots[span + 1 + i - r];
            const double a = high > low ? (t - low) / (high - low) : 0.0;
            d[i] = {(1.0 - a) * d[i - 1].p + a * d[i].p, (1.0 - a) * d[i - 1].w + a * d[i].w};
        }
    const double w = d[degree].w;
    return w != 0.0 ? (1.0 / w) * d[degree].p : d[degree].p;
}

LoopEdge BoundaryReader::readSpline() {
    Spline spline;
    spline.degree = static_cast<std::size_t>(std::clamp<std::int64_t>(integer(94), 0, 100));
    const bool rational = optionalInteger(73, 0) != 0;
    optionalInteger(74, 0);
    const std::size_t knots = count(95);
    const std::size_t points = count(96);
    for (std::size_t i = 0; i < knots && reason_.empty(); ++i)
        spline.knots.push_back(real(40));
    for (std::size_t i = 0; i < points && reason_.empty(); ++i) {
        spline.points.push_back(point(10));
        spline.weights.push_back(rational || at(42) != nullptr ? optionalReal(42, 1.0) : 1.0);
    }
    if (fitData_ && at(97) != nullptr) {
        const std::size_t fits = count(97);
        for (std::size_t i = 0; i < fits && at(11) != nullptr; ++i)
            point(11);
        for (const int tangent : {12, 13})
            if (at(tangent) != nullptr)
                point(tangent);
    }
    if (reason_.empty() && !spline.valid())
        fail("a spline of its boundary is not valid");
    if (!reason_.empty())
        return straightEdge({}, {});
    LoopEdge edge;
    for (std::size_t span = spline.degree; span < spline.points.size(); ++span) {
        const double low = spline.knots[span];
        const double high = spline.knots[span + 1];
        for (int i = 0; i < kPointsPerSpan && high > low; ++i)
            edge.vertices.push_back(
                {spline.at(low + (high - low) * i / kPointsPerSpan, span), 0.0});
        edge.end = spline.at(high, span);
    }
    if (edge.vertices.empty())
        edge.vertices.push_back({edge.end, 0.0});
    return edge;
}

// --- writing ------------------------------------------------------------------------------------

void writeLoops(TagWriter& writer, const Hatch& hatch) {
    writer.integer(91, static_cast<std::int64_t>(hatch.loops.size()));
    for (const Loop& loop : hatch.loops) {
        const bool bulges = std::any_of(loop.vertices.begin(), loop.vertices.end(),
                                        [](const auto& vertex) { return vertex.bulge != 0.0; });
        writer.integer(92, loop_kind::kExternal | loop_kind::kPolyline);
        writer.integer(72, bulges ? 1 : 0);
        writer.integer(73, 1);
        writer.integer(93, static_cast<std::int64_t>(loop.vertices.size()));
        for (const Loop::Vertex& vertex : loop.vertices) {
            writer.point(10, vertex.at.x, vertex.at.y);
            if (bulges)
                writer.real(42, vertex.bulge);
        }
        writer.integer(97, 0);
    }
}

// The lines of a pattern that is not solid, spaced one drawing unit's eighth as in the standard
// pattern files: one family at 45 degrees.
void writePatternLines(TagWriter& writer) {
    constexpr double kSpacing = 0.125;
    writer.real(52, 0.0);
    writer.real(41, 1.0);
    writer.integer(77, 0);
    writer.integer(78, 1);
    writer.real(53, 45.0);
    for (const auto& [code, value] : {std::pair{43, 0.0}, std::pair{44, 0.0},
                                      std::pair{45, -kSpacing * std::numbers::sqrt2 / 2.0},
                                      std::pair{46, kSpacing * std::numbers::sqrt2 / 2.0}})
        writer.real(code, value);
    writer.integer(79, 0);
}

} // namespace

base::Result<Hatch> readHatch(std::span<const Tag> body, const TagValues& values,
                              bool splinesHaveFitData) {
    return BoundaryReader(body, values, splinesHaveFitData).read();
}

void writeHatch(TagWriter& writer, const Hatch& hatch, std::string_view patternName,
                bool facesDown) {
    const bool solid = base::equalsIgnoringCase(hatch.pattern, "SOLID");
    writer.text(100, "AcDbHatch");
    writer.point(10, 0.0, 0.0, hatch.elevation);
    writer.real(210, 0.0);
    writer.real(220, 0.0);
    writer.real(230, facesDown ? -1.0 : 1.0);
    writer.text(2, patternName);
    writer.integer(70, solid ? 1 : 0);
    writer.integer(71, 0); // not associative
    writeLoops(writer, hatch);
    writer.integer(75, 0); // even-odd
    writer.integer(76, 1); // a predefined pattern
    if (!solid)
        writePatternLines(writer);
    writer.integer(98, 0);
}

void rewriteHatch(TagWriter& writer, std::span<const Tag> body, std::string_view bytes,
                  const Hatch& hatch) {
    std::size_t i = 0;
    const auto keep = [&](const Tag& tag) {
        writer.raw(bytes.substr(tag.begin, tag.end - tag.begin));
    };
    for (; i < body.size() && body[i].code != 91; ++i) {
        if (body[i].code == 30)
            writer.real(30, hatch.elevation);
        else if (body[i].code == 71)
            writer.integer(71, 0);
        else
            keep(body[i]);
    }
    writeLoops(writer, hatch);
    // The style, group code 75, is the first tag behind the loops; the loops now say all by the
    // even-odd rule.
    while (i < body.size() && body[i].code != 75)
        ++i;
    for (; i < body.size(); ++i) {
        if (body[i].code == 75)
            writer.integer(75, 0);
        else
            keep(body[i]);
    }
}

} // namespace tessaran::drawing::dxf
