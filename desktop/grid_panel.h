#pragma once

// Looking at a grid file: its cells shown over the drawing in the colours of its bands, the value
// of the cell that is clicked, statistics, histogram and legend. Nothing of it becomes part of the
// drawing.

#include "desktop/grid_chart.h"
#include "drawing/page_map.h"
#include "grid/my_grid.h"

#include <QDoubleSpinBox>
#include <QImage>
#include <QLabel>
#include <QTreeWidget>
#include <QWidget>
#include <functional>
#include <memory>
#include <optional>

namespace tessaran::desktop {

class GridPanel final : public QWidget {
  public:
    explicit GridPanel(QWidget* parent);

    // Called when what is shown over the drawing has changed.
    void setChanged(std::function<void()> changed) { changed_ = std::move(changed); }

    // Reads and shows the grid; false and a word to the user when it cannot be read.
    bool open(const QString& file);
    void closeGrid();
    bool isOpen() const { return grid_ != nullptr; }
    std::optional<host::Box2> extents() const;

    void paint(QPainter& painter, const drawing::PageMap& map) const;
    // Tells the cell there; false outside the grid.
    bool inspect(host::Point2 world);
    QString cellText() const { return cell_->text(); }

  private:
    void choose();
    void turn(double degrees);
    void colourCells();
    void fillStatistics();
    void fillLegend();

    std::unique_ptr<grid::myGrid> grid_;
    QImage image_;
    std::optional<grid::CellIndex> marked_;
    std::function<void()> changed_;
    QLabel* name_;
    QLabel* cell_;
    QDoubleSpinBox* rotation_;
    GridChart* chart_;
    QTreeWidget* statistics_;
    QTreeWidget* legend_;
};

} // namespace tessaran::desktop
