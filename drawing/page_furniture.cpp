#include "drawing/page_furniture.h"

#include "base/numbers.h"

#include <algorithm>
#include <cmath>

namespace tessaran::drawing {
namespace {

using geometry::Box2;

// Shares of the page's width.
constexpr double kMargin = 0.02;
constexpr double kTitleBand = 0.045;
constexpr double kFootBand = 0.05;
constexpr double kTitleText = 0.026;
constexpr double kFootText = 0.015;
constexpr double kLowestMap = 0.2;
constexpr double kHighestMap = 1.5;

constexpr double kLongestBar = 0.3; // of the map's width
constexpr int kBarParts = 4;

void setInk(cairo_t* context, Rgb ink) {
    cairo_set_source_rgb(context, ink.red / 255.0, ink.green / 255.0, ink.blue / 255.0);
    cairo_set_dash(context, nullptr, 0, 0.0);
}

// Centred on x, baseline at y.
void showCentred(cairo_t* context, const std::string& text, double x, double y) {
    cairo_text_extents_t extents;
    cairo_text_extents(context, text.c_str(), &extents);
    cairo_move_to(context, x - 0.5 * extents.x_advance, y);
    cairo_show_text(context, text.c_str());
    cairo_new_path(context);
}

} // namespace

PageLayout layOut(double width, const Box2& world, bool titled) {
    const double margin = kMargin * width;
    PageLayout page;
    page.width = width;
    const double mapWidth = width - 2.0 * margin;
    const double shape = std::clamp(world.height() / world.width(), kLowestMap, kHighestMap);
    const double mapTop = titled ? margin + kTitleBand * width : margin;
    if (titled)
        page.title = {{margin, 0.5 * margin}, {width - margin, mapTop}};
    page.map = {{margin, mapTop}, {width - margin, mapTop + std::round(mapWidth * shape)}};
    page.foot = {{margin, page.map.high.y}, {width - margin, page.map.high.y + kFootBand * width}};
    page.height = std::ceil(page.foot.high.y + 0.5 * margin);
    page.place = {world.centre(), page.map.centre(),
                  std::min(page.map.width() / world.width(), page.map.height() / world.height())};
    return page;
}

double roundLength(double longest) {
    const double decade = std::pow(10.0, std::floor(std::log10(longest)));
    for (const double step : {5.0, 2.0})
        if (step * decade <= longest)
            return step * decade;
    return decade;
}

void drawFrame(cairo_t* context, const PageLayout& page, Rgb ink) {
    setInk(context, ink);
    cairo_set_line_width(context, std::max(1.0, page.width / 1600.0));
    cairo_rectangle(context, page.map.low.x, page.map.low.y, page.map.width(), page.map.height());
    cairo_stroke(context);
}

void drawTitle(cairo_t* context, const PageLayout& page, Rgb ink, const std::string& title) {
    setInk(context, ink);
    const std::string shown = readableText(title);
    double size = kTitleText * page.width;
    cairo_set_font_size(context, size);
    cairo_text_extents_t extents;
    cairo_text_extents(context, shown.c_str(), &extents);
    if (extents.x_advance > page.title.width()) // a long title is set smaller, on its one line
        size *= page.title.width() / extents.x_advance;
    cairo_set_font_size(context, size);
    showCentred(context, shown, page.title.centre().x, page.title.centre().y + 0.35 * size);
}

void drawScaleBar(cairo_t* context, const PageLayout& page, Rgb ink, const std::string& units) {
    setInk(context, ink);
    const double length = roundLength(kLongestBar * page.map.width() / page.place.scale);
    const double bar = length * page.place.scale;
    const double size = kFootText * page.width;
    const double left = page.foot.low.x + size;
    const double height = 0.35 * size;
    const double top = page.foot.high.y - height - 0.6 * size;
    cairo_set_line_width(context, std::max(0.75, page.width / 2000.0));
    cairo_rectangle(context, left, top, bar, height);
    cairo_stroke(context);
    for (int part = 0; part < kBarParts; part += 2) {
        cairo_rectangle(context, left + bar * part / kBarParts, top, bar / kBarParts, height);
        cairo_fill(context);
    }
    cairo_set_font_size(context, size);
    const double baseline = top - 0.35 * size;
    showCentred(context, "0", left, baseline);
    showCentred(context, base::general(0.5 * length), left + 0.5 * bar, baseline);
    const std::string unit = units.empty() ? "" : " " + units;
    showCentred(context, base::general(length) + unit, left + bar, baseline);
}

void drawNorthArrow(cairo_t* context, const PageLayout& page, Rgb ink) {
    setInk(context, ink);
    const double size = kFootText * page.width;
    const double x = page.foot.high.x - size;
    const double top = page.foot.low.y + 0.7 * size;
    const double bottom = page.foot.high.y - 0.4 * size;
    const double half = 0.55 * size;
    cairo_set_line_width(context, std::max(0.75, page.width / 2000.0));
    cairo_set_line_join(context, CAIRO_LINE_JOIN_MITER);
    for (const double side : {-half, half}) { // the left half is filled, the right one outlined
        cairo_move_to(context, x, top);
        cairo_line_to(context, x + side, bottom);
        cairo_line_to(context, x, bottom - 0.5 * size);
        cairo_close_path(context);
        if (side < 0.0)
            cairo_fill_preserve(context);
        cairo_stroke(context);
    }
    cairo_set_font_size(context, size);
    showCentred(context, "N", x - 1.4 * size, page.foot.centre().y + 0.35 * size);
}

} // namespace tessaran::drawing
