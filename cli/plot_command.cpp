#include "base/text.h"
#include "cli/options.h"
#include "cli/subcommands.h"
#include "console/drawing_files.h"
#include "drawing/picture.h"

#include <fmt/format.h>

#include <cstdio>

namespace tessaran::cli {
namespace {

drawing::PictureOptions pictureOptions(const PlotOptions& options) {
    drawing::PictureOptions picture;
    picture.width = options.width;
    picture.layers = base::nameList(options.layers);
    picture.title = options.title;
    if (options.extent.size() == 4) {
        host::Box2 box;
        box.add(geometry::Point2{options.extent[0], options.extent[1]});
        box.add(geometry::Point2{options.extent[2], options.extent[3]});
        picture.extent = box;
    }
    return picture;
}

} // namespace

int plotDrawing(const PlotOptions& options) {
    base::NoProgress progress;
    const auto opened = console::openDrawing(options.drawing, progress);
    if (!opened) {
        fmt::print(stderr, "{}\n", opened.error().message());
        return kWrongUsage;
    }
    const auto drawn =
        drawing::writePicture(*opened->database, options.output, pictureOptions(options));
    if (!drawn) {
        fmt::print(stderr, "{}\n", drawn.error().message());
        return kFailed;
    }
    fmt::print("{}: {} objects drawn", options.output, drawn->drawn);
    if (drawn->notShown > 0)
        fmt::print(", {} of kinds that are not drawn", drawn->notShown);
    fmt::print("\n");
    return kDone;
}

} // namespace tessaran::cli
