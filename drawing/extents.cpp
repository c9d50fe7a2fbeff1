#include "drawing/extents.h"

#include "drawing/scene.h"
#include "drawing/selection.h"

#include <algorithm>
#include <cmath>

namespace tessaran::drawing {
namespace {

using geometry::Box2;

class ExtentsCanvas final : public Canvas {
  public:
    explicit ExtentsCanvas(Reach reach) : reach_(reach) {}

    Box2 box;

    void curve(const geometry::Curve& curve, const Pen& pen) override {
        const Box2 plain = curve.extents();
        if (!plain.empty())
            box.add(reach_ == Reach::widths ? plain.enlarged(0.5 * pen.width) : plain);
    }
    void fill(const std::vector<geometry::Curve>& loops, const Pen& pen) override {
        for (const geometry::Curve& loop : loops)
            curve(loop, pen);
    }
    void text(const host::Text& text, const Pen& /*pen*/) override {
        for (const host::Point2 corner : textBox(text))
            box.add(corner);
    }
    void point(host::Point2 at, const Pen& /*pen*/) override { box.add(at); }

  private:
    Reach reach_;
};

} // namespace

bool isNear(const Box2& box) {
    const auto near = [](double value) { return std::abs(value) <= kFarthestCoordinate; };
    return near(box.low.x) && near(box.low.y) && near(box.high.x) && near(box.high.y);
}

Box2 recordExtents(const Database& database, const EntityRecord& record, Visibility visibility,
                   Reach reach) {
    ExtentsCanvas canvas(reach);
    drawEntity(database, record, visibility, canvas);
    return canvas.box;
}

Box2 drawingExtents(const Database& database, const host::SelectionFilter& filter) {
    const FilterTest passes(database.tables(), filter);
    Box2 all;
    database.forEachBox([&](const EntityRecord& record, const Box2& box) {
        if (!box.empty() && isNear(box) && isShown(database, record) && passes(record))
            all.add(box);
    });
    return all;
}

View viewOn(const Box2& box) {
    View view;
    if (box.empty())
        return view;
    view.centre = box.centre();
    const double needed =
        std::max(box.height(), box.width() * view.heightPixels / view.widthPixels);
    if (needed > 0.0) // a single point is seen in the middle of the empty drawing's view
        view.height = needed;
    return view;
}

} // namespace tessaran::drawing
