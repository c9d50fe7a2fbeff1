#include "support/comma_locale.h"

#include <clocale>
#include <cstdio>
#include <cstdlib>

namespace tessaran::test {

CommaLocale::CommaLocale() : before_(std::setlocale(LC_ALL, nullptr)) {
    const std::string name = (folder_ / "de_DE.UTF-8").string();
    const std::string make = "localedef -i de_DE -f UTF-8 '" + name + "' >/dev/null 2>&1";
    if (std::system(make.c_str()) != 0) // NOLINT(cert-env33-c,concurrency-mt-unsafe)
        return;
    ::setenv("LOCPATH", folder_.path().c_str(), 1);
    std::setlocale(LC_ALL, "de_DE.UTF-8");
    std::setlocale(LC_MESSAGES, "C"); // the system's own error texts stay as tests expect them
    char half[8] = "";
    std::snprintf(half, sizeof half, "%.1f", 0.5);
    inForce_ = std::string(half) == "0,5";
}

CommaLocale::~CommaLocale() {
    std::setlocale(LC_ALL, before_.c_str());
    ::unsetenv("LOCPATH");
}

} // namespace tessaran::test
