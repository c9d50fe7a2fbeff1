#pragma once

// The program's command line.

namespace tessaran::cli {

// Exit statuses; `run` gives its own (console/script_runner.h).
inline constexpr int kDone = 0;
inline constexpr int kFailed = 1;
inline constexpr int kWrongUsage = 2;

int main(int argc, char** argv);

} // namespace tessaran::cli
