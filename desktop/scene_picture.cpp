#include "desktop/scene_picture.h"

#include "drawing/scene.h"

#include <algorithm>
#include <cmath>

namespace tessaran::desktop {
namespace {

using Clock = std::chrono::steady_clock;

constexpr std::size_t kMostSmooth = 20'000; // entities drawn with antialiasing
constexpr std::size_t kBetweenLooks = 64;   // entities between two looks at the clock

} // namespace

drawing::PageMap PictureKey::map() const {
    return {centre, {0.5 * widthPixels, 0.5 * heightPixels}, heightPixels / height};
}

host::Box2 PictureKey::box() const {
    const double half = 0.5 * height;
    const double wide = half * widthPixels / heightPixels;
    return {{centre.x - wide, centre.y - half}, {centre.x + wide, centre.y + half}};
}

void ScenePicture::want(const PictureKey& key) {
    if (key.widthPixels < 1 || key.heightPixels < 1 || isCurrent(key) || (busy_ && next_ == key)) {
        if (isCurrent(key))
            forget();
        return;
    }
    const auto start = Clock::now();
    busy_ = true;
    next_ = key;
    done_ = 0;
    if (canvas_.width() != key.widthPixels || canvas_.height() != key.heightPixels)
        canvas_ = QImage(key.widthPixels, key.heightPixels, QImage::Format_RGB32);
    canvas_.fill(qRgb(key.background.red, key.background.green, key.background.blue));
    entities_ = key.database->near(key.box());
    spent_ = Clock::now() - start;
}

void ScenePicture::forget() {
    busy_ = false;
    entities_.clear();
}

void ScenePicture::paint(QPainter& painter, const Hairline& lines, Clock::time_point until) {
    PainterCanvas canvas(painter, next_.map(),
                         {.background = next_.background,
                          .hairline = static_cast<double>(lines.width()),
                          .smooth = entities_.size() <= kMostSmooth,
                          .lines = lines});
    while (done_ < entities_.size()) {
        drawing::drawEntity(*next_.database, *entities_[done_], drawing::Visibility::shown, canvas);
        if (++done_ % kBetweenLooks == 0 && Clock::now() >= until)
            return;
    }
}

bool ScenePicture::work(std::chrono::milliseconds budget) {
    if (!busy_)
        return true;
    if (next_.database->revision() != next_.revision) { // the entities may be gone
        forget();
        return false;
    }
    const auto start = Clock::now();
    const Hairline lines(canvas_, std::max(1, static_cast<int>(next_.ratio)));
    QPainter painter(&canvas_);
    paint(painter, lines, start + budget);
    painter.end();
    spent_ += Clock::now() - start;
    if (done_ < entities_.size())
        return false;
    std::swap(image_, canvas_);
    image_.setDevicePixelRatio(next_.ratio);
    canvas_.setDevicePixelRatio(1.0);
    key_ = next_;
    took_ = std::chrono::duration_cast<std::chrono::milliseconds>(spent_);
    forget();
    return true;
}

} // namespace tessaran::desktop
