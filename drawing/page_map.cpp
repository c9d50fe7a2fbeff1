#include "drawing/page_map.h"

#include "base/text.h"

#include <algorithm>
#include <cmath>

namespace tessaran::drawing {

using host::Point2;

std::vector<double> onOff(const std::vector<double>& dashes, double scale, double dot) {
    std::vector<double> lengths;
    for (std::size_t i = 0; i < dashes.size(); ++i) {
        const bool gap = dashes[i] < 0.0;
        if (gap != (i % 2 == 1))
            return {};
        lengths.push_back(std::max(dot, std::abs(dashes[i]) * scale));
    }
    return lengths;
}

Point2 startOf(const host::Text& text, double width, double height) {
    using enum host::Text::Across;
    const double x = text.across == left ? 0.0 : text.across == centre ? -0.5 * width : -width;
    const double y = text.up == host::Text::Up::top      ? height
                     : text.up == host::Text::Up::middle ? 0.5 * height
                                                         : 0.0;
    return {x, y};
}

std::string readableText(const std::string& text) {
    const bool valid = base::isValidUtf8(text);
    std::string out;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const auto byte = static_cast<unsigned char>(text[i]);
        if (text.compare(i, 2, "%%") == 0 && i + 2 < text.size()) {
            switch (text[i + 2] | 0x20) {
            case 'd':
                out += "\u00B0";
                break;
            case 'c':
                out += "\u2300";
                break;
            case 'p':
                out += "\u00B1";
                break;
            case 'u':
            case 'o':
                break; // underlined, overlined
            default:
                out += text[i + 2];
                break;
            }
            i += 2;
        } else if (byte < 0x20 || byte == 0x7F) {
            out += ' ';
        } else if (!valid && byte >= 0x80) { // most likely Latin-1
            out += static_cast<char>(0xC0 | (byte >> 6));
            out += static_cast<char>(0x80 | (byte & 0x3F));
        } else {
            out += text[i];
        }
    }
    return out;
}

} // namespace tessaran::drawing
