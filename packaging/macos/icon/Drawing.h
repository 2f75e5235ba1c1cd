#pragma once

#include <cstdint>
#include <vector>

namespace pelistra::icon {

// Pixels row by row from the top, four bytes each: red, green, blue, alpha (not premultiplied).
struct Picture {
    int side = 0;
    std::vector<std::uint8_t> pixels;
};

// The application's icon, side x side pixels: a menu bar with its divider, and the second row below
// it. What would be smaller than a pixel is left out of small sizes.
[[nodiscard]] Picture drawIcon(int side);

} // namespace pelistra::icon
