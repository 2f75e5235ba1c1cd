#pragma once

#include <optional>
#include <string_view>
#include <variant>
#include <vector>

namespace pelistra::linux {

// The size of text, in points, that symbols are drawn to stand beside.
inline constexpr double symbolTextSize = 13;

// The steps of an outline, in points, y downwards.
struct MoveTo {
    double x = 0;
    double y = 0;
};
struct LineTo {
    double x = 0;
    double y = 0;
};
// A cubic curve with two control points.
struct CurveTo {
    double x1 = 0;
    double y1 = 0;
    double x2 = 0;
    double y2 = 0;
    double x = 0;
    double y = 0;
};
struct ClosePath {};
using Outline = std::vector<std::variant<MoveTo, LineTo, CurveTo, ClosePath>>;

// A system symbol: a shape drawn in one stroke style, so that all of them look as if one hand had
// made them. Everything lies within the given size.
struct Symbol {
    double width = 0;
    double height = 0;
    // Stroked with strokeWidth, round caps and round joins.
    Outline strokes;
    double strokeWidth = 0;
    // Filled; what is covered twice stays empty.
    Outline filled;
    // Stroked in the same way, and taken away from what is filled.
    Outline cut;
    double cutWidth = 0;
};

// The symbol of that name, or nothing when there is none.
[[nodiscard]] std::optional<Symbol> symbolNamed(std::string_view name);

// Hands every step to a pen that takes each kind of them.
template <class Pen>
void trace(const Outline& outline, Pen& pen) {
    for (const auto& step : outline) {
        std::visit(pen, step);
    }
}

} // namespace pelistra::linux
