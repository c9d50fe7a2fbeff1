#pragma once

#include <cstddef>
#include <memory>

namespace tessaran::stress {

// Doubles of 64-byte alignment, on large pages where the system has them. Not cleared.
class AlignedDoubles {
  public:
    AlignedDoubles() = default;
    explicit AlignedDoubles(std::size_t count);
    double* data() { return data_.get(); }
    const double* data() const { return data_.get(); }
    std::size_t size() const { return data_ ? size_ : 0; } // 0 once moved from

  private:
    struct Free {
        void operator()(double* data) const;
    };
    std::unique_ptr<double[], Free> data_;
    std::size_t size_ = 0;
};

} // namespace tessaran::stress
