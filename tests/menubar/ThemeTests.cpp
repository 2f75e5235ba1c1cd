#include "menubar/Theme.h"

#include <gtest/gtest.h>

namespace pelistra::testing {
namespace {

using menubar::darkPalette;
using menubar::lightPalette;
using menubar::paletteFor;
using menubar::ThemeChoice;
using menubar::trayColors;

TEST(ThemeTests, AutoFollowsTheDesktopAndTheOthersDoNot) {
    EXPECT_EQ(paletteFor(ThemeChoice::Auto, "Adwaita-dark"), darkPalette());
    EXPECT_EQ(paletteFor(ThemeChoice::Auto, "Adwaita"), lightPalette());
    EXPECT_EQ(paletteFor(ThemeChoice::Auto, ""), lightPalette());
    EXPECT_EQ(paletteFor(ThemeChoice::Light, "Adwaita-dark"), lightPalette());
    EXPECT_EQ(paletteFor(ThemeChoice::Dark, "Adwaita"), darkPalette());
}

TEST(ThemeTests, TrayColoursBeginWithTheForeground) {
    menubar::Palette palette = lightPalette();
    palette.text = {.red = 1, .green = 0, .blue = 0.5};
    palette.success = {.red = 0, .green = 1, .blue = 0};
    const auto colors = trayColors(palette);
    EXPECT_EQ(colors[0], 65535U);
    EXPECT_EQ(colors[1], 0U);
    EXPECT_EQ(colors[2], 32768U);
    EXPECT_EQ(colors[10], 65535U);
}

double luminance(const menubar::Color& color) {
    return 0.2126 * color.red + 0.7152 * color.green + 0.0722 * color.blue;
}

TEST(ThemeTests, TextStandsOutFromTheBackground) {
    EXPECT_GT(luminance(lightPalette().bottom) - luminance(lightPalette().quietText), 0.5);
    EXPECT_GT(luminance(darkPalette().quietText) - luminance(darkPalette().top), 0.4);
    EXPECT_LT(luminance(lightPalette().text), luminance(lightPalette().quietText));
    EXPECT_GT(luminance(darkPalette().text), luminance(darkPalette().quietText));
}

} // namespace
} // namespace pelistra::testing
