#pragma once

#include <chrono>

namespace tessaran::stress {

// Runs from its making on.
class Stopwatch {
  public:
    double seconds() const {
        return std::chrono::duration<double>(std::chrono::steady_clock::now() - start_).count();
    }
    long wholeSeconds() const { return static_cast<long>(seconds()); }

  private:
    std::chrono::steady_clock::time_point start_ = std::chrono::steady_clock::now();
};

} // namespace tessaran::stress
