#pragma once

// An assessment of a stretch of roof, as it is kept on a drawing object: extended data of one
// application, a level text for each category and the measurement's label.

#include "host/entity.h"
#include "rfri/categories.h"

#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tessaran::rfri {

inline constexpr const char* kApplication = "RFRI_DXR_NOISH_APPLICATION";
inline constexpr const char* kDefaultLabel = "MEASUREMENT1";
// Texts of extended data hold no more.
inline constexpr std::size_t kMostLabelBytes = 255;

struct Assessment {
    std::array<std::string, kCategories> levels; // texts, whole
    std::string label;

    friend bool operator==(const Assessment&, const Assessment&) = default;
};

// Every category at its default level.
Assessment defaultAssessment();

// The items behind the application's name; nothing unless they are the thirteen texts.
std::optional<Assessment> assessmentOf(const std::vector<host::XDataItem>& items);
std::vector<host::XDataItem> itemsOf(const Assessment& assessment);

// Whether the text is one of the category's levels.
bool isLevel(const Category& category, const std::string& text);

// 1.11 * (a1 + a2 + a3 + 2 (a4 + ... + a8) + a9 + a10) + a11 + a12, truncated toward zero.
int indexValue(const Assessment& assessment);

// The range of index values widened to steps of 5.
std::pair<int, int> widenedRange(int smallest, int largest);

} // namespace tessaran::rfri
