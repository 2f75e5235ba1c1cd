#pragma once

namespace pelistra::x11 {

// A rectangle in device pixels, y downwards, relative to the root window unless its holder says
// otherwise.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    [[nodiscard]] int right() const { return x + width; }
    [[nodiscard]] int bottom() const { return y + height; }

    bool operator==(const PixelRect&) const = default;
};

} // namespace pelistra::x11
