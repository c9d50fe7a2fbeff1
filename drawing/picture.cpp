#include "drawing/picture.h"

#include "base/file.h"
#include "base/text.h"
#include "drawing/cairo_canvas.h"
#include "drawing/extents.h"
#include "drawing/page_furniture.h"
#include "drawing/scene.h"
#include "drawing/selection.h"
#include "geometry/polygon.h"

#include <cairo-pdf.h>
#include <cairo-svg.h>

#include <cmath>
#include <memory>

namespace tessaran::drawing {
namespace {

using geometry::Box2;

constexpr double kPadding = 0.02;        // around what is shown, of its longer side
constexpr double kPointsPerPixel = 0.75; // 96 pixels are 72 points

// Steps of curves that a picture leaves out, page units: pictures of lines can be enlarged.
constexpr double kPixelDetail = 0.35;
constexpr double kVectorDetail = 0.02;

enum class Format { png, svg, pdf };

struct DestroySurface {
    void operator()(cairo_surface_t* surface) const { cairo_surface_destroy(surface); }
};
struct DestroyContext {
    void operator()(cairo_t* context) const { cairo_destroy(context); }
};
using Surface = std::unique_ptr<cairo_surface_t, DestroySurface>;
using Context = std::unique_ptr<cairo_t, DestroyContext>;

std::optional<Format> formatOf(const std::filesystem::path& path) {
    const std::string name = path.filename().string();
    if (base::endsWithIgnoringCase(name, ".png"))
        return Format::png;
    if (base::endsWithIgnoringCase(name, ".svg"))
        return Format::svg;
    if (base::endsWithIgnoringCase(name, ".pdf"))
        return Format::pdf;
    return std::nullopt;
}

cairo_status_t append(void* out, const unsigned char* data, unsigned int length) {
    static_cast<std::string*>(out)->append(reinterpret_cast<const char*>(data), length);
    return CAIRO_STATUS_SUCCESS;
}

Surface surfaceFor(Format format, const PageLayout& page, std::string& out) {
    const double width = page.width;
    const double height = page.height;
    if (format == Format::svg) {
        Surface surface(cairo_svg_surface_create_for_stream(append, &out, width, height));
        cairo_svg_surface_set_document_unit(surface.get(), CAIRO_SVG_UNIT_PX);
        return surface;
    }
    if (format == Format::pdf)
        return Surface(cairo_pdf_surface_create_for_stream(append, &out, width * kPointsPerPixel,
                                                           height * kPointsPerPixel));
    return Surface(cairo_image_surface_create(CAIRO_FORMAT_RGB24, static_cast<int>(width),
                                              static_cast<int>(height)));
}

// "ft" for the header's unit code, or nothing.
std::string unitsOf(const Database& database) {
    const auto& variables = database.tables().variables;
    const auto found = variables.find("INSUNITS");
    const int* code = found == variables.end() ? nullptr : std::get_if<int>(&found->second);
    switch (code ? *code : 0) {
    case 1:
        return "in";
    case 2:
        return "ft";
    case 3:
        return "mi";
    case 4:
        return "mm";
    case 5:
        return "cm";
    case 6:
        return "m";
    case 7:
        return "km";
    case 10:
        return "yd";
    default:
        return {};
    }
}

base::Result<void> checkOptions(const Database& database, const PictureOptions& options) {
    if (options.width < kSmallestPicture || options.width > kLargestPicture)
        return base::rangeError("A picture is " + std::to_string(kSmallestPicture) + " to " +
                                std::to_string(kLargestPicture) + " pixels wide.");
    for (const std::string& name : options.layers)
        if (!database.layerRecord(name))
            return base::stateError("There is no layer \"" + name + "\".");
    if (!options.extent)
        return {};
    const Box2& box = *options.extent;
    if (!geometry::isUsable(box.low) || !geometry::isUsable(box.high) ||
        !(box.width() > 0.0 && box.height() > 0.0))
        return base::rangeError("The extent of a picture is a box from lower left to upper right.");
    return {};
}

// The part of the world to show: some air around what is there; of nothing, or of a single place,
// the standard view. Never so small beside its coordinates that they could not tell its sides.
Box2 worldToShow(const Database& database, const host::SelectionFilter& filter,
                 const PictureOptions& options) {
    Box2 box = options.extent ? *options.extent : drawingExtents(database, filter);
    const double longer = box.empty() ? 0.0 : std::max(box.width(), box.height());
    if (longer <= 0.0)
        box = viewOn(box).box();
    else if (!options.extent)
        box = box.enlarged(kPadding * longer);
    const double far = std::max(
        {std::abs(box.low.x), std::abs(box.low.y), std::abs(box.high.x), std::abs(box.high.y)});
    const double least = std::max(longer * 1e-3, far * 1e-9);
    const double lacking = least - std::min(box.width(), box.height());
    return lacking > 0.0 ? box.enlarged(0.5 * lacking) : box;
}

PictureSummary drawMap(const Database& database, const FilterTest& passes,
                       const PictureOptions& options, const PageLayout& page, double detail,
                       cairo_t* context) {
    PictureSummary summary;
    cairo_save(context);
    cairo_rectangle(context, page.map.low.x, page.map.low.y, page.map.width(), page.map.height());
    cairo_clip(context);
    CairoCanvas canvas(context, page.place,
                       {options.background, std::max(1.0, page.width / 1600.0), detail});
    const double s = page.place.scale;
    const host::Point2 half{0.5 * page.map.width() / s, 0.5 * page.map.height() / s};
    const host::Point2 centre = page.place.worldCentre;
    for (const EntityRecord* record : database.near({centre - half, centre + half})) {
        if (!passes(*record) || !isShown(database, *record))
            continue;
        drawEntity(database, *record, Visibility::shown, canvas);
        ++summary.drawn;
    }
    if (options.overlay)
        options.overlay(canvas);
    cairo_restore(context);
    database.forEachEntity([&](const EntityRecord& record) {
        const auto* other = std::get_if<host::Other>(&record.entity.geometry);
        const bool unknown = other != nullptr && other->look == nullptr;
        summary.notShown += unknown && passes(record) && isShown(database, record) ? 1u : 0u;
    });
    return summary;
}

void drawFurniture(const PageLayout& page, const PictureOptions& options, const std::string& units,
                   cairo_t* context) {
    const Rgb ink = shownColour(host::colour::kForeground, options.background);
    cairo_select_font_face(context, "sans-serif", CAIRO_FONT_SLANT_NORMAL,
                           CAIRO_FONT_WEIGHT_NORMAL);
    drawFrame(context, page, ink);
    if (!options.title.empty())
        drawTitle(context, page, ink, options.title);
    drawScaleBar(context, page, ink, units);
    drawNorthArrow(context, page, ink);
}

base::Error cairoError(cairo_status_t status, const std::filesystem::path& path) {
    return {base::ErrorKind::io,
            std::string("The picture could not be drawn: ") + cairo_status_to_string(status) + ".",
            path.string(), 0, base::IoCause::other};
}

} // namespace

base::Result<PictureSummary> writePicture(const Database& database,
                                          const std::filesystem::path& path,
                                          const PictureOptions& options) {
    const auto format = formatOf(path);
    if (!format)
        return base::Error{base::ErrorKind::range,
                           "A picture's file name ends in .png, .svg or .pdf.", path.string()};
    if (auto fault = checkOptions(database, options); !fault)
        return fault.error();

    host::SelectionFilter filter;
    filter.layers = options.layers;
    const FilterTest passes(database.tables(), filter);
    const PageLayout page =
        layOut(options.width, worldToShow(database, filter, options), !options.title.empty());
    std::string bytes;
    const Surface surface = surfaceFor(*format, page, bytes);
    const Context context(cairo_create(surface.get()));
    if (*format == Format::pdf)
        cairo_scale(context.get(), kPointsPerPixel, kPointsPerPixel);
    const Rgb paper = options.background;
    cairo_set_source_rgb(context.get(), paper.red / 255.0, paper.green / 255.0, paper.blue / 255.0);
    cairo_paint(context.get());
    const PictureSummary summary =
        drawMap(database, passes, options, page,
                *format == Format::png ? kPixelDetail : kVectorDetail, context.get());
    drawFurniture(page, options, options.units.empty() ? unitsOf(database) : options.units,
                  context.get());

    if (const cairo_status_t status = cairo_status(context.get()); status != CAIRO_STATUS_SUCCESS)
        return cairoError(status, path);
    if (*format == Format::png)
        cairo_surface_write_to_png_stream(surface.get(), append, &bytes);
    cairo_surface_finish(surface.get());
    if (const cairo_status_t status = cairo_surface_status(surface.get());
        status != CAIRO_STATUS_SUCCESS)
        return cairoError(status, path);
    if (auto written = base::writeFile(path, bytes); !written)
        return written.error();
    return summary;
}

} // namespace tessaran::drawing
