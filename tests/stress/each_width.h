#pragma once

#include "stress/sweep_kernel.h"

#include <gtest/gtest.h>
#include <hwy/targets.h>

#include <cstdint>

namespace tessaran::test {

// Every width of vector that the machine has, the plain code among them.
class EachWidth {
  public:
    template <class Check>
    static void run(const Check& check) {
        const std::int64_t all = hwy::SupportedTargets();
        int widths = 0;
        for (std::int64_t target = 1; target > 0; target <<= 1) {
            if ((all & target) == 0)
                continue;
            hwy::SetSupportedTargetsForTest(target);
            hwy::GetChosenTarget().Update(hwy::SupportedTargets());
            SCOPED_TRACE(stress::sweepKernel().name);
            check();
            ++widths;
        }
        hwy::SetSupportedTargetsForTest(0);
        hwy::GetChosenTarget().Update(hwy::SupportedTargets());
        EXPECT_GT(widths, 0);
    }
};

} // namespace tessaran::test
