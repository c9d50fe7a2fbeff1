#include "stress/field_text.h"

#include "base/numbers.h"

#include <fmt/format.h>

namespace tessaran::stress {

std::string fieldText(double value) {
    const std::string fixed = base::fixed6(value);
    if (fixed.size() <= kFieldWidth && base::leadingDouble(fixed) == value)
        return fixed;
    for (int digits = 17; digits > 1; --digits) {
        std::string text = fmt::format("{:.{}g}", value, digits);
        if (text.size() <= kFieldWidth)
            return text;
    }
    return fmt::format("{:.1g}", value);
}

} // namespace tessaran::stress
