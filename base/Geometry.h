#pragma once

#include <algorithm>
#include <cmath>

namespace pelistra {

// Geometry in points (64-bit floats). Two coordinate spaces meet in a menu bar and never mix:
//
//  - GlobalSpace: origin at the top-left of the main display, y grows downwards. The window server
//    reports window frames and takes event locations in it.
//  - ScreenSpace: origin at the bottom-left of the primary screen, y grows upwards. Screens,
//    windows and panels are placed in it.
//
// x means the same in both, so a horizontal coordinate (a plain double) may be compared across.
struct GlobalSpace {};
struct ScreenSpace {};

struct Size {
    double width = 0;
    double height = 0;

    bool operator==(const Size&) const = default;
};

template <class Space>
struct BasicPoint {
    double x = 0;
    double y = 0;

    bool operator==(const BasicPoint&) const = default;
};

// A rectangle may be written with a negative width or height; every accessor below reads it as the
// rectangle that covers the same area with positive ones.
template <class Space>
struct BasicRect {
    BasicPoint<Space> origin;
    Size size;

    [[nodiscard]] double minX() const { return std::min(origin.x, origin.x + size.width); }
    [[nodiscard]] double maxX() const { return std::max(origin.x, origin.x + size.width); }
    [[nodiscard]] double minY() const { return std::min(origin.y, origin.y + size.height); }
    [[nodiscard]] double maxY() const { return std::max(origin.y, origin.y + size.height); }
    [[nodiscard]] double midX() const { return origin.x + size.width / 2; }
    [[nodiscard]] double midY() const { return origin.y + size.height / 2; }
    [[nodiscard]] double width() const { return std::abs(size.width); }
    [[nodiscard]] double height() const { return std::abs(size.height); }

    // The left and top (or bottom) edges belong to the rectangle, the opposite ones do not.
    [[nodiscard]] bool contains(const BasicPoint<Space>& point) const {
        return point.x >= minX() && point.x < maxX() && point.y >= minY() && point.y < maxY();
    }

    bool operator==(const BasicRect&) const = default;
};

template <class Space>
BasicRect<Space> makeRect(double x, double y, double width, double height) {
    return {.origin = {.x = x, .y = y}, .size = {.width = width, .height = height}};
}

using Point = BasicPoint<GlobalSpace>;
using Rect = BasicRect<GlobalSpace>;
using ScreenPoint = BasicPoint<ScreenSpace>;
using ScreenRect = BasicRect<ScreenSpace>;

} // namespace pelistra
