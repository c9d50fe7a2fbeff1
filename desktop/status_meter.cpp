#include "desktop/status_meter.h"

#include "desktop/qt_text.h"

#include <QHBoxLayout>
#include <algorithm>

namespace tessaran::desktop {
namespace {

constexpr int kSteps = 1000; // of the bar

} // namespace

StatusMeter::StatusMeter(Busy& busy, QWidget* parent)
    : QWidget(parent), busy_(busy), text_(new QLabel(this)), bar_(new QProgressBar(this)) {
    auto* row = new QHBoxLayout(this);
    row->setContentsMargins(0, 0, 0, 0);
    row->addWidget(text_);
    row->addWidget(bar_);
    bar_->setRange(0, kSteps);
    bar_->setFixedWidth(180);
    bar_->setMaximumHeight(16);
    bar_->setAlignment(Qt::AlignCenter);
    setVisible(false);
}

void StatusMeter::begin(std::string_view text, long lower, long upper) {
    lower_ = lower;
    upper_ = upper;
    text_->setText(qt(text).simplified());
    bar_->setValue(0);
    setVisible(true);
    busy_.turn();
}

void StatusMeter::setPosition(long position) {
    const double share = upper_ > lower_ ? static_cast<double>(position - lower_) /
                                               static_cast<double>(upper_ - lower_)
                                         : 0.0;
    const int step = static_cast<int>(std::clamp(share, 0.0, 1.0) * kSteps);
    if (step != bar_->value())
        bar_->setValue(step);
    busy_.turn();
}

void StatusMeter::end() {
    setVisible(false);
}

} // namespace tessaran::desktop
