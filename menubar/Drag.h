#pragma once

#include "menubar/Layout.h"

#include <cstddef>
#include <optional>
#include <span>

namespace pelistra::menubar {

// The arithmetic of dragging an item along the bar, in device pixels from the bar's left edge.

// Where the dragged item would stand: an index among the others (0: left of all of them) and the x
// that the layout gives it there.
struct DropPlace {
    std::size_t index = 0;
    int x = 0;

    bool operator==(const DropPlace&) const = default;
};

// The place nearest to `wantedX` for an item of `width` among `others` (their widths, left to
// right).
[[nodiscard]] DropPlace nearestPlace(std::span<const int> others, int width, int wantedX,
                                     int barWidth, std::optional<Gap> housing);

// Keeps a dragged item within the bar; one that is wider than the bar keeps covering it.
[[nodiscard]] int boundedDragX(int wantedX, int width, int barWidth);

} // namespace pelistra::menubar
