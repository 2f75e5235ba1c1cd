#pragma once

#include <optional>
#include <string_view>

#include <QPainterPath>

namespace pelistra::desktop {

// A system symbol: a shape drawn in one stroke style, so that all of them look as if one hand had
// made them. Coordinates are points, y downwards, within the given size.
struct Symbol {
    double width = 0;
    double height = 0;
    // Stroked with strokeWidth, round caps and round joins.
    QPainterPath strokes;
    double strokeWidth = 0;
};

// The symbol of that name, or nothing when there is none.
[[nodiscard]] std::optional<Symbol> symbolNamed(std::string_view name);

} // namespace pelistra::desktop
