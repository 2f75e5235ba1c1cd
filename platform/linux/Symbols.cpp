#include "platform/linux/Symbols.h"

#include <algorithm>
#include <array>

#include <QPointF>

namespace pelistra::desktop {

namespace {

// The weight of a text symbol beside 13-point text.
constexpr double weight = 1.75;

// A symbol that is one line through some points.
struct PolylineSymbol {
    std::string_view name;
    double width;
    double height;
    std::array<std::array<double, 2>, 3> points;
};

// The arms of a chevron meet at a right angle in the narrow direction's middle; the ends keep half
// a stroke and a little air to the edge.
constexpr std::array symbols{
    PolylineSymbol{.name = "chevron.right",
                   .width = 8,
                   .height = 13,
                   .points = {{{1.5, 1.5}, {6.5, 6.5}, {1.5, 11.5}}}},
    PolylineSymbol{.name = "chevron.up",
                   .width = 13,
                   .height = 8,
                   .points = {{{1.5, 6.5}, {6.5, 1.5}, {11.5, 6.5}}}},
    PolylineSymbol{.name = "chevron.down",
                   .width = 13,
                   .height = 8,
                   .points = {{{1.5, 1.5}, {6.5, 6.5}, {11.5, 1.5}}}},
};

} // namespace

std::optional<Symbol> symbolNamed(std::string_view name) {
    const auto* const found = std::ranges::find(symbols, name, &PolylineSymbol::name);
    if (found == symbols.end()) {
        return std::nullopt;
    }
    Symbol symbol{
        .width = found->width, .height = found->height, .strokes = {}, .strokeWidth = weight};
    symbol.strokes.moveTo(found->points.front()[0], found->points.front()[1]);
    for (const auto& [x, y] : found->points) {
        symbol.strokes.lineTo(x, y);
    }
    return symbol;
}

} // namespace pelistra::desktop
