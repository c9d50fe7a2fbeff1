#pragma once

// The host's 256-colour table as red, green and blue.

#include <array>
#include <cstdint>

namespace tessaran::drawing {

struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(Rgb, Rgb) = default;
};

// Index 1 to 255; others are taken for the foreground colour. The foreground colour 7 is white as
// it stands in the table; on a light background it is shown black (shownColour).
Rgb tableColour(int index);

// Whether white or black is better seen on it.
bool isLight(Rgb background);

Rgb shownColour(int index, Rgb background);

} // namespace tessaran::drawing
