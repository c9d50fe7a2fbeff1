#include "desktop/grid_chart.h"

#include "desktop/grid_histogram.h"
#include "desktop/qt_text.h"
#include "drawing/colour_table.h"

#include <fmt/format.h>

#include <QHelpEvent>
#include <QPainter>
#include <QToolTip>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr int kBins = 40;
constexpr int kSide = 8;  // margins, pixels
constexpr int kFoot = 20; // for the numbers

} // namespace

GridChart::GridChart(QWidget* parent) : QWidget(parent) {
    setMinimumHeight(110);
}

void GridChart::show(const grid::myGrid& grid) {
    counts_ = histogramOf(grid, kBins);
    colours_.clear();
    const auto range = grid.getMinMax();
    least_ = range ? range->min : 0.0;
    most_ = range ? range->max : 0.0;
    for (std::size_t k = 0; k < counts_.size(); ++k) {
        const double middle = least_ + (static_cast<double>(k) + 0.5) * (most_ - least_) / kBins;
        const drawing::Rgb rgb = drawing::tableColour(grid.colourOfValue(middle));
        colours_.emplace_back(rgb.red, rgb.green, rgb.blue);
    }
    update();
}

int GridChart::barAt(int x) const {
    const double share = static_cast<double>(x - kSide) / std::max(1, width() - 2 * kSide);
    return share < 0.0 || share >= 1.0 ? -1 : static_cast<int>(share * kBins);
}

void GridChart::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.fillRect(rect(), palette().base());
    if (counts_.empty())
        return;
    const double most =
        static_cast<double>(std::max<std::size_t>(1, *std::ranges::max_element(counts_)));
    const double wide = static_cast<double>(width() - 2 * kSide) / kBins;
    const int floor = height() - kFoot;
    for (std::size_t k = 0; k < counts_.size(); ++k) {
        const double high = static_cast<double>(counts_[k]) / most * (floor - kSide);
        painter.fillRect(QRectF(kSide + static_cast<double>(k) * wide, floor - high,
                                std::max(1.0, wide - 1.0), high),
                         colours_[k]);
    }
    painter.setPen(palette().color(QPalette::Mid));
    painter.drawLine(kSide, floor, width() - kSide, floor);
    painter.setPen(palette().color(QPalette::Text));
    const QRect foot(kSide, floor + 2, width() - 2 * kSide, kFoot - 4);
    painter.drawText(foot, Qt::AlignLeft, qt(fmt::format("{:g}", least_)));
    painter.drawText(foot, Qt::AlignRight, qt(fmt::format("{:g}", most_)));
}

bool GridChart::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip)
        return QWidget::event(event);
    const auto* help = static_cast<QHelpEvent*>(event);
    const int bar = barAt(help->pos().x());
    if (bar < 0 || counts_.empty())
        QToolTip::hideText();
    else
        QToolTip::showText(
            help->globalPos(),
            qt(fmt::format("{:g} to {:g}: {} cells", least_ + bar * (most_ - least_) / kBins,
                           least_ + (bar + 1) * (most_ - least_) / kBins,
                           counts_[static_cast<std::size_t>(bar)])),
            this);
    return true;
}

} // namespace tessaran::desktop
