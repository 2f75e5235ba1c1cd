#include "ui/Measuring.h"

#include <algorithm>
#include <cmath>

namespace pelistra::ui {

namespace {

// Further than any screen reaches, in points.
constexpr double furthest = 1e9;

} // namespace

double reckonable(double length) {
    return std::isnan(length) ? 0 : std::clamp(length, -furthest, furthest);
}

double across(const Edges& edges) {
    return reckonable(edges.leading) + reckonable(edges.trailing);
}

double down(const Edges& edges) {
    return reckonable(edges.top) + reckonable(edges.bottom);
}

double Measuring::snapped(double points) const {
    return std::floor((points * scale) + 0.5) / scale;
}

Area Measuring::snapped(const Area& area) const {
    const double left = snapped(area.minX());
    const double top = snapped(area.minY());
    return makeRect<ContentSpace>(left, top, snapped(area.maxX()) - left,
                                  snapped(area.maxY()) - top);
}

Size Measuring::whole(const Size& size) const {
    const auto up = [this](double length) {
        return std::ceil(std::max(0.0, reckonable(length)) * scale) / scale;
    };
    return {.width = up(size.width), .height = up(size.height)};
}

Area within(const Area& area, const Edges& edges) {
    return makeRect<ContentSpace>(
        area.minX() + reckonable(edges.leading), area.minY() + reckonable(edges.top),
        std::max(0.0, area.width() - across(edges)), std::max(0.0, area.height() - down(edges)));
}

} // namespace pelistra::ui
