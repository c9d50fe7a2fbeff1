#include "grid/group_percentage.h"

#include <fmt/format.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace tessaran::grid {
namespace {

using host::Entity;

constexpr const char* kGroup = "ZELK Group Percentage";

// Where the columns of a row begin, as shares of its width: box, label, share, area; its end.
constexpr std::array<double, 5> kColumns{0.0, 0.2, 0.5, 0.7, 1.0};
constexpr double kGap = 0.02;            // between a column's beginning and its text
constexpr double kTextShare = 0.33;      // text height, of a row's height
constexpr double kCharacterWidth = 0.95; // of the text height, at most

std::array<std::string, 3> textsOf(const BandShare& share) {
    return {share.label, fmt::format("{:.2f} %", share.percent), fmt::format("{:.2f}", share.area)};
}

// So high that every text ends before the next column begins.
double textHeight(const std::vector<BandShare>& shares, double width, double rowHeight) {
    double height = kTextShare * rowHeight;
    for (const BandShare& share : shares) {
        const auto texts = textsOf(share);
        for (std::size_t k = 0; k < texts.size(); ++k) {
            const double room = (kColumns[k + 2] - kColumns[k + 1] - kGap) * width;
            const auto characters = static_cast<double>(texts[k].size());
            height = std::min(height, room / (characters * kCharacterWidth));
        }
    }
    return height;
}

} // namespace

bool isUsableTable(const std::vector<ColourBreak>& table) {
    return table.size() >= 2 &&
           std::ranges::adjacent_find(table, [](const ColourBreak& a, const ColourBreak& b) {
               return !(a.value < b.value);
           }) == table.end();
}

std::vector<Entity> percentageObjects(const std::vector<BandShare>& shares,
                                      const LegendPlace& place, const std::string& layer) {
    std::vector<Entity> objects;
    const Point2 size = place.high - place.low;
    const double rowHeight = size.y / static_cast<double>(shares.size());
    const double height = textHeight(shares, std::fabs(size.x), std::fabs(rowHeight));
    const auto at = [&](double across, double rows) {
        return place.low + Point2{across * size.x, rows * rowHeight};
    };
    double row = 0.0;
    for (const BandShare& share : shares) {
        objects.push_back(
            legendBox(at(kColumns[0], row), at(kColumns[1], row + 1.0), share.colour, layer));
        const auto texts = textsOf(share);
        for (std::size_t k = 0; k < texts.size(); ++k)
            objects.push_back(
                legendText(at(kColumns[k + 1] + kGap, row + 0.5), height, texts[k], layer));
        row += 1.0;
    }
    return objects;
}

bool drawGroupPercentage(host::Host& host, const std::vector<BandShare>& shares,
                         const std::string& layer) {
    if (shares.empty())
        return false;
    const auto place = askLegendPlace(host, shares.size());
    return place && addGathered(host, percentageObjects(shares, *place, layer), kGroup);
}

std::string percentageText(const std::vector<BandShare>& shares) {
    std::string text;
    std::for_each(shares.rbegin(), shares.rend(), [&](const BandShare& share) {
        text += fmt::format("{}{}: {} cells, {:.2f} %, area {:.2f}", text.empty() ? "" : "\n",
                            share.label, share.cells, share.percent, share.area);
    });
    return text;
}

} // namespace tessaran::grid
