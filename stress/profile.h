#pragma once

// Where a run's iterations and seconds went, per seam and level of detail, and the tables of the
// log.

#include <array>
#include <string>
#include <vector>

namespace tessaran::stress {

// The levels of detail, from 3 down to 0: sources of influence are blocks of so many elements, and
// external stresses count as settled when no seam needs more iterations than the limit.
struct DetailLevel {
    int aggregation;
    int iterationLimit;
};
inline constexpr std::array<DetailLevel, 4> kDetailLevels{
    {{1, 20}, {2, 100}, {5, 500}, {10, 1000}}};
inline constexpr int kCoarsestLevel = 3;

struct LevelProfile {
    int loops = 0;
    long iterations = 0;
    double relaxationSeconds = 0.0;
    double surfaceSeconds = 0.0;
    double interseamSeconds = 0.0;

    double totalSeconds() const { return relaxationSeconds + surfaceSeconds + interseamSeconds; }
    LevelProfile& operator+=(const LevelProfile& other);
};

using SeamProfile = std::array<LevelProfile, kDetailLevels.size()>;

// One seam after another: rule, headings, a line a level, totals.
std::string profileTables(const std::vector<SeamProfile>& seams);

} // namespace tessaran::stress
