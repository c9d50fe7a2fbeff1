#pragma once

// The histogram of a grid as bars in the colours of its bands.

#include "grid/my_grid.h"

#include <QColor>
#include <QWidget>
#include <vector>

namespace tessaran::desktop {

class GridChart final : public QWidget {
  public:
    explicit GridChart(QWidget* parent);

    void show(const grid::myGrid& grid);
    QSize sizeHint() const override { return {260, 150}; }

  protected:
    void paintEvent(QPaintEvent* event) override;
    bool event(QEvent* event) override; // tool tips: a bar's interval and count

  private:
    int barAt(int x) const;

    std::vector<std::size_t> counts_;
    std::vector<QColor> colours_;
    double least_ = 0.0;
    double most_ = 0.0;
};

} // namespace tessaran::desktop
