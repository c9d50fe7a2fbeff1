// Any bytes as a project file: what is read can be written, and reads back the same.

#include "index/project_file.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace tessaran::index;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const std::vector<ProjectEntry> entries = parseProject(text);
    if (entries.size() * 4 > size)
        std::abort();
    const auto written = projectText(entries);
    // A lone carriage return inside a line stays in the value and cannot be written.
    if (!written)
        return 0;
    std::vector<ProjectEntry> again = parseProject(*written);
    // A last weighting without text leaves nothing at the end of the file to read.
    if (!entries.empty() && entries.back().weighting.empty())
        again.push_back(entries.back());
    if (again != entries)
        std::abort();
    return 0;
}
