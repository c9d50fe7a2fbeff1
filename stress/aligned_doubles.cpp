#include "stress/aligned_doubles.h"

#include "stress/arrays.h"

#include <cstdlib>

#ifdef __linux__
#include <sys/mman.h>
#endif

namespace tessaran::stress {
namespace {

constexpr std::size_t kLargePage = std::size_t{1} << 21;
constexpr std::size_t kVectorAlignment = 64;

} // namespace

AlignedDoubles::AlignedDoubles(std::size_t count) : size_(count) {
    const std::size_t bytes = count * sizeof(double);
    const std::size_t alignment = bytes >= kLargePage ? kLargePage : kVectorAlignment;
    const std::size_t whole = (bytes + alignment - 1) / alignment * alignment;
    data_.reset(static_cast<double*>(std::aligned_alloc(alignment, whole)));
    if (!data_)
        throw AllocationFailure(ArrayKind::dmatrix, AllocationFailure::Cause::refused);
#ifdef __linux__
    if (alignment == kLargePage)
        madvise(data_.get(), whole, MADV_HUGEPAGE); // a refusal only costs time
#endif
}

void AlignedDoubles::Free::operator()(double* data) const {
    std::free(data);
}

} // namespace tessaran::stress
