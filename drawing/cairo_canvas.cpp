#include "drawing/cairo_canvas.h"

#include "drawing/scene.h"
#include "geometry/polygon.h"
#include "geometry/segment.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <numbers>

#if defined(__SANITIZE_ADDRESS__)
// The font library keeps what it has found until the program ends, which is no leak of ours.
extern "C" const char* __lsan_default_suppressions();  // NOLINT(bugprone-reserved-identifier)
extern "C" const char* __lsan_default_suppressions() { // NOLINT(bugprone-reserved-identifier)
    return "leak:libfontconfig";
}
#endif

namespace tessaran::drawing {
namespace {

using geometry::Box2;
using geometry::Curve;
using geometry::Point2;
using geometry::Polygon;

// Page units that the rasteriser's 16.16 fixed-point numbers hold, wide of any page.
constexpr double kSafeLow = -12000.0;
constexpr double kSafeHigh = 30000.0;
constexpr double kLargestText = 20000.0;
constexpr double kLargestRadius = 2e4;   // of arcs drawn as arcs, page units
constexpr double kSag = 0.05;            // of chords drawn instead, page units
constexpr double kSmallestText = 1.5;    // height below which a text is only a line, page units
constexpr double kPointRadius = 1.8;     // hairlines
constexpr double kSeam = 0.6;            // width of the line that closes seams between fills
constexpr double kSmallestPattern = 4.0; // dash patterns shorter than this are drawn solid
constexpr double kMostPatterns = 20000.0;

Box2 safeBox() {
    return {{kSafeLow, kSafeLow}, {kSafeHigh, kSafeHigh}};
}

// Restores the context's state when it goes.
class SavedContext {
  public:
    explicit SavedContext(cairo_t* context) : context_(context) { cairo_save(context_); }
    SavedContext(const SavedContext&) = delete;
    SavedContext& operator=(const SavedContext&) = delete;
    ~SavedContext() { cairo_restore(context_); }

