#pragma once

// The solver's large arrays. Memory that one of them cannot have is told in the words that belong
// to its kind, and ends the program: a run that goes on without part of its arrays has no answer.

#include <cstddef>
#include <new>
#include <stdexcept>
#include <string>
#include <utility>
#include <vector>

namespace tessaran::stress {

// By what an array holds and how many indices it has: numbers along an axis or in a list, a field
// over the elements of one seam, and one over all seams.
enum class ArrayKind { dvector, ivector, dmatrix, cmatrix, ccubix, dcubix };

// Memory that could not be had.
class AllocationFailure : public std::bad_alloc {
  public:
    enum class Cause {
        tooLong, // no array can have so many elements
        refused, // there is no memory for so many
    };
    AllocationFailure(ArrayKind kind, Cause cause) : kind_(kind), cause_(cause) {}

    const char* what() const noexcept override;

  private:
    ArrayKind kind_;
    Cause cause_;
};

// What is shown of a failed allocation before the program ends: the array's own message, or one for
// everything else.
std::string messageOf(const std::bad_alloc& failure);

// What `make` returns; where it runs out of memory, the failure of an array of that kind.
template <class Make>
auto allocated(ArrayKind kind, Make&& make) {
    try {
        return std::forward<Make>(make)();
    } catch (const std::length_error&) {
        throw AllocationFailure(kind, AllocationFailure::Cause::tooLong);
    } catch (const std::bad_alloc&) {
        throw AllocationFailure(kind, AllocationFailure::Cause::refused);
    }
}

template <class T>
std::vector<T> allocatedArray(ArrayKind kind, std::size_t size, T value = T{}) {
    return allocated(kind, [&] { return std::vector<T>(size, value); });
}

// A field over the elements of one seam, zeros.
std::vector<double> dmatrix(std::size_t columns, std::size_t rows);

} // namespace tessaran::stress
