#pragma once

// The labels of an index grid's cells while it is mapped.

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace tessaran::index {

// One short label a cell, with the geometry of the index grid.
class LabelGrid {
  public:
    LabelGrid(int nX, int nY);

    int nX() const { return nX_; }
    int nY() const { return nY_; }
    bool isKept(int i, int j) const { return state_[at(i, j)] == kKept; }
    bool isDropped(int i, int j) const { return state_[at(i, j)] == kDropped; }
    bool isCut(int i, int j) const { return state_[at(i, j)] > 0; }

    void drop(int i, int j) { state_[at(i, j)] = kDropped; }
    void addPillar(int i, int j, int pillar); // not of a dropped cell
    // Of a cut cell, in the order in which they were added.
    std::vector<int> pillars(int i, int j) const;

    // "0" kept, "N" dropped, else the identifiers of the pillars with "," between them.
    std::string text(int i, int j, std::span<const long> identifiers) const;

  private:
    static constexpr std::int32_t kKept = 0;
    static constexpr std::int32_t kDropped = -1;
    struct Entry {
        int pillar;
        std::int32_t before; // state of the cell before this pillar came
    };

    std::size_t at(int i, int j) const {
        return static_cast<std::size_t>(j) * static_cast<std::size_t>(nX_) +
               static_cast<std::size_t>(i);
    }

    int nX_;
    int nY_;
    std::vector<std::int32_t> state_; // rows outer; above 0: one past the entry's index
    std::vector<Entry> entries_;
};

} // namespace tessaran::index
