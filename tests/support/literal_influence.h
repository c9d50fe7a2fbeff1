#pragma once

// Influence as it is written down: every source element adds to every receiver within its window.

#include "stress/influence.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace tessaran::test {

enum class InfluenceKind { stress, displacement };

// Adds what the source columns [begin, end) cause; returns the number of terms.
inline long long addLiteralInfluence(InfluenceKind kind, const stress::Influence& influence,
                                     const stress::ElementField& sources, int begin, int end,
                                     const std::vector<double>& convergence,
                                     const stress::ElementField& receivers,
                                     std::vector<double>& out) {
    const double h = std::abs(influence.h);
    const double area = sources.width * sources.width;
    const double a = receivers.width;
    // Displacements of a plane off the seams come from all of a seam.
    const double reach = kind == InfluenceKind::stress ? 10.0 * h / a : 1e8;
    long long terms = 0;
    const auto first = [&](double p) {
        return std::max(1, static_cast<int>(std::floor(p - reach)));
    };
    const auto last = [&](double p, int n) {
        return std::min(n, static_cast<int>(std::ceil(p + reach)));
    };
    for (int si = begin; si < end; ++si) {
        for (int sj = 0; sj < sources.nY; ++sj) {
            const double d =
                convergence[static_cast<std::size_t>(si) * static_cast<std::size_t>(sources.nY) +
                            static_cast<std::size_t>(sj)];
            const double xs = (si + 0.5) * sources.width + sources.x;
            const double ys = (sj + 0.5) * sources.width + sources.y;
            const double px = (xs - receivers.x) / a + 0.5;
            const double py = (ys - receivers.y) / a + 0.5;
            for (int i = first(px); i <= last(px, receivers.nX); ++i) {
                for (int j = first(py); j <= last(py, receivers.nY); ++j) {
                    const double dx = (i - 0.5) * a + receivers.x - xs;
                    const double dy = (j - 0.5) * a + receivers.y - ys;
                    const double z = (dx * dx + dy * dy) / (4.0 * influence.lambda * h);
                    double& sum = out[static_cast<std::size_t>(i - 1) *
                                          static_cast<std::size_t>(receivers.nY) +
                                      static_cast<std::size_t>(j - 1)];
                    if (kind == InfluenceKind::stress)
                        sum += influence.modulus * area * d /
                               (8.0 * std::numbers::pi * influence.lambda * h * h) * (z - 1.0) *
                               std::exp(-z);
                    else
                        sum += area * d / (8.0 * std::numbers::pi * influence.lambda * h) *
                               std::exp(-z);
                    ++terms;
                }
            }
        }
    }
    return terms;
}

} // namespace tessaran::test
