#include "stress/memory_end.h"

#include "host/host.h"
#include "stress/arrays.h"

namespace tessaran::stress {

bool orEndProgram(host::Host& host, const std::function<void()>& work) {
    constexpr int kStatus = 1;
    try {
        work();
        return true;
    } catch (const std::bad_alloc& failure) {
        host.dialogs().message(messageOf(failure));
        host.endProgram(kStatus);
        return false;
    }
}

} // namespace tessaran::stress
