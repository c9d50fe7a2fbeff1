#include "geometry/box_index.h"

#include <gtest/gtest.h>

#include <random>

namespace tessaran::geometry {
namespace {

TEST(BoxIndex, FindsWhatAScanFinds) {
    std::mt19937 random(5);
    std::uniform_real_distribution<double> at(0.0, 100.0);
    std::uniform_real_distribution<double> size(0.0, 6.0);
    const auto box = [&] {
        const Point2 low{at(random), at(random)};
        return Box2{low, low + Point2{size(random), size(random)}};
    };
    for (const int count : {0, 1, 16, 17, 256, 257, 3000}) {
        std::vector<Box2> boxes;
        for (int k = 0; k < count; ++k)
            boxes.push_back(k % 50 == 7 ? Box2{} : box());
        const BoxIndex index(boxes);
        for (int round = 0; round < 50; ++round) {
            const Box2 wanted = box();
            std::vector<std::size_t> scanned;
            for (std::size_t k = 0; k < boxes.size(); ++k)
                if (!boxes[k].empty() && boxes[k].meets(wanted))
                    scanned.push_back(k);
            EXPECT_EQ(index.query(wanted), scanned);
        }
    }
}

TEST(BoxIndex, CountsTouchingAndTakesBoundlessBoxes) {
    const double far = std::numeric_limits<double>::infinity();
    const std::vector<Box2> boxes{{{0, 0}, {1, 1}}, {{-far, -far}, {far, far}}, {{2, 2}, {3, 3}}};
    const BoxIndex index(boxes);
    EXPECT_EQ(index.query({{1, 1}, {1.5, 1.5}}), (std::vector<std::size_t>{0, 1}));
    EXPECT_TRUE(index.query(Box2{}).empty());
}

} // namespace
} // namespace tessaran::geometry
