// Model files of any bytes: read right or refused, in memory bounded by the file's size.

#include "stress/model_echo.h"
#include "stress/model_reader.h"

#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaran::stress;
    const ModelReading read = parseModel({reinterpret_cast<const char*>(data), size});
    if (!read.ok())
        return read.message.empty() ? (std::abort(), 0) : 0;
    std::size_t codes = 0;
    for (const auto& step : read.model.codes)
        for (const auto& seam : step)
            codes += seam.size();
    if (codes > size || modelEcho(read.model).empty())
        std::abort();
    modelFault(read.model);
    return 0;
}
