#pragma once

// What a map has around it: frame, title, scale bar, north arrow, and where each stands on a page.

#include "drawing/cairo_canvas.h"
#include "geometry/point.h"

#include <string>

namespace tessaran::drawing {

struct PageLayout {
    double width = 0.0;
    double height = 0.0;
    geometry::Box2 title; // empty without one
    geometry::Box2 map;
    geometry::Box2 foot;
    PageMap place;
};

// A page of that width for the part of the world; its height follows from the part's shape within
// reason (a fifth to one and a half times the width), the part is centred in its frame.
PageLayout layOut(double width, const geometry::Box2& world, bool titled);

// The longest of 1, 2 or 5 times a power of ten that is not above `longest`.
double roundLength(double longest);

void drawFrame(cairo_t* context, const PageLayout& page, Rgb ink);
void drawTitle(cairo_t* context, const PageLayout& page, Rgb ink, const std::string& title);
void drawScaleBar(cairo_t* context, const PageLayout& page, Rgb ink, const std::string& units);
void drawNorthArrow(cairo_t* context, const PageLayout& page, Rgb ink);

} // namespace tessaran::drawing
