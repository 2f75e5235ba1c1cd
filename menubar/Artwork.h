#pragma once

#include "menubar/Metrics.h"
#include "menubar/Theme.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace pelistra::menubar {

// The pictures that the bar draws itself.

// 32-bit pixels with premultiplied alpha, row by row from the top left, in device pixels.
struct ArgbImage {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> pixels;

    bool operator==(const ArgbImage&) const = default;
};

// One column of the bar's background with the line below it; repeats to any width.
[[nodiscard]] ArgbImage backgroundColumn(const Palette& palette, const Metrics& metrics);

// The camera housing, `width` device pixels wide, as high as the bar.
[[nodiscard]] ArgbImage housingImage(int width, const Metrics& metrics);

struct BarTitle {
    std::string application;
    std::string title;

    bool operator==(const BarTitle&) const = default;
};

// The active application's name and title, shortened with an ellipsis to at most `width` device
// pixels; an empty image when there is nothing to say or no room for it.
[[nodiscard]] ArgbImage titleImage(const BarTitle& title, int width, const Palette& palette,
                                   const Metrics& metrics);

// The plate under an item that is being dragged, for an item of `itemWidth` device pixels; the
// picture is `plateMargin` wider on both sides, for its shadow.
[[nodiscard]] ArgbImage plateImage(int itemWidth, const Palette& palette, const Metrics& metrics);
[[nodiscard]] int plateMargin(const Metrics& metrics);

} // namespace pelistra::menubar
