#pragma once

#include <cstdint>
#include <variant>
#include <vector>

namespace pelistra::ui {

// Colours by meaning. The front end resolves them for the desktop's current look, light or dark;
// White is white in both.
enum class Role : std::uint8_t { Primary, Secondary, White, Red, Green, Accent };

// One sRGB colour, opaque.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    bool operator==(const Rgb&) const = default;
};

// A colour of the project's own, for both looks.
struct Tone {
    Rgb light;
    Rgb dark;

    bool operator==(const Tone&) const = default;
};

struct Color {
    std::variant<Role, Tone> base = Role::Primary;
    // 0 is invisible, 1 is opaque; multiplied with whatever opacity the role's colour has itself.
    double opacity = 1;

    bool operator==(const Color&) const = default;
};

// A place in the area to be painted: (0, 0) is its top leading corner, (1, 1) the bottom trailing
// one.
struct UnitPoint {
    double x = 0;
    double y = 0;

    bool operator==(const UnitPoint&) const = default;
};

// Colours at even distances along the line from start to end, continued beyond both.
struct LinearGradient {
    std::vector<Color> colors;
    UnitPoint start = {};
    UnitPoint end = {.x = 1, .y = 1};

    bool operator==(const LinearGradient&) const = default;
};

// A translucent layer through which what lies behind the window shines blurred; where that cannot
// be had, an opaque surface of the look's own panel colour.
enum class Material : std::uint8_t { UltraThin };

using Paint = std::variant<Color, LinearGradient, Material>;

} // namespace pelistra::ui
