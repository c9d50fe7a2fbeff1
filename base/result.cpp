#include "base/result.h"

namespace tessaran::base {

std::string Error::message() const {
    std::string out;
    if (!file.empty()) {
        out += file;
        if (line > 0) {
            out += ':';
            out += std::to_string(line);
        }
        out += ": ";
    } else if (line > 0) {
        out += "line " + std::to_string(line) + ": ";
    }
    return out + text;
}

} // namespace tessaran::base
