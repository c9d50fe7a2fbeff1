#pragma once

// Colours for values: bands between ascending break values, each with a colour index of the host's
// 256-colour table. A ColourRamp is what the user sees and edits (breaks, colours, labels); the
// colour table of a grid is made from it.

#include <array>
#include <cstddef>
#include <string>
#include <vector>

namespace tessaran::grid {

// From blue through magenta and red to yellow.
inline constexpr std::array<int, 10> kRainbow{174, 170, 190, 200, 210, 230, 10, 30, 40, 50};

// The host's greys, from dark to light.
inline constexpr std::array<int, 6> kGreys{250, 251, 252, 253, 254, 255};

inline constexpr int kDefaultBands = 10;
inline constexpr int kMostBands = 1000;

enum class Palette { rainbow, greys };

// An entry of a colour table: the band that begins at `value` has this colour.
struct ColourBreak {
    double value = 0.0;
    int colour = 0;

    friend bool operator==(const ColourBreak&, const ColourBreak&) = default;
};

class ColourRamp {
  public:
    ColourRamp() = default;

    // A ramp of about `bands` equal bands between two values in either order. Values less than
    // 1e-10 apart (or not finite) give 0 to 10; fewer than one band gives two. A step above 10 is
    // rounded down to a whole number, so that the last band may take what lies above it.
    static ColourRamp between(double a, double b, int bands, Palette palette = Palette::rainbow);
    // From breaks that are there already, ascending.
    static ColourRamp fromBreaks(std::vector<double> breaks, Palette palette = Palette::rainbow);

    double lowest() const { return lowest_; }
    double highest() const { return highest_; }
    double step() const { return step_; }
    Palette palette() const { return palette_; }

    const std::vector<double>& breaks() const { return breaks_; } // ascending
    int bands() const { return breaks_.empty() ? 0 : static_cast<int>(breaks_.size()) - 1; }
    const std::vector<int>& colours() const { return colours_; } // one a band, from the lowest
    const std::vector<std::string>& labels() const {
        return labels_;
    } // one a band, from the HIGHEST band down

    // Takes one break out and colours and labels the bands anew. False, and nothing done, beyond
    // the list or when only one band would not be left.
    bool removeBreak(std::size_t index);
    void setPalette(Palette palette);

    // (break value, colour of band i mod bands) for every break.
    std::vector<ColourBreak> table() const;

  private:
    void colourAndLabel();

    double lowest_ = 0.0;
    double highest_ = 0.0;
    double step_ = 0.0;
    Palette palette_ = Palette::rainbow;
    std::vector<double> breaks_;
    std::vector<int> colours_;
    std::vector<std::string> labels_;
};

// The colours of that many bands from the lowest: fewer bands than colours are spread over the
// whole palette, more run through it again and again. Greys never repeat: they go from dark (low)
// to light (high).
std::vector<int> bandColours(int bands, Palette palette);

// "%g - %g" of a band's lower and upper break.
std::string bandLabel(double lower, double upper);

// --- colour tables ------------------------------------------------------------------------------
// Of an ascending table of n entries; there are n - 1 bands.

// Band of a value: below the first break the first, above the last the last; -1 without a table.
int bandOfValue(const std::vector<ColourBreak>& table, double value);
// Colour of the band a value falls into; 0 without a table.
int colourOfValue(const std::vector<ColourBreak>& table, double value);

} // namespace tessaran::grid
