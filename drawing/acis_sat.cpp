#include "drawing/acis_sat.h"

#include "base/numbers.h"
#include "base/text.h"
#include "drawing/loops.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdint>
#include <memory>
#include <numbers>
#include <optional>

namespace tessaran::drawing::acis {
namespace {

using host::Loop;
using host::Point2;
using host::Point3;
using host::Region;
using std::numbers::pi;

constexpr int kIdsFrom = 700; // version from which records carry an id and a pattern pointer

base::Error broken(std::string text) {
    return base::formatError("solid modeller data: " + std::move(text));
}

// --- reading ------------------------------------------------------------------------------------

struct Record {
    std::string_view name;
    std::vector<std::string_view> tokens; // behind the common ones
};

// The text cut into records, with access by what a record's place in the format means.
class Model {
  public:
    static base::Result<Model> parse(std::span<const std::string> lines);

    int version() const { return version_; }
    std::size_t size() const { return records_.size(); }
    const Record* find(std::string_view name) const {
        for (const Record& record : records_)
            if (record.name == name)
                return &record;
        return nullptr;
    }
    // The record that the nth pointer of this one leads to; null for none.
    const Record* follow(const Record& record, int nth) const;
    // The number at the nth place of a record.
    static std::optional<double> number(const Record& record, std::size_t nth);
    static std::optional<Point3> point(const Record& record, std::size_t nth);

  private:
    int version_ = 0;
    std::unique_ptr<std::string> text_ = std::make_unique<std::string>(); // records view into it
    std::vector<Record> records_;
};

std::vector<std::string_view> words(std::string_view text) {
    std::vector<std::string_view> out;
    std::size_t at = 0;
    constexpr std::string_view kBlanks = " \t\r\n";
    while ((at = text.find_first_not_of(kBlanks, at)) != std::string_view::npos) {
        const std::size_t end = std::min(text.find_first_of(kBlanks, at), text.size());
        out.push_back(text.substr(at, end - at));
        at = end;
    }
    return out;
}

// A header has one line in the oldest version and three in all others.
std::size_t headerLines(std::span<const std::string> lines, int version) {
    return std::min<std::size_t>(lines.size(), version < 200 ? 1 : 3);
}

base::Result<Model> Model::parse(std::span<const std::string> lines) {
    Model model;
    if (lines.empty())
        return broken("it is empty");
    model.version_ = base::leadingInt(lines[0]);
    if (model.version_ < 100 || model.version_ > 40000)
        return broken("its first line is no header");
    for (const std::string& line : lines.subspan(headerLines(lines, model.version_))) {
        if (line.starts_with("End-of-") || line.starts_with("Begin-of-ACIS-History"))
            break;
        *model.text_ += line;
        *model.text_ += ' ';
    }
    std::string_view rest = *model.text_;
    for (std::size_t end = 0; (end = rest.find('#')) != std::string_view::npos;
         rest.remove_prefix(end + 1)) {
        std::vector<std::string_view> tokens = words(rest.substr(0, end));
        if (!tokens.empty() && tokens[0].starts_with('-')) // a sequence number
            tokens.erase(tokens.begin());
        if (tokens.empty())
            return broken("a record without a name");
        Record record{tokens[0], {}};
        // name, attributes, and from version 700 on id and pattern
        const std::size_t common = model.version_ >= kIdsFrom ? 4 : 2;
        if (tokens.size() > common)
            record.tokens.assign(tokens.begin() + static_cast<std::ptrdiff_t>(common),
                                 tokens.end());
        model.records_.push_back(std::move(record));
    }
    return base::Result<Model>(std::move(model));
}

const Record* Model::follow(const Record& record, int nth) const {
    for (const std::string_view token : record.tokens) {
        if (!token.starts_with('$') || nth-- > 0)
            continue;
        const std::optional<long long> index = base::wholeInt(token.substr(1));
        if (!index || *index < 0 || *index >= static_cast<long long>(records_.size()))
            return nullptr;
        return &records_[static_cast<std::size_t>(*index)];
    }
    return nullptr;
}

std::optional<double> Model::number(const Record& record, std::size_t nth) {
    if (nth >= record.tokens.size())
        return std::nullopt;
    return base::wholeDouble(record.tokens[nth]);
}

std::optional<Point3> Model::point(const Record& record, std::size_t nth) {
    const std::optional<double> x = number(record, nth);
    const std::optional<double> y = number(record, nth + 1);
    const std::optional<double> z = number(record, nth + 2);
    if (!x || !y || !z || !std::isfinite(*x + *y + *z))
        return std::nullopt;
    return Point3{*x, *y, *z};
}

bool has(const Record& record, std::string_view word) {
    return std::find(record.tokens.begin(), record.tokens.end(), word) != record.tokens.end();
}

// The body's own placement: rows of a rotation, a translation, a scale.
struct Placement {
    std::array<Point3, 3> axes{{{1, 0, 0}, {0, 1, 0}, {0, 0, 1}}};
    Point3 origin{};
    double scale = 1.0;