  private:
    cairo_t* context_;
};

} // namespace

CairoCanvas::CairoCanvas(cairo_t* context, const PageMap& map, const PageInk& ink)
    : context_(context), map_(map), background_(ink.background), hairline_(ink.hairline),
      detail_(ink.detail) {
    cairo_select_font_face(context_, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    cairo_set_fill_rule(context_, CAIRO_FILL_RULE_EVEN_ODD);
}

void CairoCanvas::setColour(int colour) {
    const Rgb rgb = shownColour(colour, background_);
    cairo_set_source_rgb(context_, rgb.red / 255.0, rgb.green / 255.0, rgb.blue / 255.0);
}

void CairoCanvas::setDashes(const Pen& pen, double curveLength) {
    std::vector<double> lengths;
    if (pen.dashes)
        lengths = onOff(*pen.dashes, pen.dashScale * map_.scale, hairline_);
    double pattern = 0.0;
    for (const double length : lengths)
        pattern += length;
    const bool shown = pattern >= kSmallestPattern && std::isfinite(pattern) &&
                       curveLength * map_.scale < kMostPatterns * pattern;
    cairo_set_dash(context_, lengths.data(), shown ? static_cast<int>(lengths.size()) : 0, 0.0);
}

bool CairoCanvas::isSafe(const Box2& world) const {
    const Box2 safe = safeBox();
    return safe.contains(map_(world.low)) && safe.contains(map_(world.high));
}

Polygon CairoCanvas::chordsOnPage(const Curve& curve) const {
    Polygon chords = curve.flattenedPlan(kSag / map_.scale);
    for (Point2& p : chords)
        p = map_(p);
    return chords;
}

void CairoCanvas::traceArc(const geometry::Segment& segment) {
    // The page's Y runs downwards, so angles change their sign.
    const Point2 centre = map_(segment.centre);
    const auto arc = segment.sweep > 0.0 ? cairo_arc_negative : cairo_arc;
    arc(context_, centre.x, centre.y, segment.radius * map_.scale, -segment.startAngle,
        -(segment.startAngle + segment.sweep));
}

void CairoCanvas::traceSegments(const Curve& curve) {
    Point2 pen = map_(curve.vertices().front().at.plan());
    cairo_move_to(context_, pen.x, pen.y);
    const std::size_t count = curve.segmentCount();
    for (std::size_t i = 0; i < count; ++i) {
        const geometry::CurveVertex& from = curve.segmentStart(i);
        const Point2 to = curve.segmentEnd(i).at.plan();
        const Point2 end = map_(to);
        const geometry::Segment segment(from.at.plan(), to, from.bulge);
        const bool bowed = segment.isArc() && segment.length() * map_.scale > detail_;
        // Steps too short to be seen are taken together; the last one never goes missing.
        if (!bowed && i + 1 < count && geometry::distance(pen, end) < detail_)
            continue;
        if (bowed)
            traceArc(segment);
        else
            cairo_line_to(context_, end.x, end.y);
        pen = end;
    }
    if (curve.closed())
        cairo_close_path(context_);
}

void CairoCanvas::traceCut(const Curve& curve) {
    Polygon chords = chordsOnPage(curve);
    if (curve.closed() && !chords.empty())
        chords.push_back(chords.front());
    for (std::size_t i = 0; i + 1 < chords.size(); ++i)
        if (const auto part = geometry::clippedTo(safeBox(), chords[i], chords[i + 1])) {
            cairo_move_to(context_, part->first.x, part->first.y);
            cairo_line_to(context_, part->second.x, part->second.y);
        }
}

void CairoCanvas::traceCutArea(const Curve& loop) {
    const auto corners = safeBox().corners();
    const Polygon part = geometry::clipToConvex(corners, chordsOnPage(loop));
    for (std::size_t i = 0; i < part.size(); ++i)
        (i == 0 ? cairo_move_to : cairo_line_to)(context_, part[i].x, part[i].y);
    cairo_close_path(context_);
}

void CairoCanvas::tracePath(const Curve& curve) {
    double largest = 0.0;
    for (std::size_t i = 0; i < curve.segmentCount(); ++i) {
        const geometry::CurveVertex& from = curve.segmentStart(i);
        if (from.bulge != 0.0)
            largest = std::max(largest, geometry::Segment(from.at.plan(),
                                                          curve.segmentEnd(i).at.plan(), from.bulge)
                                            .radius);
    }
    if (isSafe(curve.extents()) && largest * map_.scale < kLargestRadius)
        traceSegments(curve);
    else
        traceCut(curve);
}

void CairoCanvas::curve(const Curve& curve, const Pen& pen) {
    if (curve.empty())
        return;
    if (curve.vertices().size() == 1)
        return point(curve.vertices().front().at.plan(), pen);
    const double width = std::min(pen.width * map_.scale, kSafeHigh);
    const bool wide = width > hairline_;
    setColour(pen.colour);
    setDashes(pen, curve.length());
    cairo_set_line_width(context_, wide ? width : hairline_);
    cairo_set_line_join(context_, wide ? CAIRO_LINE_JOIN_MITER : CAIRO_LINE_JOIN_ROUND);
    cairo_set_line_cap(context_, wide ? CAIRO_LINE_CAP_BUTT : CAIRO_LINE_CAP_ROUND);
    tracePath(curve);
    cairo_stroke(context_);
}

void CairoCanvas::fill(const std::vector<Curve>& loops, const Pen& pen) {
    for (const Curve& loop : loops) {
        if (loop.vertices().size() < 2)
            continue;
        if (isSafe(loop.extents()))
            tracePath(loop);
        else
            traceCutArea(loop);
    }
    setColour(pen.colour);
    cairo_fill_preserve(context_);
    // Two fills side by side would let the paper shine through where they meet.
    cairo_set_dash(context_, nullptr, 0, 0.0);
    cairo_set_line_width(context_, kSeam);
    cairo_set_line_join(context_, CAIRO_LINE_JOIN_ROUND);
    cairo_stroke(context_);
}

void CairoCanvas::text(const host::Text& text, const Pen& pen) {
    const double height = text.height * map_.scale;
    const Point2 at = map_(text.at.plan());
    if (!safeBox().contains(at) || height > kLargestText || !(height > 0.0))
        return;
    setColour(pen.colour);
    if (height < kSmallestText) {
        const auto corners = textBox(text);
        return curve(
            Curve::line({corners[0].x, corners[0].y, 0.0}, {corners[1].x, corners[1].y, 0.0}), pen);
    }
    const SavedContext saved(context_);
    const std::string shown = readableText(text.text);
    // A text's height is that of its capitals.
    cairo_text_extents_t capital;
    cairo_set_font_size(context_, 100.0);
    cairo_text_extents(context_, "H", &capital);
    const double capitalShare = capital.height > 0.0 ? capital.height / 100.0 : 0.7;
    cairo_translate(context_, at.x, at.y);
    cairo_rotate(context_, -text.rotation);
    cairo_set_font_size(context_, height / capitalShare);
    cairo_text_extents_t extents;
    cairo_text_extents(context_, shown.c_str(), &extents);
    const Point2 start = startOf(text, extents.x_advance, height);
    cairo_move_to(context_, start.x, start.y);
    cairo_show_text(context_, shown.c_str());
    cairo_new_path(context_);
}

void CairoCanvas::point(Point2 at, const Pen& pen) {
    const Point2 p = map_(at);
    if (!safeBox().contains(p))
        return;
    setColour(pen.colour);
    cairo_new_path(context_);
    cairo_arc(context_, p.x, p.y, kPointRadius * hairline_, 0.0, 2.0 * std::numbers::pi);
    cairo_fill(context_);
}

void CairoCanvas::cells(const host::CellPatch& patch) {
    const std::size_t count =
        static_cast<std::size_t>(patch.nX) * static_cast<std::size_t>(patch.nY);
    if (patch.nX < 1 || patch.nY < 1 || patch.colours.size() < count)
        return;
    if (patch.filled)
        cellImage(patch);
    else
        cellOutlines(patch);
}

// One image of a pixel a cell, laid over the grid's parallelogram.
void CairoCanvas::cellImage(const host::CellPatch& patch) {
    struct Destroy {
        void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
    };
    const std::unique_ptr<cairo_surface_t, Destroy> image(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, patch.nX, patch.nY));
    if (cairo_surface_status(image.get()) != CAIRO_STATUS_SUCCESS)
        return;
    cairo_surface_flush(image.get());
    unsigned char* bytes = cairo_image_surface_get_data(image.get());
    const int stride = cairo_image_surface_get_stride(image.get());
    for (int j = 0; j < patch.nY; ++j) {
        auto* row =
            reinterpret_cast<std::uint32_t*>(bytes + static_cast<std::ptrdiff_t>(stride) * j);
        for (int i = 0; i < patch.nX; ++i) {
            const int colour =
                patch.colours[static_cast<std::size_t>(j) * static_cast<std::size_t>(patch.nX) +
                              static_cast<std::size_t>(i)];
            const Rgb rgb = shownColour(colour, background_);
            row[i] = colour == 0 ? 0u
                                 : 0xFF000000u | static_cast<std::uint32_t>(rgb.red << 16) |
                                       static_cast<std::uint32_t>(rgb.green << 8) | rgb.blue;
        }
    }
    cairo_surface_mark_dirty(image.get());

    const SavedContext saved(context_);
    const Point2 origin = map_(patch.origin);
    const double s = map_.scale;
    const cairo_matrix_t place = {s * patch.xStep.x,  -s * patch.xStep.y, s * patch.yStep.x,
                                  -s * patch.yStep.y, origin.x,           origin.y};
    cairo_transform(context_, &place);
    cairo_set_source_surface(context_, image.get(), 0.0, 0.0);
    cairo_pattern_set_filter(cairo_get_source(context_), CAIRO_FILTER_NEAREST);
    cairo_paint(context_);
}

void CairoCanvas::cellOutlines(const host::CellPatch& patch) {
    std::size_t cell = 0;
    for (int j = 0; j < patch.nY; ++j)
        for (int i = 0; i < patch.nX; ++i, ++cell) {
            if (patch.colours[cell] == 0)
                continue;
            const Point2 p = patch.origin + double(i) * patch.xStep + double(j) * patch.yStep;
            const Point2 q = p + patch.xStep + patch.yStep;
            const auto at = [](Point2 corner) { return geometry::Point3{corner.x, corner.y, 0.0}; };
            curve(Curve({{at(p)}, {at(p + patch.xStep)}, {at(q)}, {at(p + patch.yStep)}}, true),
                  {patch.colours[cell]});
        }
}

} // namespace tessaran::drawing
