#pragma once

#include "ui/Color.h"

// The one palette and the one spacing scale of the project, for what no desktop prescribes.
namespace pelistra::ui {

// Points.
namespace spacing {
inline constexpr double hairline = 4;
inline constexpr double small = 8;
inline constexpr double medium = 12;
inline constexpr double large = 20;
inline constexpr double section = 28;
inline constexpr double margin = 40;
} // namespace spacing

namespace palette {

// Behind the onboarding, a calm cool grey.
inline constexpr Tone window = {.light = {.red = 0xF6, .green = 0xF7, .blue = 0xFB},
                                .dark = {.red = 0x1B, .green = 0x1C, .blue = 0x22}};
// The wash over it, from the top leading corner to the bottom trailing one.
inline constexpr Tone washStart = {.light = {.red = 0x7F, .green = 0xA6, .blue = 0xFF},
                                   .dark = {.red = 0x3D, .green = 0x5B, .blue = 0xD9}};
inline constexpr Tone washEnd = {.light = {.red = 0xC9, .green = 0xA7, .blue = 0xFF},
                                 .dark = {.red = 0x6B, .green = 0x4B, .blue = 0xC4}};
inline constexpr double washOpacity = 0.18;

// The logo, light enough in the light look and deep enough in the dark one for primary-coloured
// icons to stand on it.
inline constexpr Tone logoStart = {.light = {.red = 0x9C, .green = 0xC2, .blue = 0xFF},
                                   .dark = {.red = 0x3F, .green = 0x6B, .blue = 0xD6}};
inline constexpr Tone logoEnd = {.light = {.red = 0xB3, .green = 0xA0, .blue = 0xFF},
                                 .dark = {.red = 0x63, .green = 0x48, .blue = 0xC8}};

// Cards: the rows of a form, the menu bar of the illustration.
inline constexpr Tone card = {.light = {.red = 0xFF, .green = 0xFF, .blue = 0xFF},
                              .dark = {.red = 0x2B, .green = 0x2C, .blue = 0x34}};
// The second row where no translucent material can be had.
inline constexpr Tone panel = {.light = {.red = 0xF2, .green = 0xF3, .blue = 0xF7},
                               .dark = {.red = 0x26, .green = 0x27, .blue = 0x2E}};

// The roles on a desktop that has no colours of its own for them; every text role keeps a contrast
// of at least 4.5 to 1 on window, card and panel.
[[nodiscard]] constexpr Tone standardTone(Role role) {
    switch (role) {
    case Role::Secondary:
        return {.light = {.red = 0x62, .green = 0x64, .blue = 0x6E},
                .dark = {.red = 0xA6, .green = 0xA8, .blue = 0xB3}};
    case Role::White:
        return {.light = {.red = 0xFF, .green = 0xFF, .blue = 0xFF},
                .dark = {.red = 0xFF, .green = 0xFF, .blue = 0xFF}};
    case Role::Red:
        return {.light = {.red = 0xC6, .green = 0x1A, .blue = 0x2B},
                .dark = {.red = 0xFF, .green = 0x6F, .blue = 0x6A}};
    case Role::Green:
        return {.light = {.red = 0x1B, .green = 0x7A, .blue = 0x3A},
                .dark = {.red = 0x46, .green = 0xD0, .blue = 0x74}};
    case Role::Accent:
        return {.light = {.red = 0x2F, .green = 0x66, .blue = 0xE8},
                .dark = {.red = 0x5C, .green = 0x8C, .blue = 0xFF}};
    case Role::Primary:
        break;
    }
    return {.light = {.red = 0x1C, .green = 0x1D, .blue = 0x22},
            .dark = {.red = 0xF3, .green = 0xF4, .blue = 0xF8}};
}

} // namespace palette
} // namespace pelistra::ui
