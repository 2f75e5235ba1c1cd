#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace pelistra::linux {

// Device pixels with premultiplied alpha (0xAARRGGBB), row by row from the top left.
struct Pixels {
    int width = 0;
    int height = 0;
    std::vector<std::uint32_t> values;

    [[nodiscard]] bool isEmpty() const { return values.empty(); }
    // The pixel at that place, which must be inside.
    [[nodiscard]] std::uint32_t at(int x, int y) const {
        return values.at(static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                         static_cast<std::size_t>(x));
    }

    bool operator==(const Pixels&) const = default;
};

} // namespace pelistra::linux
