#pragma once

#include "menubar/Options.h"

#include <array>
#include <cstdint>
#include <string_view>

namespace pelistra::menubar {

struct Color {
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    bool operator==(const Color&) const = default;
};

// What the bar is drawn with.
struct Palette {
    // The background's upper and lower end.
    Color top;
    Color bottom;
    // The line under the bar.
    Color hairline;
    Color text;
    Color quietText;
    // The plate under an item that is being dragged, and its shadow.
    Color plate;
    Color shadow;
    // What monochrome icons use for their meanings.
    Color error;
    Color warning;
    Color success;

    bool operator==(const Palette&) const = default;
};

[[nodiscard]] const Palette& lightPalette();
[[nodiscard]] const Palette& darkPalette();

// The palette for the option, given the name of the desktop's theme (empty when unknown).
[[nodiscard]] const Palette& paletteFor(ThemeChoice choice, std::string_view desktopTheme);

// The property _NET_SYSTEM_TRAY_COLORS: foreground, error, warning and success, red, green and blue
// each, 0 to 65535.
[[nodiscard]] std::array<std::uint32_t, 12> trayColors(const Palette& palette);

} // namespace pelistra::menubar
