#pragma once

// Where a part of the world stands on a page or a screen, and how text is shown there.

#include "host/entity.h"

#include <string>
#include <vector>

namespace tessaran::drawing {

// One scale for both directions, Y upwards in the world and downwards on the page.
struct PageMap {
    host::Point2 worldCentre;
    host::Point2 pageCentre; // page units
    double scale = 1.0;      // page units a drawing unit

    host::Point2 operator()(host::Point2 world) const {
        return {pageCentre.x + (world.x - worldCentre.x) * scale,
                pageCentre.y - (world.y - worldCentre.y) * scale};
    }
    host::Point2 toWorld(host::Point2 page) const {
        return {worldCentre.x + (page.x - pageCentre.x) / scale,
                worldCentre.y - (page.y - pageCentre.y) / scale};
    }
};

// Left end and baseline of a text relative to its point, in its own direction, Y downwards; `width`
// and `height` as shown.
host::Point2 startOf(const host::Text& text, double width, double height);

// Lengths of dashes and gaps in turn, beginning with a dash, none shorter than `dot`; empty for a
// pattern that does not alternate.
std::vector<double> onOff(const std::vector<double>& dashes, double scale, double dot);

// Text as fonts can show it: valid UTF-8 without control characters, the host's codes for degree,
// diameter and plus-minus replaced.
std::string readableText(const std::string& text);

} // namespace tessaran::drawing
