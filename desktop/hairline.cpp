#include "desktop/hairline.h"

#include "geometry/segment.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tessaran::desktop {
namespace {

constexpr int kFraction = 16; // bits below a pixel

std::int64_t fixed(double value) {
    return static_cast<std::int64_t>(std::floor(value * (1 << kFraction)));
}

} // namespace

Hairline::Hairline(QImage& image, int width)
    : bits_(image.bits()), stride_(image.bytesPerLine()), width_(image.width()),
      height_(image.height()), thick_(width) {}

// As many pixels as the line is wide, around the place as far as the image reaches.
void Hairline::block(int x, int y, QRgb colour) {
    const int left = std::max(0, x - thick_ / 2);
    const int right = std::min(width_, x - thick_ / 2 + thick_);
    const int bottom = std::min(height_, y - thick_ / 2 + thick_);
    for (int j = std::max(0, y - thick_ / 2); j < bottom; ++j)
        std::fill(row(j) + left, row(j) + right, colour);
}

// A pixel a step along the longer direction.
void Hairline::segment(QPointF from, QPointF to, QRgb colour) {
    const geometry::Box2 inside{{0.0, 0.0}, {width_ - 0.001, height_ - 0.001}};
    const geometry::Point2 a{from.x(), from.y()};
    const geometry::Point2 b{to.x(), to.y()};
    if (!inside.contains(a) || !inside.contains(b)) {
        const auto part = geometry::clippedTo(inside, a, b);
        if (!part)
            return;
        from = {part->first.x, part->first.y};
        to = {part->second.x, part->second.y};
    }
    const double dx = to.x() - from.x();
    const double dy = to.y() - from.y();
    const int steps = std::max(std::abs(static_cast<int>(to.x()) - static_cast<int>(from.x())),
                               std::abs(static_cast<int>(to.y()) - static_cast<int>(from.y())));
    std::int64_t x = fixed(from.x());
    std::int64_t y = fixed(from.y());
    const std::int64_t stepX = steps > 0 ? fixed(dx / steps) : 0;
    const std::int64_t stepY = steps > 0 ? fixed(dy / steps) : 0;
    for (int k = 0; k < steps; ++k, x += stepX, y += stepY)
        dot(std::clamp(static_cast<int>(x >> kFraction), 0, width_ - 1),
            std::clamp(static_cast<int>(y >> kFraction), 0, height_ - 1), colour);
    dot(std::clamp(static_cast<int>(to.x()), 0, width_ - 1),
        std::clamp(static_cast<int>(to.y()), 0, height_ - 1), colour);
}

void Hairline::polyline(std::span<const QPointF> points, QRgb colour) {
    if (bits_ == nullptr)
        return;
    if (points.size() == 1)
        segment(points[0], points[0], colour);
    for (std::size_t k = 0; k + 1 < points.size(); ++k)
        segment(points[k], points[k + 1], colour);
}

} // namespace tessaran::desktop
