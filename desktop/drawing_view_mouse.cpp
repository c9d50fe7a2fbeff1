// The drawing view's mouse and keys: where the cursor is, what is picked and selected, what goes
// out as an answer.

#include "console/picking.h"
#include "desktop/click_answers.h"
#include "desktop/drawing_view.h"
#include "drawing/coordinates.h"
#include "drawing/hit_test.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QWheelEvent>
#include <algorithm>
#include <cmath>
#include <set>

namespace tessaran::desktop {
namespace {

using host::EntityId;
using host::Point2;
using host::Point3;
using Kind = PromptState::Kind;

constexpr double kWheelStep = 1.2;     // zoom of one notch
constexpr double kSnapAperture = 10.0; // pixels
constexpr double kPickTolerance = 5.0; // pixels
constexpr double kDragged = 6.0;       // pixels beyond which a press is a drag

double pixelDistance(QPointF a, QPointF b) {
    return std::hypot(a.x() - b.x(), a.y() - b.y());
}

} // namespace

Point3 DrawingView::orthogonal(Point3 world) const {
    const PromptState& prompt = board_.current();
    if (!ortho_ || !prompt.takesPoint() || !prompt.base)
        return world;
    Point3 user = drawing::toUser(database().ucs(), world);
    const Point3 step = user - *prompt.base;
    if (std::abs(step.x) >= std::abs(step.y))
        user.y = prompt.base->y;
    else
        user.x = prompt.base->x;
    return drawing::toWorld(database().ucs(), user);
}

void DrawingView::moveCursor(QPointF at) {
    cursor_ = at;
    const Point2 world = worldAt(at);
    snap_.reset();
    if (board_.current().takesPoint() && !zoomWindow_)
        snap_ = findSnap(database(), world, kSnapAperture * unitsPerPixel(), snaps_);
    at_ = snap_ ? snap_->at : orthogonal({world.x, world.y, 0.0});
    if (listener_.cursorMoved)
        listener_.cursorMoved(drawing::toUser(database().ucs(), at_));
    update();
}

EntityId DrawingView::hitAt(QPointF at) const {
    const auto hit = drawing::hitTest(database(), worldAt(at), kPickTolerance * unitsPerPixel());
    return hit ? hit->entity : EntityId{};
}

void DrawingView::answer(const std::vector<std::string>& lines) const {
    if (listener_.answer)
        listener_.answer(lines);
}

void DrawingView::press(QPointF at, Qt::KeyboardModifiers keys) {
    const PromptState& prompt = board_.current();
    if (boxFrom_)
        return finishBox(at, keys);
    if (zoomWindow_) {
        boxFrom_ = worldAt(at);
        return;
    }
    if (prompt.takesPoint())
        return answer({pointLine(database(), at_, snap_.has_value())});
    if (prompt.kind == Kind::pick)
        return pick();
    if (prompt.kind == Kind::selection || prompt.kind == Kind::command)
        selectAt(at, keys);
}

void DrawingView::pick() {
    answer({pickLine(database(), hitAt(*cursor_), at_)});
}

void DrawingView::selectAt(QPointF at, Qt::KeyboardModifiers keys) {
    const bool atCommand = board_.atCommand();
    if (atCommand && listener_.clicked && listener_.clicked(worldAt(at)))
        return;
    const EntityId hit = hitAt(at);
    const bool remove = keys.testFlag(Qt::ShiftModifier);
    if (!hit) {
        boxFrom_ = worldAt(at);
        return;
    }
    if (atCommand)
        toggle({hit}, remove);
    else if (remove)
        answer({"remove", handlesLine({hit}), "add"});
    else
        answer({handlesLine({hit})});
}

void DrawingView::finishBox(QPointF to, Qt::KeyboardModifiers keys) {
    const Point2 from = *boxFrom_;
    const Point2 corner = worldAt(to);
    boxFrom_.reset();
    update();
    if (std::exchange(zoomWindow_, false)) {
        host::Box2 box;
        box.add(from);
        box.add(corner);
        const double aspect = static_cast<double>(width()) / std::max(1, height());
        return showView(box.centre(), std::max(box.height(), box.width() / aspect));
    }
    const bool remove = keys.testFlag(Qt::ShiftModifier);
    if (board_.atCommand())
        return selectInBox(from, corner, remove);
    const std::string line = boxLine(database(), from, corner);
    if (remove)
        answer({"remove", line, "add"});
    else
        answer({line});
}

void DrawingView::selectInBox(Point2 from, Point2 to, bool remove) {
    const auto step = console::parseSelection(boxLine(database(), from, to), {});
    if (!step)
        return;
    if (const auto found = console::selectedBy(*step, document(), {}))
        toggle(*found, remove);
}

void DrawingView::toggle(const std::vector<EntityId>& ids, bool remove) {
    std::vector<EntityId> kept = selection_;
    std::set<EntityId> known(kept.begin(), kept.end());
    if (remove) {
        const std::set<EntityId> going(ids.begin(), ids.end());
        std::erase_if(kept, [&](EntityId id) { return going.contains(id); });
    } else {
        for (const EntityId id : ids)
            if (known.insert(id).second)
                kept.push_back(id);
    }
    select(std::move(kept));
}

void DrawingView::select(std::vector<EntityId> ids) {
    if (ids == selection_)
        return;
    selection_ = std::move(ids);
    ++selectionChanges_;
    if (listener_.selectionChanged)
        listener_.selectionChanged();
    update();
}

bool DrawingView::cancelDrag() {
    const bool was = boxFrom_.has_value() || zoomWindow_;
    boxFrom_.reset();
    zoomWindow_ = false;
    update();
    return was;
}

void DrawingView::mousePressEvent(QMouseEvent* event) {
    setFocus(Qt::MouseFocusReason);
    moveCursor(event->position());
    if (event->button() == Qt::MiddleButton)
        panFrom_ = event->position();
    else if (event->button() == Qt::LeftButton)
        press(event->position(), event->modifiers());
    else if (event->button() == Qt::RightButton && listener_.menuWanted)
        listener_.menuWanted(event->globalPosition().toPoint());
}

void DrawingView::mouseMoveEvent(QMouseEvent* event) {
    if (panFrom_) {
        const QPointF step = event->position() - *panFrom_;
        panFrom_ = event->position();
        panBy(step);
    }
    moveCursor(event->position());
}

// A box is given by two clicks, or by one drag.
void DrawingView::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        panFrom_.reset();
    if (event->button() != Qt::LeftButton || !boxFrom_)
        return;
    const Point2 from = map()(*boxFrom_);
    if (pixelDistance({from.x, from.y}, event->position()) > kDragged)
        finishBox(event->position(), event->modifiers());
}

void DrawingView::mouseDoubleClickEvent(QMouseEvent* event) {
    if (event->button() == Qt::MiddleButton)
        zoomExtents();
    else
        mousePressEvent(event);
}

void DrawingView::wheelEvent(QWheelEvent* event) {
    const double notches = event->angleDelta().y() / 120.0;
    if (notches != 0.0)
        zoomBy(std::pow(kWheelStep, notches), event->position());
    event->accept();
}

void DrawingView::keyPressEvent(QKeyEvent* event) {
    if (listener_.keyTyped)
        listener_.keyTyped(event);
    else
        QWidget::keyPressEvent(event);
}

void DrawingView::leaveEvent(QEvent* /*event*/) {
    cursor_.reset();
    if (listener_.cursorMoved)
        listener_.cursorMoved(std::nullopt);
    update();
}

} // namespace tessaran::desktop
