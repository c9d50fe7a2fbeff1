#include "base/check.h"

#include <cstdio>
#include <cstdlib>

namespace tessaran::base {

void checkFailed(const char* condition, const char* file, int line) {
    std::fprintf(stderr, "internal error: %s does not hold (%s:%d)\n", condition, file, line);
    std::abort();
}

} // namespace tessaran::base
