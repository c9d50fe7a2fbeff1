#pragma once

// The twelve categories of the Roof Fall Risk Index: what is observed, its levels, and how defects
// of it are drawn and gridded. Everything that differs between the categories stands in one table.

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace tessaran::rfri {

inline constexpr std::size_t kCategories = 12;

// A level of an assessment: its text with the level's value in brackets.
struct AssessmentLevels {
    std::vector<const char*> texts;
    std::size_t byDefault;
};

// A level of a drawn defect.
struct DefectLevel {
    int value;       // held by the defect polylines as their width
    double distance; // influence distance, drawing units
};

struct Category {
    const char* description; // long name: title of page and grid, label of the assessment's list
    const char* listed;      // how lists of assessments name it
    const char* singular;    // of one defect, in the texts of drawing and gridding
    bool isArea;             // whether its defects are drawn as areas
    const char* drawnLevel;  // what the level is called while drawing
    const char* saved;       // of its values, when they are saved
    const char* defaultMade; // when a default file is made
    const char* layer;
    int colour;
    const char* file;
    AssessmentLevels assessment;
    std::vector<DefectLevel> levels; // ascending
    int levelByDefault;              // index
    double valueByDefault;           // of grids without observations
    double weight;                   // of a level in the index, before kScale
    bool scaled;                     // whether kScale applies: not to the two adjustments
};

// The index is kScale times the weighted levels of the first ten categories, so that all at 5 give
// 83.25, plus the two adjustments.
inline constexpr double kScale = 1.11;

std::span<const Category, kCategories> categories();

// "(3) Unknown" gives 3, "(-5) No Clustering" -5: the whole number behind the first character.
int levelValue(std::string_view text);

// --- per drawing
// ----------------------------------------------------------------------------------

// A category's settings in one open drawing.
struct CategoryRecord {
    int level = 0; // index of the selected level
    std::string layer;
    int colour = 0;
    std::string file; // relative to the drawing's folder
    std::string description;
    std::vector<double> distances; // influence distances, one a level, drawing units
    bool graduated = false;        // whether values fall off linearly with the distance

    friend bool operator==(const CategoryRecord&, const CategoryRecord&) = default;
};

CategoryRecord defaultRecord(const Category& category);

// The twelve records of a drawing, made with their defaults.
struct CategoryRecords {
    std::array<CategoryRecord, kCategories> records;

    CategoryRecords();
};

} // namespace tessaran::rfri
