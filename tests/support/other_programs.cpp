#include "support/other_programs.h"

#include <array>
#include <cstdio>
#include <cstdlib>
#include <stdexcept>
#include <sys/wait.h>

namespace tessaran::test {

TemporaryFolder::TemporaryFolder() {
    std::string name = (std::filesystem::temp_directory_path() / "tessaran-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr)
        throw std::runtime_error("no temporary folder");
    path_ = name;
}

TemporaryFolder::~TemporaryFolder() {
    std::error_code code;
    std::filesystem::remove_all(path_, code);
}

ProgramResult runScript(const std::string& script, const std::string& arguments) {
    const std::string command = "/usr/bin/python3 '" + script + "' " + arguments + " 2>&1";
    ProgramResult result;
    FILE* pipe = ::popen(command.c_str(), "r");
    if (pipe == nullptr)
        return result;
    std::array<char, 4096> buffer{};
    for (std::size_t got = 0; (got = std::fread(buffer.data(), 1, buffer.size(), pipe)) > 0;)
        result.output.append(buffer.data(), got);
    const int status = ::pclose(pipe);
    result.status = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return result;
}

} // namespace tessaran::test
