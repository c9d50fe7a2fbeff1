#include "host/services_view.h"

#include "host/host.h"

namespace tessaran::host {
namespace {

constexpr const char* kEcho = "CMDECHO";

std::optional<double> numberOf(const std::optional<VariableValue>& value) {
    if (!value)
        return std::nullopt;
    if (const double* real = std::get_if<double>(&*value))
        return *real;
    if (const int* whole = std::get_if<int>(&*value))
        return *whole;
    return std::nullopt;
}

std::optional<Point2> pointOf(const std::optional<VariableValue>& value) {
    if (!value)
        return std::nullopt;
    if (const Point2* point = std::get_if<Point2>(&*value))
        return *point;
    if (const Point3* point = std::get_if<Point3>(&*value))
        return point->plan();
    return std::nullopt;
}

} // namespace

void setCommandEcho(Host& host, int value) {
    // A host without the variable echoes nothing, which is what is wanted.
    static_cast<void>(host.variables().set(kEcho, value < 1 ? 0 : 1));
}

CommandEchoOff::CommandEchoOff(Host& host) : host_(host) {
    if (const auto echo = numberOf(host.variables().get(kEcho)))
        before_ = static_cast<int>(*echo);
    setCommandEcho(host_, 0);
}

CommandEchoOff::~CommandEchoOff() {
    setCommandEcho(host_, before_);
}

ZoomedTo::ZoomedTo(Host& host, const Box2& world) : host_(host) {
    host_.zoomWindow(world);
}

ZoomedTo::~ZoomedTo() {
    host_.zoomPrevious();
}

std::optional<Box2> viewRectangle(Host& host) {
    const auto centre = pointOf(host.variables().get("VIEWCTR"));
    const auto pixels = pointOf(host.variables().get("SCREENSIZE"));
    const auto height = numberOf(host.variables().get("VIEWSIZE"));
    if (!centre || !pixels || !height || !(pixels->y > 0.0))
        return std::nullopt;
    // The centre comes in user coordinates.
    const Point2 at = host.coordinates().toWorld({centre->x, centre->y, 0.0}).plan();
    const Point2 half{*height * pixels->x / pixels->y / 2.0, *height / 2.0};
    return Box2{at - half, at + half};
}

} // namespace tessaran::host
