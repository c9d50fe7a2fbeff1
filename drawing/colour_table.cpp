#include "drawing/colour_table.h"

#include "host/entity.h"

namespace tessaran::drawing {
namespace {

constexpr std::array<Rgb, 10> kNamed = {{{0, 0, 0},
                                         {255, 0, 0},
                                         {255, 255, 0},
                                         {0, 255, 0},
                                         {0, 255, 255},
                                         {0, 0, 255},
                                         {255, 0, 255},
                                         {255, 255, 255},
                                         {128, 128, 128},
                                         {192, 192, 192}}};

// Brightness of the five pairs of shades that every hue has.
constexpr std::array<double, 5> kBrightness = {1.0, 0.65, 0.5, 0.3, 0.15};

constexpr int kFirstHue = 10;   // 24 hues of 10 entries each, 15 degrees apart
constexpr int kFirstGrey = 250; // six greys, 51 to 255 in equal steps

// Share of a primary colour at a hue, both going around the circle in sixths: 1 within one sixth of
// it, falling to 0 at two sixths.
double share(double hueSixths, double primarySixths) {
    double away = hueSixths - primarySixths;
    away = away < 0.0 ? -away : away;
    away = away > 3.0 ? 6.0 - away : away;
    return away <= 1.0 ? 1.0 : away >= 2.0 ? 0.0 : 2.0 - away;
}

std::uint8_t channel(double full, double brightness, bool pale) {
    const double value = 255.0 * brightness * (pale ? 0.5 + 0.5 * full : full);
    return static_cast<std::uint8_t>(value);
}

Rgb hueColour(int index) {
    const int step = (index - kFirstHue) / 10;
    const double hue = step * 15.0 / 60.0;
    const double brightness = kBrightness[static_cast<std::size_t>(index % 10 / 2)];
    const bool pale = index % 2 == 1;
    return {channel(share(hue, 0.0), brightness, pale), channel(share(hue, 2.0), brightness, pale),
            channel(share(hue, 4.0), brightness, pale)};
}

} // namespace

Rgb tableColour(int index) {
    if (index < 1 || index > 255)
        index = host::colour::kForeground;
    if (index < kFirstHue)
        return kNamed[static_cast<std::size_t>(index)];
    if (index < kFirstGrey)
        return hueColour(index);
    const auto grey = static_cast<std::uint8_t>(51.0 + (index - kFirstGrey) * 40.8);
    return {grey, grey, grey};
}

bool isLight(Rgb background) {
    // Luma weights of ITU-R BT.601.
    return 0.299 * background.red + 0.587 * background.green + 0.114 * background.blue > 127.0;
}

Rgb shownColour(int index, Rgb background) {
    const bool foreground = index < 1 || index > 255 || index == host::colour::kForeground;
    return foreground && isLight(background) ? Rgb{0, 0, 0} : tableColour(index);
}

} // namespace tessaran::drawing
