#pragma once

// One strip of a sweep, in vectors: as many lines of elements as a vector has lanes, one line a
// lane. The lanes are skewed: vector t holds line r of the strip at its element t - r. Then the
// neighbours of a vector's elements are
//   north  the next vector, not swept yet,
//   east   the next vector shifted by a lane, the line after the strip filling in,
//   south  the vector swept last,
//   west   the vector swept last shifted by a lane, the line before the strip filling in,
// so that the order of the plain double loop holds and every value comes out as there, bit for bit.
// (X runs over lines, east; Y along them, north.)
//
// A vector's values and its external stresses lie behind one another in a record of
// (1 + external stresses) vectors.

#include "stress/law_table.h"

#include <cstdint>
#include <vector>

namespace tessaran::stress {

struct SweepConstants {
    double k = 0.0;    // omega / 4
    double keep = 0.0; // 1 - omega
    double c = 0.0;    // of the net stress
    double thickness = 1.0;
    double modulus = 0.0;
    int lineLength = 0; // elements along a line, nY
    // What is taken off the element's stress: a stress that all elements share, if there is one,
    // then the external stresses in the record (0 to 3) one after the other.
    int streams = 1;
    bool hasShared = false;
    double shared = 0.0;
    const LawTable* laws = nullptr;
    double* remembered = nullptr; // contact stresses, by element
    std::uint8_t* told = nullptr; // whether an element's over-closing has been told, by element
    bool trackElement = false;    // whether the element of the largest change is wanted
};

// The largest change in a sweep; of equal ones the one met first. Lines and elements from 0.
struct LargestChange {
    double size = -1.0;
    double value = 0.0; // with its sign, like the element only where it was wanted
    int line = 0;
    int element = 0;

    void take(const LargestChange& later) {
        if (later.size > size)
            *this = later;
    }
};

struct StripSweep {
    double* records = nullptr;      // of vector 0
    const double* before = nullptr; // [t * record length]: element t of the line before
    const double* after = nullptr;  // [t * record length]: element t - lanes + 1 of the line after
    std::uint8_t* laws = nullptr;   // of vector 0, a byte a lane
    int firstLine = 0;
    int lines = 0; // of the seam in this strip: fewer than lanes in the last one

    // What the sweep found.
    LargestChange change{};
    bool finite = true;
    long overClosed = 0;                       // evaluations of open entries with a strain above 1
    std::vector<int>* newOverClosed = nullptr; // elements that were so for the first time
};

struct SweepKernel {
    int lanes = 0;
    const char* name = nullptr;
    // Sweeps one strip, or two that do not touch one another side by side (their chains of
    // additions run at the same time).
    void (*sweep)(const SweepConstants& constants, StripSweep* const* strips, int count) = nullptr;
    // The stresses at the strip's values in place of the values.
    void (*evaluate)(const SweepConstants& constants, StripSweep& strip) = nullptr;
};

// For the widest vectors that this machine has.
SweepKernel sweepKernel();

// An open entry in contact, or one that remembers it: renews what it remembers and returns it. Any
// other law's stress is returned as it is.
double contactInLane(const SweepConstants& constants, StripSweep& strip, std::uint8_t& law,
                     int element, double strain, double stress);

} // namespace tessaran::stress
