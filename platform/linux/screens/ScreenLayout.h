#pragma once

#include "platform/Screens.h"
#include "platform/linux/screens/Coordinates.h"
#include "platform/x11/Monitors.h"

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

namespace pelistra::linux {

using x11::Monitor;

// The numbers of _NET_WM_STRUT_PARTIAL; what is reserved is measured from the root's edges,
// whatever the monitors are.
using Strut = std::array<std::uint32_t, 12>;

// What the screens are computed from, all of it in root pixels.
struct ScreenFacts {
    RootRect root;
    std::vector<Monitor> monitors;
    double scale = 1;
    std::optional<Strut> barStrut;
    // _NET_WORKAREA of the current desktop. It is one rectangle for the whole root, so it says
    // something about a monitor only where there is a single one.
    std::optional<RootRect> workArea;
    // Beside the camera housing, left and right.
    std::optional<std::array<RootRect, 2>> auxiliaryAreas;
};

// The screens in points, the primary one first, the others in RandR's order. Monitors without area
// are left out.
[[nodiscard]] std::vector<Screen> screensFrom(const ScreenFacts& facts);

// The spaces that the screens are placed in. Without any monitor, the root takes its place.
[[nodiscard]] Coordinates coordinatesFrom(const ScreenFacts& facts);

// Device pixels per point by the user's resource database (Xft.dpi; 96 dpi = 1); empty when it says
// nothing or no sensible density (24 to 960 dpi).
[[nodiscard]] std::optional<double> resourceScaleIn(std::string_view resources);

// The rectangle that four words of a property describe: x, y, width and height in root pixels.
// Empty for another number of words, and for numbers that no place on an X screen has.
[[nodiscard]] std::optional<RootRect> rootRectIn(std::span<const std::uint32_t> words);

// The scale in _PELISTRA_MENUBAR_SCALE (hundredths); empty when it is outside 0.5 to 8.
[[nodiscard]] std::optional<double> scaleIn(std::span<const std::uint32_t> words);

} // namespace pelistra::linux
