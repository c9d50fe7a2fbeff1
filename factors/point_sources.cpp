#include "factors/point_sources.h"

#include "base/line_reader.h"
#include "base/numbers.h"
#include "geometry/segment.h"

#include <array>
#include <cmath>
#include <optional>
#include <string_view>

namespace tessaran::factors {
namespace {

using geometry::Curve;
using geometry::Point2;
using geometry::Point3;

using Fields = std::array<std::string_view, 3>;

std::string_view withoutBlanksAndTabs(std::string_view line) {
    const std::size_t first = line.find_first_not_of(" \t");
    if (first == std::string_view::npos)
        return {};
    return line.substr(first, line.find_last_not_of(" \t") - first + 1);
}

// Nothing unless there are exactly three.
std::optional<Fields> threeFields(std::string_view line) {
    const std::size_t one = line.find(',');
    const std::size_t two = one == std::string_view::npos ? one : line.find(',', one + 1);
    if (two == std::string_view::npos || line.find(',', two + 1) != std::string_view::npos)
        return std::nullopt;
    return Fields{line.substr(0, one), line.substr(one + 1, two - one - 1), line.substr(two + 1)};
}

void readLine(std::string_view line, const PointSink& sink, PointFileCounts& counts) {
    const std::optional<Fields> fields = threeFields(withoutBlanksAndTabs(line));
    if (!fields) {
        ++counts.skipped;
        return;
    }
    std::array<double, 3> numbers{};
    bool all = true;
    for (std::size_t k = 0; k < numbers.size(); ++k) {
        const std::optional<double> number = base::leadingNumber((*fields)[k]);
        all = all && number;
        numbers[k] = number.value_or(0.0);
    }
    if (!std::isfinite(numbers[0]) || !std::isfinite(numbers[1]) || !std::isfinite(numbers[2])) {
        ++counts.unusable;
        return;
    }
    counts.withoutNumber += all ? 0 : 1;
    ++counts.points;
    sink({numbers[0], numbers[1], numbers[2]});
}

// One segment of a curve, measured in space.
struct SpaceSegment {
    geometry::Segment plan;
    double z0 = 0.0;
    double z1 = 0.0;
    double length = 0.0;

    SpaceSegment(const Curve& curve, std::size_t k)
        : plan(curve.segmentStart(k).at.plan(), curve.segmentEnd(k).at.plan(),
               curve.segmentStart(k).bulge),
          z0(curve.segmentStart(k).at.z), z1(curve.segmentEnd(k).at.z),
          length(std::hypot(plan.length(), z1 - z0)) {}

    Point3 at(double along) const {
        const double share = length > 0.0 ? along / length : 0.0;
        const Point2 p = plan.pointAt(share);
        return {p.x, p.y, z0 + share * (z1 - z0)};
    }
};

} // namespace

base::Result<void> readPointFile(const std::filesystem::path& path, const PointSink& sink,
                                 PointFileCounts& counts) {
    base::Result<base::LineReader> reader = base::LineReader::open(path);
    if (!reader)
        return reader.error();
    std::string_view line;
    while (reader->next(line)) {
        if (reader->cutOff())
            ++counts.skipped;
        else
            readLine(line, sink, counts);
    }
    return reader->status();
}

bool samplesAlong(const Curve& curve, double step, const PointSink& sink) {
    double total = 0.0;
    for (std::size_t k = 0; k < curve.segmentCount(); ++k)
        total += SpaceSegment(curve, k).length;
    if (!(total / step <= kMostSamples))
        return false;
    if (curve.segmentCount() == 0) {
        if (!curve.empty())
            sink(curve.vertices().front().at);
        return true;
    }
    double before = 0.0;
    long long taken = 0;
    for (std::size_t k = 0; k < curve.segmentCount(); ++k) {
        const SpaceSegment segment(curve, k);
        for (double d = 0.0; (d = static_cast<double>(taken) * step) <= before + segment.length;
             ++taken)
            sink(segment.at(d - before));
        before += segment.length;
    }
    return true;
}

} // namespace tessaran::factors
