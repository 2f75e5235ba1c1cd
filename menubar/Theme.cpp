#include "menubar/Theme.h"

#include "platform/x11/XSettings.h"

#include <cmath>

namespace pelistra::menubar {

namespace {

constexpr Color rgb(unsigned value, double alpha = 1) {
    constexpr double most = 255;
    return {.red = ((value >> 16U) & 0xFFU) / most,
            .green = ((value >> 8U) & 0xFFU) / most,
            .blue = (value & 0xFFU) / most,
            .alpha = alpha};
}

constexpr Palette light{
    .top = rgb(0xF8F8F9),
    .bottom = rgb(0xEEEEF0),
    .hairline = rgb(0xC8C8CC),
    .text = rgb(0x1D1D1F),
    .quietText = rgb(0x5C5C63),
    .plate = rgb(0xFFFFFF),
    .shadow = rgb(0x000000, 0.22),
    .error = rgb(0xC4281C),
    .warning = rgb(0xB25000),
    .success = rgb(0x1E7D32),
};

constexpr Palette dark{
    .top = rgb(0x2E2E31),
    .bottom = rgb(0x262628),
    .hairline = rgb(0x0E0E10),
    .text = rgb(0xF2F2F4),
    .quietText = rgb(0xA8A8B0),
    .plate = rgb(0x48484D),
    .shadow = rgb(0x000000, 0.5),
    .error = rgb(0xFF6961),
    .warning = rgb(0xFFB340),
    .success = rgb(0x63D471),
};

} // namespace

const Palette& lightPalette() {
    return light;
}

const Palette& darkPalette() {
    return dark;
}

const Palette& paletteFor(ThemeChoice choice, std::string_view desktopTheme) {
    switch (choice) {
    case ThemeChoice::Light:
        return light;
    case ThemeChoice::Dark:
        return dark;
    case ThemeChoice::Auto:
        break;
    }
    return x11::isDarkThemeName(desktopTheme) ? dark : light;
}

std::array<std::uint32_t, 12> trayColors(const Palette& palette) {
    std::array<std::uint32_t, 12> words{};
    std::size_t index = 0;
    for (const Color& color : {palette.text, palette.error, palette.warning, palette.success}) {
        for (const double part : {color.red, color.green, color.blue}) {
            constexpr double most = 65535;
            words[index++] = static_cast<std::uint32_t>(std::lround(part * most));
        }
    }
    return words;
}

} // namespace pelistra::menubar
