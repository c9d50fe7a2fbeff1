#pragma once

// Thin lines straight into an image's memory. A plan at full extent is millions of steps
// of a pixel or two; for those a general painter spends its time on getting ready.

#include <QImage>
#include <QPointF>
#include <span>

namespace tessaran::desktop {

class Hairline {
  public:
    Hairline() = default; // draws nowhere
    // The image must be Format_RGB32, unshared, and live on; no painter may begin on it before.
    // `width`: pixels, of all its lines.
    explicit Hairline(QImage& image, int width = 1);

    explicit operator bool() const { return bits_ != nullptr; }
    int width() const { return thick_; }
    // Through all the points, which may lie anywhere; both ends are drawn.
    void polyline(std::span<const QPointF> points, QRgb colour);

  private:
    void segment(QPointF from, QPointF to, QRgb colour);
    void dot(int x, int y, QRgb colour) {
        if (thick_ > 1)
            return block(x, y, colour);
        row(y)[x] = colour;
    }
    void block(int x, int y, QRgb colour);
    QRgb* row(int y) { return reinterpret_cast<QRgb*>(bits_ + stride_ * y); }

    uchar* bits_ = nullptr;
    qsizetype stride_ = 0;
    int width_ = 0;
    int height_ = 0;
    int thick_ = 1;
};

} // namespace tessaran::desktop
