#include "desktop/grid_panel.h"

#include "desktop/colour_choice.h"
#include "desktop/grid_histogram.h"
#include "desktop/painter_canvas.h"
#include "desktop/qt_text.h"
#include "grid/grid_drawing_shapes.h"
#include "grid/grid_file.h"

#include <fmt/format.h>

#include <QFileDialog>
#include <QFileInfo>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>
#include <numbers>

namespace tessaran::desktop {
namespace {

QTreeWidget* table(QWidget* parent, const QStringList& titles) {
    auto* list = new QTreeWidget(parent);
    list->setColumnCount(static_cast<int>(titles.size()));
    list->setHeaderLabels(titles);
    list->setRootIsDecorated(false);
    list->setAlternatingRowColors(true);
    list->header()->setSectionResizeMode(0, QHeaderView::ResizeToContents);
    return list;
}

base::Result<void> readInto(grid::myGrid& grid, const std::string& file) {
    base::NoProgress progress;
    return grid::readGridFile(file, true, grid, progress);
}

} // namespace

GridPanel::GridPanel(QWidget* parent)
    : QWidget(parent), name_(new QLabel("No grid is open", this)),
      cell_(new QLabel("Click a cell for its value", this)), rotation_(new QDoubleSpinBox(this)),
      chart_(new GridChart(this)), statistics_(table(this, {"Statistics", "Value"})),
      legend_(table(this, {"Colour", "Values"})) {
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(4, 4, 4, 4);
    auto* row = new QHBoxLayout;
    auto* openButton = new QPushButton("&Open...", this);
    auto* closeButton = new QPushButton("&Close", this);
    row->addWidget(openButton);
    row->addWidget(closeButton);
    row->addStretch(1);
    column->addLayout(row);
    QFont bold = name_->font();
    bold.setBold(true);
    name_->setFont(bold);
    name_->setWordWrap(true);
    column->addWidget(name_);
    auto* form = new QFormLayout;
    rotation_->setRange(-360.0, 360.0);
    rotation_->setSuffix("\u00B0");
    rotation_->setToolTip("A grid file does not hold the grid's rotation");
    form->addRow("&Rotation", rotation_);
    column->addLayout(form);
    cell_->setObjectName("cellValue");
    cell_->setTextInteractionFlags(Qt::TextSelectableByMouse);
    cell_->setFrameStyle(QFrame::StyledPanel | QFrame::Sunken);
    cell_->setMargin(4);
    column->addWidget(cell_);
    column->addWidget(chart_);
    column->addWidget(statistics_, 2);
    column->addWidget(legend_, 2);
    QObject::connect(openButton, &QPushButton::clicked, this, [this] { choose(); });
    QObject::connect(closeButton, &QPushButton::clicked, this, [this] { closeGrid(); });
    QObject::connect(rotation_, &QDoubleSpinBox::valueChanged, this,
                     [this](double degrees) { turn(degrees); });
}

void GridPanel::choose() {
    const QString file =
        QFileDialog::getOpenFileName(this, "Show Grid", {}, "Grid files (*.grd);;All files (*)");
    if (!file.isEmpty())
        open(file);
}

bool GridPanel::open(const QString& file) {
    auto grid = std::make_unique<grid::myGrid>();
    auto read = readInto(*grid, utf8(file));
    if (read && !grid->isDefined())
        read = base::stateError("Grid is not defined!");
    if (!read) {
        QMessageBox::warning(this, "Show Grid", qt(read.error().message()));
        return false;
    }
    grid_ = std::move(grid);
    marked_.reset();
    rotation_->setValue(0.0);
    name_->setText(QFileInfo(file).fileName());
    name_->setToolTip(file);
    cell_->setText("Click a cell for its value");
    colourCells();
    chart_->show(*grid_);
    fillStatistics();
    fillLegend();
    if (changed_)
        changed_();
    return true;
}

void GridPanel::closeGrid() {
    grid_.reset();
    marked_.reset();
    image_ = {};
    name_->setText("No grid is open");
    cell_->setText("Click a cell for its value");
    statistics_->clear();
    legend_->clear();
    chart_->show(grid::myGrid{});
    if (changed_)
        changed_();
}

// The same values about the same corner in another direction.
void GridPanel::turn(double degrees) {
    if (!grid_)
        return;
    const std::vector<double> values(grid_->values().begin(), grid_->values().end());
    const auto origin = grid_->origin();
    if (!grid_->setupGrid(grid_->nX(), grid_->nY(), grid_->cellWidthX(), grid_->cellWidthY(),
                          degrees))
        return;
    grid_->setOrigin(origin.x, origin.y, origin.z);
    std::copy(values.begin(), values.end(), grid_->values().begin());
    if (changed_)
        changed_();
}

void GridPanel::colourCells() {
    image_ =
        cellImage(grid::cellPatch(*grid_, grid::coloursByValue(*grid_), true), {255, 255, 255});
}

void GridPanel::fillStatistics() {
    statistics_->clear();
    const GridStatistics s = statisticsOf(*grid_);
    const auto add = [&](const char* name, const std::string& value) {
        statistics_->addTopLevelItem(new QTreeWidgetItem({name, qt(value)}));
    };
    const auto number = [](double value) { return fmt::format("{:.6g}", value); };
    add("Title", grid_->title());
    add("Cells", fmt::format("{} x {}", grid_->nX(), grid_->nY()));
    add("Cell width", number(grid_->cellWidthX()) + " x " + number(grid_->cellWidthY()));
    add("Origin", fmt::format("{:.3f}, {:.3f}", grid_->origin().x, grid_->origin().y));
    add("With a value", std::to_string(s.withValue));
    add("Without value", std::to_string(s.withoutValue));
    add("Minimum", number(s.least));
    add("Lower quarter", number(s.lowerQuarter));
    add("Median", number(s.median));
    add("Upper quarter", number(s.upperQuarter));
    add("Maximum", number(s.most));
    add("Mean", number(s.mean));
    add("Standard deviation", number(s.deviation));
    add("Area with a value", number(s.area));
}

void GridPanel::fillLegend() {
    legend_->clear();
    const auto& breaks = grid_->colorBreaks();
    for (std::size_t k = breaks.size(); k-- > 1;) {
        auto* item =
            new QTreeWidgetItem({QString::number(breaks[k - 1].colour),
                                 qt(grid::bandLabel(breaks[k - 1].value, breaks[k].value))});
        item->setIcon(0, colourIcon(breaks[k - 1].colour));
        legend_->addTopLevelItem(item);
    }
}

std::optional<host::Box2> GridPanel::extents() const {
    if (!grid_)
        return std::nullopt;
    host::Box2 box;
    if (const auto outline = grid_->gridOutline())
        for (const auto& corner : *outline)
            box.add(corner);
    return box;
}

void GridPanel::paint(QPainter& painter, const drawing::PageMap& map) const {
    if (!grid_)
        return;
    PainterCanvas canvas(painter, map, {});
    host::CellPatch patch{.origin = grid_->origin().plan(),
                          .xStep = grid_->xStep().plan(),
                          .yStep = grid_->yStep().plan(),
                          .nX = grid_->nX(),
                          .nY = grid_->nY(),
                          .filled = true,
                          .colours = {}};
    painter.setOpacity(0.75);
    canvas.cells(patch, image_);
    painter.setOpacity(1.0);
    if (!marked_)
        return;
    QPolygonF outline;
    if (const auto corners = grid_->cellCorners(marked_->column, marked_->row))
        for (const auto& corner : *corners) {
            const host::Point2 p = map(corner);
            outline.push_back({p.x, p.y});
        }
    painter.setBrush(Qt::NoBrush);
    painter.setPen(QPen(Qt::white, 3.0));
    painter.drawPolygon(outline);
    painter.setPen(QPen(Qt::black, 1.0));
    painter.drawPolygon(outline);
}

bool GridPanel::inspect(host::Point2 world) {
    if (!grid_)
        return false;
    const grid::CellIndex cell = grid_->pointToCell(world);
    if (cell.column < 0 || cell.row < 0)
        return false;
    marked_ = cell;
    const double value = grid_->getValue(cell.column, cell.row);
    const auto centre = grid_->cellCenter(cell.column, cell.row);
    cell_->setText(qt(
        fmt::format("Column {}, row {}: {}\nCentre {:.3f}, {:.3f}", cell.column, cell.row,
                    base::hasValue(value) ? fmt::format("{:.10g}", value) : std::string("no value"),
                    centre->x, centre->y)));
    if (changed_)
        changed_();
    return true;
}

} // namespace tessaran::desktop