    Point3 direction(const Point3& v) const {
        return scale * (v.x * axes[0] + v.y * axes[1] + v.z * axes[2]);
    }
    Point3 position(const Point3& p) const { return origin + direction(p); }
};

class RegionReader {
  public:
    explicit RegionReader(const Model& model) : model_(model) {}

    base::Result<Region> read();

  private:
    bool readPlacement(const Record& body);
    bool readFaces(const Record& body);
    bool readFace(const Record& face);
    bool readLoop(const Record& loop);
    std::optional<LoopEdge> readCoedge(const Record& coedge);
    std::optional<LoopEdge> readEdge(const Record& edge);
    std::optional<LoopEdge> readCurve(const Record& curve, Point3 start, Point3 end, bool backward);
    std::optional<Point3> readVertex(const Record* vertex);
    bool noteHeight(double z);
    bool fail(std::string reason) {
        if (reason_.empty())
            reason_ = std::move(reason);
        return false;
    }

    // Walks a list of records linked by their pointer `next`; false on a ring or when the visit
    // fails.
    template <class Visit>
    bool walk(const Record* first, int next, const Visit& visit) {
        std::size_t steps = 0;
        for (const Record* record = first; record != nullptr; record = model_.follow(*record, next))
            if (++steps > model_.size() || !visit(*record))
                return fail("its records do not link up");
        return true;
    }

