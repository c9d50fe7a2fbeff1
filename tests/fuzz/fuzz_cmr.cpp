// Roof data files of any bytes: what reads can be written and reads back the same.

#include "cmrr/unit_file.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaran::cmrr;
    const auto read = parseUnitText({reinterpret_cast<const char*>(data), size}, {});
    if (!read)
        return 0;
    const auto written = unitText(*read, {});
    if (!written) // a path with a control character cannot be written
        return 0;
    const auto again = parseUnitText(*written, {});
    if (!again)
        std::abort();
    const auto twice = unitText(*again, {});
    if (!twice || *twice != *written)
        std::abort();
    return 0;
}
