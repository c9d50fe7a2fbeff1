#include "host/entity.h"

namespace tessaran::host {
namespace {

template <class... Cases>
struct Overloaded : Cases... {
    using Cases::operator()...;
};
template <class... Cases>
Overloaded(Cases...) -> Overloaded<Cases...>;

} // namespace

std::string dxfName(const Entity& entity) {
    return std::visit(Overloaded{
                          [](const Line&) { return std::string("LINE"); },
                          [](const Polyline& p) {
                              return std::string(p.form == Polyline::Form::light ? "LWPOLYLINE"
                                                                                 : "POLYLINE");
                          },
                          [](const Polyline3d&) { return std::string("POLYLINE"); },
                          [](const PointMark&) { return std::string("POINT"); },
                          [](const Circle&) { return std::string("CIRCLE"); },
                          [](const Arc&) { return std::string("ARC"); },
                          [](const Text&) { return std::string("TEXT"); },
                          [](const Hatch&) { return std::string("HATCH"); },
                          [](const Region&) { return std::string("REGION"); },
                          [](const Face3d&) { return std::string("3DFACE"); },
                          [](const Insert&) { return std::string("INSERT"); },
                          [](const Other& other) { return other.dxfName; },
                      },
                      entity.geometry);
}

} // namespace tessaran::host
