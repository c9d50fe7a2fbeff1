#include "stress/arrays.h"

#include <array>

namespace tessaran::stress {
namespace {

// Of a vector there is one message, of the others one for each cause.
struct Messages {
    const char* tooLong;
    const char* refused;
};

constexpr std::array<Messages, 6> kMessages{{
    {"allocation failure in dvector()", "allocation failure in dvector()"},
    {"allocation failure in ivector()", "allocation failure in ivector()"},
    {"allocation failure 1 in dmatrix()", "allocation failure 2 in dmatrix()"},
    {"allocation failure 1 in cmatrix()", "allocation failure 2 in cmatrix()"},
    {"allocation failure 1 in ccubix()", "allocation failure 2 in ccubix()"},
    {"allocation failure 1 in dcubix()", "allocation failure 2 in dcubix()"},
}};
constexpr const char* kOther = "There is not enough memory for this run.";
constexpr const char* kExit = "\n...now exiting to the system...\n";

} // namespace

const char* AllocationFailure::what() const noexcept {
    const Messages& messages = kMessages[static_cast<std::size_t>(kind_)];
    return cause_ == Cause::tooLong ? messages.tooLong : messages.refused;
}

std::string messageOf(const std::bad_alloc& failure) {
    const auto* array = dynamic_cast<const AllocationFailure*>(&failure);
    return std::string(array != nullptr ? array->what() : kOther) + kExit;
}

std::vector<double> dmatrix(std::size_t columns, std::size_t rows) {
    return allocatedArray<double>(ArrayKind::dmatrix, columns * rows);
}

} // namespace tessaran::stress
