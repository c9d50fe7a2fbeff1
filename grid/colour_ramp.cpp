#include "grid/colour_ramp.h"

#include "base/numbers.h"
#include "base/tolerance.h"

#include <algorithm>
#include <cmath>
#include <utility>

namespace tessaran::grid {
namespace {

constexpr double kLargestFineStep = 10.0; // larger steps are whole numbers
constexpr double kFallbackHighest = 10.0; // of the ramp over an empty range, from 0

int rainbowColour(int band, int bands) {
    const int colours = static_cast<int>(kRainbow.size());
    if (bands >= colours)
        return kRainbow[static_cast<std::size_t>(band % colours)];
    if (bands == 1)
        return kRainbow.front();
    const double spread = band * (colours - 1.0) / (bands - 1);
    return kRainbow[static_cast<std::size_t>(spread)];
}

int grey(int band, int bands) {
    const int last = static_cast<int>(kGreys.size()) - 1;
    const int place = bands > 1 ? (2 * band * last + (bands - 1)) / (2 * (bands - 1)) : 0;
    return kGreys[static_cast<std::size_t>(place)];
}

} // namespace

std::vector<int> bandColours(int bands, Palette palette) {
    std::vector<int> out;
    for (int i = 0; i < bands; ++i)
        out.push_back(palette == Palette::greys ? grey(i, bands) : rainbowColour(i, bands));
    return out;
}

std::string bandLabel(double lower, double upper) {
    return base::general(lower) + " - " + base::general(upper);
}

ColourRamp ColourRamp::between(double a, double b, int bands, Palette palette) {
    double low = std::min(a, b);
    double high = std::max(a, b);
    const double span = high - low;
    if (!(span > base::kTolerance) || !std::isfinite(span)) {
        low = 0.0;
        high = kFallbackHighest;
    }
    ColourRamp ramp;
    ramp.palette_ = palette;
    ramp.lowest_ = low;
    ramp.highest_ = high;
    ramp.step_ = (high - low) / (bands < 1 ? 2 : std::min(bands, kMostBands));
    if (ramp.step_ > kLargestFineStep)
        ramp.step_ = std::floor(ramp.step_);
    // The tolerance keeps the last band where the quotient falls a rounding below its whole number.
    const int steps = static_cast<int>((high - low) / ramp.step_ + base::kTolerance);
    for (int i = 0; i <= steps; ++i)
        ramp.breaks_.push_back(low + i * ramp.step_);
    ramp.colourAndLabel();
    return ramp;
}

ColourRamp ColourRamp::fromBreaks(std::vector<double> breaks, Palette palette) {
    ColourRamp ramp;
    ramp.palette_ = palette;
    ramp.breaks_ = std::move(breaks);
    if (!ramp.breaks_.empty()) {
        ramp.lowest_ = ramp.breaks_.front();
        ramp.highest_ = ramp.breaks_.back();
    }
    if (ramp.bands() > 0)
        ramp.step_ = (ramp.highest_ - ramp.lowest_) / ramp.bands();
    ramp.colourAndLabel();
    return ramp;
}

bool ColourRamp::removeBreak(std::size_t index) {
    if (index >= breaks_.size() || bands() < 2)
        return false;
    breaks_.erase(breaks_.begin() + static_cast<std::ptrdiff_t>(index));
    colourAndLabel();
    return true;
}

void ColourRamp::setPalette(Palette palette) {
    palette_ = palette;
    colourAndLabel();
}

void ColourRamp::colourAndLabel() {
    colours_ = bandColours(bands(), palette_);
    labels_.clear();
    for (std::size_t upper = breaks_.size(); upper-- > 1;)
        labels_.push_back(bandLabel(breaks_[upper - 1], breaks_[upper]));
}

std::vector<ColourBreak> ColourRamp::table() const {
    std::vector<ColourBreak> out;
    if (colours_.empty())
        return out;
    for (std::size_t i = 0; i < breaks_.size(); ++i)
        out.push_back({breaks_[i], colours_[i % colours_.size()]});
    return out;
}

int bandOfValue(const std::vector<ColourBreak>& table, double value) {
    if (table.empty())
        return -1;
    const int last = static_cast<int>(table.size()) - 2;
    if (last < 1)
        return std::max(last, 0);
    // The first inner break above the value ends its band.
    const auto inner = table.begin() + 1;
    const auto above =
        std::upper_bound(inner, inner + last, value,
                         [](double v, const ColourBreak& entry) { return v < entry.value; });
    return static_cast<int>(above - inner);
}

int colourOfValue(const std::vector<ColourBreak>& table, double value) {
    const int band = bandOfValue(table, value);
    return band < 0 ? 0 : table[static_cast<std::size_t>(band)].colour;
}

} // namespace tessaran::grid