    const Model& model_;
    Placement placement_;
    Region region_;
    std::optional<double> height_;
    double extent_ = 0.0;
    std::string reason_;
};

base::Result<Region> RegionReader::read() {
    const Record* body = model_.find("body");
    if (body == nullptr)
        return broken("there is no body in it");
    if (!readPlacement(*body) || !readFaces(*body))
        return broken(reason_);
    if (region_.loops.empty())
        return broken("its body has no face");
    region_.elevation = height_.value_or(0.0);
    return std::move(region_);
}

bool RegionReader::readPlacement(const Record& body) {
    const Record* transform = model_.follow(body, 2);
    if (transform == nullptr)
        return true;
    for (std::size_t row = 0; row < 4; ++row) {
        const std::optional<Point3> p = Model::point(*transform, 3 * row);
        if (!p)
            return fail("its placement is not readable");
        (row < 3 ? placement_.axes[row] : placement_.origin) = *p;
    }
    placement_.scale = Model::number(*transform, 12).value_or(1.0);
    return true;
}

bool RegionReader::readFaces(const Record& body) {
    // lump: next lump, shell; shell: next shell, subshell, face; face: next face
    return walk(model_.follow(body, 0), 0, [&](const Record& lump) {
        return walk(model_.follow(lump, 1), 0, [&](const Record& shell) {
            return walk(model_.follow(shell, 2), 0,
                        [&](const Record& face) { return readFace(face); });
        });
    });
}

bool RegionReader::readFace(const Record& face) {
    // face: next face, loop, shell, subshell, surface
    const Record* surface = model_.follow(face, 4);
    if (surface == nullptr || surface->name != "plane-surface")
        return fail("it has a face that is not plane");
    const std::optional<Point3> normal = Model::point(*surface, 3);
    if (!normal)
        return fail("a plane of it is not readable");
    const Point3 n = placement_.direction(*normal);
    if (std::hypot(n.x, n.y) > 1e-9 * std::abs(n.z))
        return fail("its plane is tilted");
    return walk(model_.follow(face, 1), 0, [&](const Record& loop) { return readLoop(loop); });
}

bool RegionReader::readLoop(const Record& loop) {
    const Record* const first = model_.follow(loop, 1);
    std::vector<LoopEdge> edges;
    for (const Record* coedge = first; coedge != nullptr;) {
        const std::optional<LoopEdge> edge = readCoedge(*coedge);
        if (!edge)
            return false;
        edges.push_back(*edge);
        coedge = model_.follow(*coedge, 0);
        if (coedge == first)
            break;
        if (edges.size() > model_.size())
            return fail("its records do not link up");
    }
    if (edges.empty())
        return fail("it has a loop without edges");
    // The first edge's direction is known here, so nothing is turned around.
    Loop out;
    for (const LoopEdge& edge : edges)
        out.vertices.insert(out.vertices.end(), edge.vertices.begin(), edge.vertices.end());
    region_.loops.push_back(std::move(out));
    return true;
}

std::optional<LoopEdge> RegionReader::readCoedge(const Record& coedge) {
    // coedge: next, previous, partner, edge, sense, loop, curve
    const Record* edge = model_.follow(coedge, 3);
    if (edge == nullptr) {
        fail("it has a loop without edges");
        return std::nullopt;
    }
    std::optional<LoopEdge> out = readEdge(*edge);
    if (out && has(coedge, "reversed"))
        return reversed(*out);
    return out;
}

std::optional<LoopEdge> RegionReader::readEdge(const Record& edge) {
    // edge: start vertex, end vertex, coedge, curve, sense
    const std::optional<Point3> start = readVertex(model_.follow(edge, 0));
    const std::optional<Point3> end = readVertex(model_.follow(edge, 1));
    const Record* curve = model_.follow(edge, 3);
    if (!start || !end || curve == nullptr) {
        fail("an edge of it is not readable");
        return std::nullopt;
    }
    return readCurve(*curve, *start, *end, has(edge, "reversed"));
}

std::optional<LoopEdge> RegionReader::readCurve(const Record& curve, Point3 start, Point3 end,
                                                bool backward) {
    if (curve.name == "straight-curve")
        return straightEdge(start.plan(), end.plan());
    if (curve.name != "ellipse-curve") {
        fail("it has an edge on a curve of another kind (" + std::string(curve.name) + ")");
        return std::nullopt;
    }
    const std::optional<Point3> centre = Model::point(curve, 0);
    const std::optional<Point3> normal = Model::point(curve, 3);
    const std::optional<Point3> major = Model::point(curve, 6);
    const std::optional<double> ratio = Model::number(curve, 9);
    if (!centre || !normal || !major || !ratio || !(std::abs(*ratio) > 1e-12)) {
        fail("an arc of it is not readable");
        return std::nullopt;
    }
    const Point2 c = placement_.position(*centre).plan();
    const Point2 a = placement_.direction(*major).plan();
    const bool up = placement_.direction(*normal).z > 0.0;
    const double turn = up != backward ? 1.0 : -1.0; // +1: counter-clockwise
    // The parameter on the ellipse, counter-clockwise from its major axis.
    const auto parameter = [&](Point3 p) {
        const Point2 d = p.plan() - c;
        return std::atan2(geometry::cross(a, d) / *ratio, geometry::dot(a, d));
    };
    const double from = parameter(start);
    const bool closed =
        geometry::distance(start.plan(), end.plan()) <= 1e-9 * std::max(1.0, geometry::length(a));
    double sweep = closed ? 2.0 * pi : turn * (parameter(end) - from);
    if (sweep <= 0.0)
        sweep += 2.0 * pi;
    LoopEdge out = ellipseEdge(c, a, *ratio, from, turn * sweep);
    // The vertices are exact, the arc's ends are computed.
    out.vertices.front().at = start.plan();
    out.end = end.plan();
    return out;
}

std::optional<Point3> RegionReader::readVertex(const Record* vertex) {
    if (vertex == nullptr)
        return std::nullopt;
    // vertex: edge, point
    const Record* record = model_.follow(*vertex, 1);
    if (record == nullptr || record->name != "point")
        return std::nullopt;
    const std::optional<Point3> local = Model::point(*record, 0);
    if (!local)
        return std::nullopt;
    const Point3 p = placement_.position(*local);
    extent_ = std::max({extent_, std::abs(p.x), std::abs(p.y), std::abs(p.z)});
    return noteHeight(p.z) ? std::optional(p) : std::nullopt;
}

bool RegionReader::noteHeight(double z) {
    if (!height_)
        height_ = z;
    return std::abs(z - *height_) <= 1e-9 * std::max(1.0, extent_) || fail("its plane is tilted");
}

// --- writing ------------------------------------------------------------------------------------

std::string vectorText(double x, double y, double z) {
    return base::shortest(x) + ' ' + base::shortest(y) + ' ' + base::shortest(z);
}

// Makes the records of a region's faces. Numbers of records are known in advance: each face, loop
// and segment takes a fixed count of them.
class RegionWriter {
  public:
    explicit RegionWriter(double elevation) : elevation_(elevation) {}

