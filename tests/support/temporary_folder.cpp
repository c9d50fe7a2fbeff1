#include "support/temporary_folder.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <stdexcept>

namespace tessaran::test {

TemporaryFolder::TemporaryFolder() : before_(std::filesystem::current_path()) {
    std::string name = (std::filesystem::temp_directory_path() / "tessaran-XXXXXX").string();
    if (mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    path_ = name;
    std::filesystem::current_path(path_);
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::current_path(before_, ignored);
    std::filesystem::remove_all(path_, ignored);
}

void TemporaryFolder::write(std::string_view name, std::string_view content) const {
    std::filesystem::create_directories((path_ / name).parent_path());
    std::ofstream(path_ / name, std::ios::binary) << content;
}

std::string TemporaryFolder::read(std::string_view name) const {
    std::ifstream in(path_ / name, std::ios::binary);
    return {std::istreambuf_iterator<char>(in), {}};
}

bool TemporaryFolder::has(std::string_view name) const {
    return std::filesystem::exists(path_ / name);
}

} // namespace tessaran::test
