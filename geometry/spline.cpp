#include "geometry/spline.h"

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace tessaran::geometry {
namespace {

constexpr int kHighestDegree = 25;

// A control point times its weight, and the weight.
struct Weighted {
    double x = 0.0;
    double y = 0.0;
    double z = 0.0;
    double w = 1.0;
};

Weighted between(const Weighted& a, const Weighted& b, double share) {
    return {std::lerp(a.x, b.x, share), std::lerp(a.y, b.y, share), std::lerp(a.z, b.z, share),
            std::lerp(a.w, b.w, share)};
}

bool isUsable(const Spline& s) {
    const auto finite = [](double value) { return std::isfinite(value); };
    const auto positive = [](double value) { return value > 0.0 && std::isfinite(value); };
    if (s.degree < 1 || s.degree > kHighestDegree)
        return false;
    const auto degree = static_cast<std::size_t>(s.degree);
    return s.controls.size() > degree && s.knots.size() == s.controls.size() + degree + 1 &&
           std::ranges::all_of(s.knots, finite) && std::ranges::is_sorted(s.knots) &&
           (s.weights.empty() ||
            (s.weights.size() == s.controls.size() && std::ranges::all_of(s.weights, positive)));
}

// The point at parameter u of the span between knots `span` and `span` + 1.
Point3 pointAt(const Spline& s, std::size_t span, double u, std::vector<Weighted>& work) {
    const auto degree = static_cast<std::size_t>(s.degree);
    const std::size_t first = span - degree;
    work.resize(degree + 1);
    for (std::size_t k = 0; k <= degree; ++k) {
        const Point3& p = s.controls[first + k];
        const double w = s.weights.empty() ? 1.0 : s.weights[first + k];
        work[k] = {p.x * w, p.y * w, p.z * w, w};
    }
    for (std::size_t level = 1; level <= degree; ++level)
        for (std::size_t k = degree; k >= level; --k) {
            const double low = s.knots[first + k];
            const double high = s.knots[first + k + degree + 1 - level];
            const double share = high > low ? (u - low) / (high - low) : 0.0;
            work[k] = between(work[k - 1], work[k], share);
        }
    const Weighted& at = work[degree];
    return {at.x / at.w, at.y / at.w, at.z / at.w};
}

} // namespace

std::vector<Point3> pointsAlong(const Spline& spline, int pointsOfSpan) {
    std::vector<Point3> out;
    if (!isUsable(spline) || pointsOfSpan < 1)
        return out;
    std::vector<Weighted> work;
    std::size_t last = 0; // span that was gone along last
    for (auto span = static_cast<std::size_t>(spline.degree); span < spline.controls.size();
         ++span) {
        const double low = spline.knots[span];
        const double high = spline.knots[span + 1];
        if (!(high > low))
            continue;
        last = span;
        for (int k = 0; k < pointsOfSpan; ++k)
            out.push_back(
                pointAt(spline, span, std::lerp(low, high, 1.0 * k / pointsOfSpan), work));
    }
    if (last != 0)
        out.push_back(pointAt(spline, last, spline.knots[last + 1], work));
    return out;
}

} // namespace tessaran::geometry
