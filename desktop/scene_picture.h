#pragma once

// The drawing as an image, painted in slices so that the window never waits long for it. Until the
// picture of a new view is complete the last complete one is there to be moved about.

#include "desktop/painter_canvas.h"
#include "drawing/database.h"

#include <QImage>
#include <chrono>
#include <cstdint>
#include <vector>

namespace tessaran::desktop {

// What a picture shows. Two equal ones are the same picture.
struct PictureKey {
    const drawing::Database* database = nullptr;
    std::uint64_t revision = 0;
    host::Point2 centre;
    double height = 0.0; // drawing units
    int widthPixels = 0; // of the device
    int heightPixels = 0;
    double ratio = 1.0; // device pixels a pixel
    drawing::Rgb background{};

    friend bool operator==(const PictureKey&, const PictureKey&) = default;

    drawing::PageMap map() const;
    host::Box2 box() const;
};

class ScenePicture {
  public:
    // Begins the picture unless it is there or on its way.
    void want(const PictureKey& key);
    // Paints on for about so long; true when the picture wanted is complete.
    bool work(std::chrono::milliseconds budget);
    // Gives up what has begun; the entities may be about to change.
    void forget();

    bool hasImage() const { return !image_.isNull(); }
    const QImage& image() const { return image_; }
    const PictureKey& key() const { return key_; }
    bool isCurrent(const PictureKey& key) const { return hasImage() && key_ == key; }
    // What the last complete picture took.
    std::chrono::milliseconds took() const { return took_; }

  private:
    void paint(QPainter& painter, const Hairline& lines,
               std::chrono::steady_clock::time_point until);

    QImage image_;
    PictureKey key_;
    std::chrono::milliseconds took_{0};

    // On its way.
    bool busy_ = false;
    PictureKey next_;
    QImage canvas_;
    std::vector<const drawing::EntityRecord*> entities_;
    std::size_t done_ = 0;
    std::chrono::steady_clock::duration spent_{};
};

} // namespace tessaran::desktop
