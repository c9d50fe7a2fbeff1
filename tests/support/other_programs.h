#pragma once

// Other programs' hands and eyes: drawings made by them, and what they say of ours.

#include <string>

namespace tessaran::test {

struct ProgramResult {
    int status = -1;
    std::string output; // both streams
};

// Runs a python script of the tests' folder with the system's interpreter, which has the packages
// that the set-up script installs.
ProgramResult runScript(const std::string& script, const std::string& arguments);

} // namespace tessaran::test