    std::vector<std::string> write(const Region& region);

  private:
    static std::string pointer(long index) {
        return std::string("$").append(std::to_string(index));
    }
    void add(const std::string& name, const std::string& data) {
        // attributes none, id -1, pattern none
        lines_.push_back(name + " $-1 -1 $-1 " + data + " #");
    }
    long next() const { return static_cast<long>(lines_.size()) - kHeader; }
    void writeFace(const LoopFace& face, bool last);
    void writeLoop(const Loop& loop, long face, bool last);
    void writeSegment(const Loop& loop, std::size_t i, long loopRecord, long first);
    void writeCurve(Point2 a, Point2 b, double bulge);

    static constexpr long kHeader = 3;
    static constexpr long kPerSegment = 5; // coedge, edge, vertex, point, curve
    double elevation_;
    std::vector<std::string> lines_;
};

std::vector<std::string> RegionWriter::write(const Region& region) {
    lines_ = {"700 0 1 0 ", "@8 Tessaran @12 ACIS 32.0 NT @24 Sat Jan  1 12:00:00 2000 ",
              "1 9.9999999999999995e-007 1e-010 "};
    const std::vector<LoopFace> faces = facesOf(region.loops);
    add("body", "$1 $-1 $-1");
    for (std::size_t i = 0; i < faces.size(); ++i)
        writeFace(faces[i], i + 1 == faces.size());
    lines_.emplace_back("End-of-ACIS-data ");
    return std::move(lines_);
}

void RegionWriter::writeFace(const LoopFace& face, bool last) {
    const long lump = next();
    long segments = static_cast<long>(face.outer.vertices.size());
    for (const Loop& hole : face.holes)
        segments += static_cast<long>(hole.vertices.size());
    const long loops = static_cast<long>(face.holes.size()) + 1;
    const long nextLump = lump + 4 + loops + kPerSegment * segments;
    add("lump", pointer(last ? -1 : nextLump) + ' ' + pointer(lump + 1) + " $0");
    add("shell", "$-1 $-1 " + pointer(lump + 2) + " $-1 " + pointer(lump));
    add("face", "$-1 " + pointer(lump + 4) + ' ' + pointer(lump + 1) + " $-1 " + pointer(lump + 3) +
                    " forward double out");
    add("plane-surface", vectorText(0.0, 0.0, elevation_) + " 0 0 1 1 0 0 forward_v I I I I");
    writeLoop(face.outer, lump + 2, face.holes.empty());
    for (std::size_t i = 0; i < face.holes.size(); ++i)
        writeLoop(face.holes[i], lump + 2, i + 1 == face.holes.size());
}

void RegionWriter::writeLoop(const Loop& loop, long face, bool last) {
    const long record = next();
    const auto n = static_cast<long>(loop.vertices.size());
    add("loop", pointer(last ? -1 : record + 1 + kPerSegment * n) + ' ' + pointer(record + 1) +
                    ' ' + pointer(face));
    for (std::size_t i = 0; i < loop.vertices.size(); ++i)
        writeSegment(loop, i, record, record + 1);
}

void RegionWriter::writeSegment(const Loop& loop, std::size_t i, long loopRecord, long first) {
    const std::size_t n = loop.vertices.size();
    const auto coedgeOf = [&](std::size_t k) {
        return first + kPerSegment * static_cast<long>(k % n);
    };
    const long coedge = coedgeOf(i);
    const long vertex = coedge + 2;
    const Point2 a = loop.vertices[i].at;
    const Point2 b = loop.vertices[(i + 1) % n].at;
    const double bulge = loop.vertices[i].bulge;
    const double length =
        bulge == 0.0 ? geometry::distance(a, b) : 4.0 * std::abs(std::atan(bulge));
    add("coedge", pointer(coedgeOf(i + 1)) + ' ' + pointer(coedgeOf(i + n - 1)) + " $-1 " +
                      pointer(coedge + 1) + " forward " + pointer(loopRecord) + " $-1");
    add("edge", pointer(vertex) + " 0 " + pointer(coedgeOf(i + 1) + 2) + ' ' +
                    base::shortest(length) + ' ' + pointer(coedge) + ' ' + pointer(coedge + 4) +
                    " forward @7 unknown");
    add("vertex", pointer(coedge + 1) + ' ' + pointer(coedge + 3));
    add("point", vectorText(a.x, a.y, elevation_));
    writeCurve(a, b, bulge);
}

// Straight: through the start, parameter 0 there. Arc: its main axis points to the start, so the
// parameter is the angle turned.
void RegionWriter::writeCurve(Point2 a, Point2 b, double bulge) {
    if (bulge == 0.0) {
        const double length = geometry::distance(a, b);
        const Point2 d = length > 0.0 ? (1.0 / length) * (b - a) : Point2{1.0, 0.0};
        add("straight-curve",
            vectorText(a.x, a.y, elevation_) + ' ' + vectorText(d.x, d.y, 0.0) + " I I");
        return;
    }
    const double offset = (1.0 - bulge * bulge) / (4.0 * bulge);
    const Point2 chord = b - a;
    const Point2 centre{0.5 * (a.x + b.x) - offset * chord.y, 0.5 * (a.y + b.y) + offset * chord.x};
    const Point2 axis = a - centre;
    add("ellipse-curve", vectorText(centre.x, centre.y, elevation_) +
                             (bulge > 0.0 ? " 0 0 1 " : " 0 0 -1 ") +
                             vectorText(axis.x, axis.y, 0.0) + " 1 I I");
}

// Zero-length segments have no direction that a curve could take.
Region withoutEmptySegments(const Region& region) {
    Region out;
    out.elevation = region.elevation;
    for (const Loop& loop : region.loops) {
        Loop kept;
        const std::size_t n = loop.vertices.size();
        for (std::size_t i = 0; i < n; ++i)
            if (!(loop.vertices[i].at == loop.vertices[(i + 1) % n].at))
                kept.vertices.push_back(loop.vertices[i]);
        if (kept.vertices.size() >= 2)
            out.loops.push_back(std::move(kept));
    }
    return out;
}

} // namespace

std::string deciphered(std::string_view line) {
    std::string out;
    for (std::size_t i = 0; i < line.size(); ++i) {
        const char c = line[i];
        const bool printable = c > ' ' && c < '\x7F';
        out.push_back(printable ? static_cast<char>(159 - c) : c);
        if (c == '^' && i + 1 < line.size() && line[i + 1] == ' ')
            ++i;
    }
    return out;
}

std::string ciphered(std::string_view line) {
    std::string out;
    for (const char c : line) {
        const bool printable = c > ' ' && c < '\x7F';
        out.push_back(printable ? static_cast<char>(159 - c) : c);
        if (out.back() == '^')
            out.push_back(' ');
    }
    return out;
}

base::Result<Region> readRegion(std::span<const std::string> lines) {
    const base::Result<Model> model = Model::parse(lines);
    if (!model)
        return model.error();
    return RegionReader(*model).read();
}

std::vector<std::string> writeRegion(const Region& region) {
    return RegionWriter(region.elevation).write(withoutEmptySegments(region));
}

} // namespace tessaran::drawing::acis
