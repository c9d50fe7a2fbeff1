#include "stress/profile.h"

#include <fmt/format.h>

namespace tessaran::stress {
namespace {

constexpr const char* kRule =
    "-----------------------------------------------------------------------\n";

long whole(double seconds) {
    return static_cast<long>(seconds);
}

std::string seamTable(const SeamProfile& seam) {
    std::string out = kRule;
    out += "|  Detail | Solution|   SOR   |   SOR   | Surface |InterSeam|  Total  |\n"
           "|  Level  |  Loops  |  Iters. |  Secs.  |  Secs.  |  Secs.  |  Secs.  |\n";
    LevelProfile sum;
    for (std::size_t level = 0; level < seam.size(); ++level) {
        const LevelProfile& p = seam[level];
        out +=
            fmt::format("|   {:2}    |  {:5}  | {:7} | {:7} | {:7} | {:7} | {:7} |\n", level,
                        p.loops, p.iterations, whole(p.relaxationSeconds), whole(p.surfaceSeconds),
                        whole(p.interseamSeconds), whole(p.totalSeconds()));
        sum += p;
    }
    out += fmt::format("             {:5}    {:7}   {:7}   {:7}   {:7}   {:7}  \n\n\n", sum.loops,
                       sum.iterations, whole(sum.relaxationSeconds), whole(sum.surfaceSeconds),
                       whole(sum.interseamSeconds), whole(sum.totalSeconds()));
    return out;
}

} // namespace

LevelProfile& LevelProfile::operator+=(const LevelProfile& other) {
    loops += other.loops;
    iterations += other.iterations;
    relaxationSeconds += other.relaxationSeconds;
    surfaceSeconds += other.surfaceSeconds;
    interseamSeconds += other.interseamSeconds;
    return *this;
}

std::string profileTables(const std::vector<SeamProfile>& seams) {
    std::string out;
    int number = 0;
    for (const SeamProfile& seam : seams)
        out += fmt::format("For Seam #{} --\n", ++number) + seamTable(seam);
    return out;
}

} // namespace tessaran::stress
