#pragma once

#include <optional>
#include <span>
#include <vector>

namespace pelistra::menubar {

// Where the items of the bar stand: pure arithmetic in device pixels, x from the bar's left edge.

// A stretch [begin, end) of the bar that no item may overlap.
struct Gap {
    int begin = 0;
    int end = 0;

    bool operator==(const Gap&) const = default;
};

// The x of every item, in the order of `widths` (left to right). Items are set one beside the other
// from the right edge. An item that would overlap `housing` stands wholly left of it, and
// everything further left follows. What does not fit has a negative x; an item that would be cut in
// two by the bar's left edge stands wholly left of it, unless it is wider than the whole bar.
[[nodiscard]] std::vector<int> layOut(std::span<const int> widths, int barWidth,
                                      std::optional<Gap> housing);

} // namespace pelistra::menubar
