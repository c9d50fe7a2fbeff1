#pragma once

// The drawing on the screen: its picture, what is laid over it, and the mouse. What the mouse gives
// goes out as lines of the script language.

#include "console/console_host.h"
#include "desktop/object_snap.h"
#include "desktop/prompt_board.h"
#include "desktop/scene_picture.h"
#include "desktop/view_history.h"
#include "desktop/view_overlay.h"
#include "desktop/view_style.h"

#include <QTimer>
#include <QWidget>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace tessaran::desktop {

class DrawingView final : public QWidget {
  public:
    DrawingView(console::HostState& state, const PromptBoard& board, QWidget* parent);

    // --- who listens
    struct Listener {
        std::function<void(const std::vector<std::string>&)> answer{};  // lines for what is asked
        std::function<void(std::optional<host::Point3>)> cursorMoved{}; // user coordinates
        std::function<void()> selectionChanged{};
        std::function<void(QKeyEvent*)> keyTyped{}; // belongs to the command line
        std::function<void(QPoint)> menuWanted{};   // right button; global place
        // Asked first of a click that no prompt waits for; true: taken.
        std::function<bool(host::Point2)> clicked{};
    };
    void setListener(Listener listener) { listener_ = std::move(listener); }

    // --- what is shown
    // Takes up what has changed in the drawing, the temporary graphics and the view.
    void refresh();
    void setStyle(const ViewStyle& style);
    const ViewStyle& style() const { return style_; }
    // Laid over the drawing, under the cursor.
    using Overlay = std::function<void(QPainter&, const drawing::PageMap&)>;
    void setOverlay(Overlay overlay) { overlay_ = std::move(overlay); }
    // Whether the picture on the screen is the exact one of the present view.
    bool atRest() const;
    // Paints on until it is; for tests and pictures.
    void settle();

    // --- the view
    void zoomExtents();
    void zoomPrevious();
    void zoomBy(double factor, QPointF at);
    void beginZoomWindow();
    void panBy(QPointF pixels);
    void showView(host::Point2 centre, double height);
    drawing::PageMap map() const; // world to the widget's pixels

    // --- aids
    void setSnaps(SnapModes modes) { snaps_ = modes; }
    SnapModes snaps() const { return snaps_; }
    void setOrtho(bool on) { ortho_ = on; }
    bool ortho() const { return ortho_; }

    // --- the selection at the command prompt
    const std::vector<host::EntityId>& selection() const { return selection_; }
    void select(std::vector<host::EntityId> ids);
    void clearSelection() { select({}); }
    // Gives up a box begun or a zoom window; false: there was none.
    bool cancelDrag();

  protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void leaveEvent(QEvent* event) override;

  private:
    drawing::Database& database() const { return state_.workspace.database(); }
    console::Document& document() const { return state_.workspace.current(); }
    PictureKey wanted() const;
    void setView(const drawing::View& view);
    void show(const drawing::View& view);
    void takeUpView(bool other); // `other`: of another drawing than before
    void fitNewDrawing();
    drawing::View wholeView() const;
    drawing::View viewAt(host::Point2 centre, double high) const;
    void viewChanged();
    void renderSlice();
    void paintPicture(QPainter& painter, const PictureKey& key);
    void paintSelected(QPainter& painter, const PictureKey& key);
    std::vector<host::EntityId> highlighted() const;
    void moveCursor(QPointF at);
    host::Point2 worldAt(QPointF pixel) const;
    double unitsPerPixel() const { return database().view().unitsPerPixel(); }
    host::Point3 orthogonal(host::Point3 world) const;
    void press(QPointF at, Qt::KeyboardModifiers keys);
    void pick();
    void selectAt(QPointF at, Qt::KeyboardModifiers keys);
    void finishBox(QPointF to, Qt::KeyboardModifiers keys);
    void selectInBox(host::Point2 from, host::Point2 to, bool remove);
    void toggle(const std::vector<host::EntityId>& ids, bool remove);
    void answer(const std::vector<std::string>& lines) const;
    host::EntityId hitAt(QPointF at) const;

    console::HostState& state_;
    const PromptBoard& board_;
    Listener listener_;
    ViewStyle style_ = ViewStyle::dark();
    Overlay overlay_;

    ScenePicture picture_;
    QImage overview_; // the last picture of the whole drawing
    PictureKey overviewKey_;
    QTimer timer_;
    PatchImages patches_;
    QImage highlightImage_;
    PictureKey highlightKey_;
    std::uint64_t highlightChanges_ = 0;
    ViewHistories histories_;
    drawing::View whole_; // as a drawing was last fitted into the view
    drawing::View shown_; // as it was set here last
    std::uint64_t seenRevision_ = 0;
    std::uint64_t seenChanges_ = 0;
    const drawing::Database* seen_ = nullptr;

    std::optional<QPointF> cursor_; // pixels; none: outside
    host::Point3 at_;               // the cursor in the world, snapped
    std::optional<Snap> snap_;
    SnapModes snaps_;
    bool ortho_ = false;
    std::optional<QPointF> panFrom_;
    std::optional<host::Point2> boxFrom_; // world
    bool zoomWindow_ = false;
    std::vector<host::EntityId> selection_;
    std::uint64_t selectionChanges_ = 0;
};

} // namespace tessaran::desktop
