#include "desktop/drawing_view.h"

#include "geometry/polygon.h"

#include <QPainter>
#include <algorithm>
#include <cmath>

namespace tessaran::desktop {
namespace {

using host::EntityId;
using host::Point2;
using Kind = PromptState::Kind;

constexpr double kMargin = 1.05;       // around the drawing's extents
constexpr double kSmallestView = 1e-9; // drawing units high
constexpr double kLargestView = 1e13;
constexpr int kRest = 70; // milliseconds without a move
constexpr std::chrono::milliseconds kSlice{18};
constexpr std::chrono::milliseconds kCheap{22}; // pictures that are made anew for every frame
constexpr std::size_t kMostLive = 800;          // highlighted entities painted with every frame

} // namespace

DrawingView::DrawingView(console::HostState& state, const PromptBoard& board, QWidget* parent)
    : QWidget(parent), state_(state), board_(board) {
    setObjectName("drawingView");
    setMouseTracking(true);
    setFocusPolicy(Qt::StrongFocus);
    setAttribute(Qt::WA_OpaquePaintEvent);
    setCursor(Qt::BlankCursor);
    setMinimumSize(200, 150);
    timer_.setSingleShot(true);
    QObject::connect(&timer_, &QTimer::timeout, this, [this] { renderSlice(); });
}

// --- the view -------------------------------------------------------------------------------

drawing::PageMap DrawingView::map() const {
    const drawing::View view = database().view();
    return {view.centre, {0.5 * width(), 0.5 * height()}, 1.0 / view.unitsPerPixel()};
}

PictureKey DrawingView::wanted() const {
    const drawing::View view = database().view();
    const double ratio = devicePixelRatioF();
    return {&database(),
            database().revision(),
            view.centre,
            view.unitsPerPixel() * height(),
            static_cast<int>(std::lround(width() * ratio)),
            static_cast<int>(std::lround(height() * ratio)),
            ratio,
            style_.background};
}

Point2 DrawingView::worldAt(QPointF pixel) const {
    return map().toWorld({pixel.x(), pixel.y()});
}

void DrawingView::setView(const drawing::View& view) {
    if (!(view.height > kSmallestView && view.height < kLargestView) ||
        !geometry::isUsable(view.centre))
        return;
    histories_.leave(database(), database().view());
    show(view);
    viewChanged();
}

void DrawingView::show(const drawing::View& view) {
    database().setView(view);
    shown_ = view;
}

// A command may have set another view, which is one to go back from too.
void DrawingView::takeUpView(bool other) {
    const drawing::View& view = database().view();
    if (!other && (view.centre != shown_.centre || view.height != shown_.height))
        histories_.leave(database(), shown_);
    shown_ = view;
}

void DrawingView::viewChanged() {
    timer_.start(picture_.took() <= kCheap ? 0 : kRest);
    if (cursor_)
        moveCursor(*cursor_);
    update();
}

// A drawing that was never shown here is shown whole, and stays so as the window finds its size
// until the view is changed; later the scale is kept.
void DrawingView::fitNewDrawing() {
    drawing::View view = database().view();
    const bool known = histories_.knows(database());
    if (known && view.widthPixels == width() && view.heightPixels == height())
        return;
    if (!known || (view.centre == whole_.centre && view.height == whole_.height)) {
        whole_ = wholeView();
        if (!known)
            histories_.leave(database(), whole_);
        show(whole_);
        viewChanged();
        return;
    }
    const double unit = view.unitsPerPixel();
    view.widthPixels = std::max(1, width());
    view.heightPixels = std::max(1, height());
    view.height = unit * view.heightPixels;
    show(view);
}

drawing::View DrawingView::wholeView() const {
    const host::Box2 box = database().extents();
    if (box.empty())
        return viewAt({50.0, 31.25}, 62.5);
    const double aspect = static_cast<double>(width()) / std::max(1, height());
    const double high = std::max(box.height(), box.width() / aspect) * kMargin;
    return viewAt(box.centre(), high > kSmallestView ? high : database().view().height);
}

void DrawingView::zoomExtents() {
    setView(wholeView());
}

void DrawingView::zoomPrevious() {
    if (auto view = histories_.back(database())) {
        view->widthPixels = std::max(1, width());
        view->heightPixels = std::max(1, height());
        show(*view);
        viewChanged();
    }
}

drawing::View DrawingView::viewAt(Point2 centre, double high) const {
    drawing::View view = database().view();
    view.centre = centre;
    view.height = high;
    view.widthPixels = std::max(1, width());
    view.heightPixels = std::max(1, height());
    return view;
}

void DrawingView::showView(Point2 centre, double high) {
    setView(viewAt(centre, high));
}

void DrawingView::zoomBy(double factor, QPointF at) {
    drawing::View view = database().view();
    const Point2 fixed = worldAt(at);
    view.height /= factor;
    view.centre = fixed + (1.0 / factor) * (view.centre - fixed);
    setView(view);
}

void DrawingView::panBy(QPointF pixels) {
    drawing::View view = database().view();
    const double unit = view.unitsPerPixel();
    view.centre = view.centre + Point2{-pixels.x() * unit, pixels.y() * unit};
    setView(view);
}

void DrawingView::beginZoomWindow() {
    cancelDrag();
    zoomWindow_ = true;
    update();
}

// --- what is shown ----------------------------------------------------------------------------

void DrawingView::refresh() {
    histories_.keepOnly(state_.workspace);
    const drawing::Database* shown = &database();
    const bool other = shown != seen_;
    if (other) {
        boxFrom_.reset();
        selection_.clear();
    }
    if (other || shown->revision() != seenRevision_) {
        const std::size_t before = selection_.size();
        std::erase_if(selection_, [&](EntityId id) { return shown->find(id) == nullptr; });
        if ((other || before != selection_.size()) && listener_.selectionChanged)
            listener_.selectionChanged();
        ++selectionChanges_;
    }
    seen_ = shown;
    seenRevision_ = shown->revision();
    seenChanges_ = state_.graphics.changes();
    takeUpView(other);
    fitNewDrawing();
    if (!picture_.isCurrent(wanted()))
        timer_.start(0);
    update();
}

void DrawingView::setStyle(const ViewStyle& style) {
    style_ = style;
    timer_.start(0);
    update();
}

bool DrawingView::atRest() const {
    return picture_.isCurrent(wanted());
}

void DrawingView::settle() {
    while (!atRest())
        renderSlice();
    repaint();
}

void DrawingView::renderSlice() {
    const PictureKey key = wanted();
    picture_.want(key);
    if (!picture_.work(kSlice)) {
        timer_.start(0);
        return;
    }
    if (picture_.isCurrent(key) && key.box().contains(database().extents())) {
        overview_ = picture_.image();
        overviewKey_ = key;
    }
    update();
}

void DrawingView::paintPicture(QPainter& painter, const PictureKey& key) {
    const QRgb paper = qRgb(style_.background.red, style_.background.green, style_.background.blue);
    if (picture_.isCurrent(key))
        return painter.drawImage(QPointF(0, 0), picture_.image());
    painter.fillRect(rect(), QColor::fromRgb(paper));
    const drawing::PageMap here = map();
    const auto paint = [&](const QImage& image, const PictureKey& of) {
        const host::Box2 box = of.box();
        const Point2 low = here({box.low.x, box.high.y});
        const Point2 high = here({box.high.x, box.low.y});
        painter.drawImage(QRectF(QPointF(low.x, low.y), QPointF(high.x, high.y)), image,
                          QRectF(QPointF(0, 0), QSizeF(image.size())));
    };
    const bool same = picture_.hasImage() && picture_.key().database == key.database;
    const bool covers = same && picture_.key().box().contains(key.box());
    if (!covers && !overview_.isNull() && overviewKey_.database == key.database &&
        overviewKey_.revision == key.revision)
        paint(overview_, overviewKey_);
    if (same)
        paint(picture_.image(), picture_.key());
}

std::vector<EntityId> DrawingView::highlighted() const {
    std::vector<EntityId> ids(state_.graphics.highlighted().begin(),
                              state_.graphics.highlighted().end());
    ids.insert(ids.end(), selection_.begin(), selection_.end());
    return ids;
}

// Many highlighted entities are painted once into an image that moves along with the picture.
void DrawingView::paintSelected(QPainter& painter, const PictureKey& key) {
    const std::size_t count = state_.graphics.highlighted().size() + selection_.size();
    if (count == 0)
        return;
    if (count <= kMostLive)
        return paintHighlights(painter, map(), style_, database(), highlighted());
    const std::uint64_t changes = state_.graphics.changes() + selectionChanges_;
    const bool stale = highlightImage_.isNull() || changes != highlightChanges_ ||
                       highlightKey_.database != key.database;
    if (stale || (atRest() && !(highlightKey_ == key))) {
        highlightImage_ =
            QImage(QSize(key.widthPixels, key.heightPixels), QImage::Format_ARGB32_Premultiplied);
        highlightImage_.setDevicePixelRatio(key.ratio);
        highlightImage_.fill(Qt::transparent);
        QPainter over(&highlightImage_);
        paintHighlights(over, map(), style_, database(), highlighted());
        highlightKey_ = key;
        highlightChanges_ = changes;
    }
    const host::Box2 box = highlightKey_.box();
    const Point2 low = map()({box.low.x, box.high.y});
    const Point2 high = map()({box.high.x, box.low.y});
    painter.drawImage(QRectF(QPointF(low.x, low.y), QPointF(high.x, high.y)), highlightImage_,
                      QRectF(QPointF(0, 0), QSizeF(highlightImage_.size())));
}

void DrawingView::paintEvent(QPaintEvent* /*event*/) {
    const PictureKey key = wanted();
    // Small drawings are exact in every frame.
    if (!picture_.isCurrent(key) && picture_.took() <= kCheap) {
        picture_.want(key);
        if (!picture_.work(kSlice))
            timer_.start(0);
    }
    QPainter painter(this);
    paintPicture(painter, key);
    const drawing::PageMap here = map();
    if (overlay_)
        overlay_(painter, here);
    paintGraphics(painter, here, style_, database(), state_.graphics, patches_);
    paintSelected(painter, key);
    painter.setRenderHint(QPainter::Antialiasing, false);
    paintAxes(painter, style_, database().ucs(), height());
    if (!cursor_)
        return;
    const PromptState& prompt = board_.current();
    paintPrompt(painter, here, style_, database(), prompt, at_);
    if (boxFrom_) {
        const Point2 from = here(*boxFrom_);
        paintSelectionBox(painter, style_, {from.x, from.y}, *cursor_);
    }
    if (snap_)
        paintSnap(painter, style_, here, *snap_);
    const bool picks = prompt.kind == Kind::pick || prompt.kind == Kind::selection;
    paintCursor(painter, style_, *cursor_, (picks || prompt.kind == Kind::command) && !zoomWindow_,
                !picks || zoomWindow_);
}

void DrawingView::resizeEvent(QResizeEvent* /*event*/) {
    fitNewDrawing();
    viewChanged();
}

} // namespace tessaran::desktop
