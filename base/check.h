#pragma once

// Assertions that stay on in every build: what we did wrong ends the program with its place.

namespace tessaran::base {
[[noreturn]] void checkFailed(const char* condition, const char* file, int line);
}

#define TESSARAN_CHECK(condition)                                                                  \
    ((condition) ? static_cast<void>(0)                                                            \
                 : ::tessaran::base::checkFailed(#condition, __FILE__, __LINE__))
