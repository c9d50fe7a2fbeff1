#pragma once

// The process's locale with a decimal comma while this lives, made for the occasion, so that no
// such locale need be installed.

#include "support/temporary_folder.h"

#include <string>

namespace tessaran::test {

class CommaLocale {
  public:
    CommaLocale();
    CommaLocale(const CommaLocale&) = delete;
    CommaLocale& operator=(const CommaLocale&) = delete;
    ~CommaLocale();

    bool inForce() const { return inForce_; }

  private:
    TemporaryFolder folder_;
    std::string before_;
    bool inForce_ = false;
};

} // namespace tessaran::test
