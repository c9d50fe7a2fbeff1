#include "drawing/dxf_look.h"

#include "drawing/dxf_decode.h"
#include "drawing/paragraph_text.h"
#include "geometry/spline.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <optional>

namespace tessaran::drawing::dxf {
namespace {

using geometry::CurveVertex;
using geometry::Point2;
using geometry::Point3;
using geometry::Vector3;

constexpr double kDegree = std::numbers::pi / 180.0;
constexpr int kChordsOfCircle = 128;
constexpr std::int64_t kClosedSpline = 1; // bits of group code 70
constexpr int kPointsOfSpan = 24;
constexpr std::size_t kManyControls = 10'000; // a spline of so many has one point to each span
constexpr double kLineStep = 5.0 / 3.0;       // from line to line, in heights of capitals
// Width of narrow characters over the height of capitals: lines are rather too long than broken.
constexpr double kNarrowCharacter = 0.6;

class LookReader {
  public:
    LookReader(const SourceFile& file, const EntityParts& parts)
        : file_(file), values_(file.values()), body_(parts.body) {}

    // False where nothing of the type can be shown.
    bool ellipse();
    bool spline();
    bool solid();
    bool paragraph();
    bool leader();
    bool dimension();

    host::Look take() { return std::move(look_); }

  private:
    std::optional<double> real(const Tag& tag) const;
    double first(int code, double otherwise) const;
    Point3 point(int code, Point3 otherwise) const;
    std::vector<Point3> points(int code) const;
    std::vector<double> reals(int code) const;
    bool addChain(const std::vector<Point3>& points, bool closed);
    double directionOfText() const;

