#include "ui/Palette.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>

namespace pelistra::testing {
namespace {

using namespace ui;

double linear(std::uint8_t channel) {
    const double value = channel / 255.0;
    return value <= 0.04045 ? value / 12.92 : std::pow((value + 0.055) / 1.055, 2.4);
}

double luminance(const Rgb& color) {
    return 0.2126 * linear(color.red) + 0.7152 * linear(color.green) + 0.0722 * linear(color.blue);
}

// The contrast ratio of the Web Content Accessibility Guidelines, from 1 to 21.
double contrast(const Rgb& one, const Rgb& other) {
    const auto [darker, lighter] = std::minmax({luminance(one), luminance(other)});
    return (lighter + 0.05) / (darker + 0.05);
}

double smallerContrast(const Tone& text, const Tone& ground) {
    return std::min(contrast(text.light, ground.light), contrast(text.dark, ground.dark));
}

TEST(Palette, TextRolesAreReadableOnEverySurface) {
    for (const Role role : {Role::Primary, Role::Secondary, Role::Red}) {
        for (const Tone& ground : {palette::window, palette::card, palette::panel}) {
            EXPECT_GE(smallerContrast(palette::standardTone(role), ground), 4.5)
                << static_cast<int>(role);
        }
    }
}

TEST(Palette, SymbolsStandOutFromTheirGround) {
    for (const Role role : {Role::Green, Role::Accent}) {
        for (const Tone& ground : {palette::window, palette::card}) {
            EXPECT_GE(smallerContrast(palette::standardTone(role), ground), 3)
                << static_cast<int>(role);
        }
    }
    for (const Tone& ground : {palette::logoStart, palette::logoEnd}) {
        EXPECT_GE(smallerContrast(palette::standardTone(Role::Primary), ground), 3);
    }
}

TEST(Palette, WhiteIsReadableOnTheAccentInBothLooks) {
    EXPECT_GE(
        smallerContrast(palette::standardTone(Role::White), palette::standardTone(Role::Accent)),
        3);
}

TEST(Palette, WhiteIsWhiteInBothLooks) {
    const Rgb white = {.red = 0xFF, .green = 0xFF, .blue = 0xFF};
    EXPECT_EQ(palette::standardTone(Role::White), (Tone{.light = white, .dark = white}));
}

TEST(Palette, TheSpacingScaleGrows) {
    const std::array scale = {spacing::hairline, spacing::small,   spacing::medium,
                              spacing::large,    spacing::section, spacing::margin};
    EXPECT_TRUE(std::ranges::is_sorted(scale, std::ranges::less_equal()));
}

} // namespace
} // namespace pelistra::testing
