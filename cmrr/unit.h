#pragma once

// What is known of the roof: up to five rock units, numbered upward from the immediate roof, and
// the conditions that go with them. Lengths in ft unless said, strengths in psi. A number that was
// not entered yet is empty.

#include <array>
#include <optional>
#include <string>

namespace tessaran::cmrr {

inline constexpr int kMostUnits = 5;
inline constexpr int kMostSets = 3;

using Number = std::optional<double>;

// One input: the same number everywhere, or a grid file with a value a cell.
struct Input {
    Number constant{};
    std::string file{};
    bool fromFile = false;

    friend bool operator==(const Input&, const Input&) = default;
};

enum class DataType { observation, core };
enum class Contact { strong, weak };

// A set of discontinuities, by its indices.
struct DiscontinuitySet {
    Number cohesion{};    // 1 strong to 4 slickensided
    Number roughness{};   // 1 jagged to 3 planar
    Number spacing{};     // 1 wide to 3
    Number persistence{}; // 1 short to 3

    friend bool operator==(const DiscontinuitySet&, const DiscontinuitySet&) = default;
};

struct Observation {
    Input strengthIndex{}; // 1 to 5
    int discontinuities = 0;
    Number moisture = 1.0; // sensitivity index, 1 to 4
    Contact contact = Contact::strong;
    Number noDiscontinuityIndex{}; // 1 to 3; used while there are no discontinuities
    std::array<DiscontinuitySet, kMostSets> sets{};

    friend bool operator==(const Observation&, const Observation&) = default;
};

enum class DiametralTest { is50, notAvailable };
enum class DiametralEstimate { weak, moderate, strong };
enum class Fractures { rqd, spacing, none };
enum class AxialTest { is50, ucs };

struct CoreData {
    DiametralTest diametralTest = DiametralTest::is50;
    DiametralEstimate estimate = DiametralEstimate::weak;
    Input diametralIs50{};
    Fractures fractures = Fractures::rqd;
    Input rqd{};     // percent
    Input spacing{}; // inches
    AxialTest axialTest = AxialTest::is50;
    Input axialIs50{};
    Input ucs{};
    Number moisture = 1.0; // kept with the unit; no formula uses it
    Contact contact = Contact::strong;

    friend bool operator==(const CoreData&, const CoreData&) = default;
};

// Where a unit's rating comes from.
enum class RatingSource {
    none,     // its data are not complete yet
    computed, // from the data; a number, or a grid where an input is one
    typed,
    file, // a ready grid of unit ratings
};

struct CUnit { // NOLINT(readability-identifier-naming): the name is the system's own
    DataType type = DataType::observation;
    RatingSource ratingSource = RatingSource::none;
    Number rating{}; // typed, or computed from numbers
    std::string ratingFile{};
    Input thickness{};
    Observation observation{};
    CoreData core{};

    Contact contact() const {
        return type == DataType::observation ? observation.contact : core.contact;
    }
    friend bool operator==(const CUnit&, const CUnit&) = default;
};

struct FinalData {
    Input groundWater{1.0, {}, false}; // index, 1 dry to 5 flowing
    Number surcharge = 1.0;            // 1 none to 2
    Number boltLength{};
    bool keepUnitGrids = false;

    friend bool operator==(const FinalData&, const FinalData&) = default;
};

struct RoofData {
    int units = 1; // in use, from the first
    std::array<CUnit, kMostUnits> unit{};
    FinalData final{};

    friend bool operator==(const RoofData&, const RoofData&) = default;
};

} // namespace tessaran::cmrr
