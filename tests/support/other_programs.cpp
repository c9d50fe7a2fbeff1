#include "support/other_programs.h"

#include <array>
#include <cstdio>
#include <sys/wait.h>

namespace tessaran::test {

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
