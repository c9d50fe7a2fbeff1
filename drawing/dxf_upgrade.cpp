#include "drawing/dxf_upgrade.h"
namespace tessaran::drawing::dxf {
std::string whatIsMissing(const SourceFile&) {
    return {};
}
base::Result<std::string> upgraded(const SourceFile&) {
    return std::string{};
}
} // namespace tessaran::drawing::dxf