    const SourceFile& file_;
    TagValues values_;
    std::span<const Tag> body_;
    host::Look look_;
};

// Nothing for what is no place in a mine.
std::optional<double> LookReader::real(const Tag& tag) const {
    const std::optional<double> value = values_.real(tag);
    return value && std::abs(*value) <= kLargestCoordinate ? value : std::nullopt;
}

double LookReader::first(int code, double otherwise) const {
    for (const Tag& tag : body_)
        if (tag.code == code)
            return real(tag).value_or(otherwise);
    return otherwise;
}

Point3 LookReader::point(int code, Point3 otherwise) const {
    return {first(code, otherwise.x), first(code + 10, otherwise.y), first(code + 20, otherwise.z)};
}

std::vector<Point3> LookReader::points(int code) const {
    std::vector<Point3> out;
    for (const Tag& tag : body_) {
        if (tag.code == code)
            out.push_back({real(tag).value_or(0.0), 0.0, 0.0});
        else if (tag.code == code + 10 && !out.empty())
            out.back().y = real(tag).value_or(0.0);
        else if (tag.code == code + 20 && !out.empty())
            out.back().z = real(tag).value_or(0.0);
    }
    return out;
}

std::vector<double> LookReader::reals(int code) const {
    std::vector<double> out;
    for (const Tag& tag : body_)
        if (tag.code == code)
            out.push_back(real(tag).value_or(std::nan("")));
    return out;
}

bool LookReader::addChain(const std::vector<Point3>& points, bool closed) {
    std::vector<CurveVertex> vertices;
    vertices.reserve(points.size());
    for (const Point3& p : points)
        vertices.push_back({p, 0.0});
    if (vertices.size() < 2)
        return false;
    look_.curves.emplace_back(vertices, closed);
    return true;
}

// centre + cos t major + sin t minor, the minor axis a quarter turn about the normal from the
// major.
bool LookReader::ellipse() {
    const Point3 centre = point(10, {});
    const Point3 major = point(11, {});
    const Point3 normal = point(210, {0.0, 0.0, 1.0});
    const double ratio = first(40, 1.0);
    const double from = first(41, 0.0);
    double to = first(42, 2.0 * std::numbers::pi);
    if (!(to > from))
        to += 2.0 * std::numbers::pi;
    const double size = std::hypot(normal.x, normal.y, normal.z);
    const double turn = to - from;
    if (!(size > 0.0) || !(turn > 0.0 && turn < 4.0 * std::numbers::pi))
        return false;
    const double scale = ratio / size;
    const Point3 minor{scale * (normal.y * major.z - normal.z * major.y),
                       scale * (normal.z * major.x - normal.x * major.z),
                       scale * (normal.x * major.y - normal.y * major.x)};
    const bool closed = turn > 2.0 * std::numbers::pi - 1e-6;
    const int chords =
        std::max(2, static_cast<int>(std::ceil(kChordsOfCircle * turn / (2.0 * std::numbers::pi))));
    std::vector<Point3> chain;
    for (int k = 0; k < chords + (closed ? 0 : 1); ++k) {
        const double t = from + turn * k / chords;
        const double c = std::cos(t);
        const double s = std::sin(t);
        chain.push_back({centre.x + c * major.x + s * minor.x, centre.y + c * major.y + s * minor.y,
                         centre.z + c * major.z + s * minor.z});
    }
    return addChain(chain, closed);
}

// A spline that only its fit points describe is shown through them.
bool LookReader::spline() {
    const geometry::Spline curve{
        static_cast<int>(std::clamp<std::int64_t>(firstInteger(values_, body_, 71, 3), 0, 100)),
        reals(40), points(10), reals(41)};
    std::vector<Point3> along =
        pointsAlong(curve, curve.controls.size() > kManyControls ? 1 : kPointsOfSpan);
    if (along.empty())
        along = points(11);
    if (along.empty())
        along = curve.controls;
    return addChain(along, (firstInteger(values_, body_, 70, 0) & kClosedSpline) != 0);
}

// The third and fourth corner stand crosswise; a triangle has no fourth or repeats the third.
bool LookReader::solid() {
    const Facing facing = facingOf(body_, values_);
    if (facing == Facing::tilted)
        return false;
    std::vector<CurveVertex> corners;
    for (const int code : {10, 11, 13, 12}) {
        const Point3 fallback = code == 13 ? point(12, {}) : Point3{};
        Point3 p = point(code, fallback);
        if (facing == Facing::down)
            p = {-p.x, p.y, -p.z};
        corners.push_back({p, 0.0});
    }
    look_.areas.emplace_back(corners, true);
    return true;
}

double LookReader::directionOfText() const {
    double angle = 0.0; // the last one counts
    for (const Tag& tag : body_) {
        if (tag.code == 50)
            angle = real(tag).value_or(0.0) * kDegree;
        else if (tag.code == 11)
            angle = std::atan2(first(21, 0.0), first(11, 1.0));
    }
    return angle;
}

bool LookReader::paragraph() {
    using Across = host::Text::Across;
    std::string raw;
    for (const Tag& tag : body_)
        if (tag.code == 3 || tag.code == 1)
            raw += tag.value;
    const double height = first(40, 1.0);
    if (!(height > 0.0) || raw.empty())
        return false;
    const double widest = first(41, 0.0) / (kNarrowCharacter * height);
    const std::vector<std::string> lines =
        linesOfParagraph(file_.texts.decoded(raw),
                         widest >= 1.0 && widest < 1e6 ? static_cast<std::size_t>(widest) : 0);
    const std::int64_t attachment =
        std::clamp<std::int64_t>(firstInteger(values_, body_, 71, 1), 1, 9);
    const double step = kLineStep * height * first(44, 1.0);
    const double whole = height + step * static_cast<double>(lines.size() - 1);
    const double top = attachment <= 3 ? 0.0 : attachment <= 6 ? 0.5 * whole : whole;
    const Point3 at = point(10, {});
    const double angle = directionOfText();
    for (std::size_t k = 0; k < lines.size(); ++k) {
        if (lines[k].empty())
            continue;
        const Point2 place = geometry::rotated(
            at.plan() + Point2{0.0, top - step * static_cast<double>(k)}, at.plan(), angle);
        host::Text line{{place.x, place.y, at.z}, lines[k], height, angle};
        line.across = attachment % 3 == 1   ? Across::left
                      : attachment % 3 == 2 ? Across::centre
                                            : Across::right;
        line.up = host::Text::Up::top;
        look_.texts.push_back(std::move(line));
    }
    return !look_.texts.empty();
}

bool LookReader::leader() {
    return addChain(points(10), false);
}

// Its lines, arrows and text stand in a block of its own, in world coordinates.
bool LookReader::dimension() {
    look_.block = firstText(file_, body_, 2);
    return !look_.block.empty();
}

bool readLook(LookReader& reader, std::string_view type) {
    if (type == "ELLIPSE")
        return reader.ellipse();
    if (type == "SPLINE")
        return reader.spline();
    if (type == "SOLID" || type == "TRACE")
        return reader.solid();
    if (type == "MTEXT")
        return reader.paragraph();
    if (type == "LEADER")
        return reader.leader();
    if (type.ends_with("DIMENSION"))
        return reader.dimension();
    return false;
}

} // namespace

std::shared_ptr<const host::Look> lookOf(const SourceFile& file, std::string_view type,
                                         const EntityParts& parts) {
    LookReader reader(file, parts);
    if (!readLook(reader, type))
        return nullptr;
    return std::make_shared<const host::Look>(reader.take());
}

} // namespace tessaran::drawing::dxf
