#pragma once

#include <optional>
#include <string_view>

#include <QColor>
#include <QPainterPath>

class QPainter;

namespace pelistra::desktop {

// The size of text, in points, that symbols are drawn to stand beside.
inline constexpr double symbolTextSize = 13;

// A system symbol: a shape drawn in one stroke style, so that all of them look as if one hand had
// made them. Coordinates are points, y downwards, within the given size.
struct Symbol {
    double width = 0;
    double height = 0;
    // Stroked with strokeWidth, round caps and round joins.
    QPainterPath strokes;
    double strokeWidth = 0;
    // Filled; what is covered twice stays empty.
    QPainterPath filled;
};

// The symbol of that name, or nothing when there is none.
[[nodiscard]] std::optional<Symbol> symbolNamed(std::string_view name);

// Draws the symbol at the painter's origin in one colour, its strokes that much wider.
void draw(const Symbol& symbol, QPainter& painter, const QColor& color, double strokeFactor = 1);

} // namespace pelistra::desktop
