#pragma once

#include "tests/ui/InventedMeasures.h"
#include "ui/Arrangement.h"

#include <ostream>
#include <vector>

#include <gmock/gmock.h>

namespace pelistra {

// For messages of tests.
inline void PrintTo(const ui::Area& area, std::ostream* out) {
    *out << area.minX() << "," << area.minY() << " " << area.width() << "x" << area.height();
}

} // namespace pelistra

namespace pelistra::testing {

inline ui::Area area(double x, double y, double width, double height) {
    return makeRect<ui::ContentSpace>(x, y, width, height);
}

// A shape of that size.
inline ui::View box(double width, double height) {
    return ui::View(ui::FilledShape{.outline = ui::Rectangle(), .fill = ui::Color{}})
        .frame({.width = width, .height = height});
}

inline std::vector<ui::Area> framesOf(const std::vector<ui::Placed>& elements) {
    std::vector<ui::Area> frames;
    for (const auto& each : elements) {
        frames.push_back(each.frame);
    }
    return frames;
}

} // namespace pelistra::testing
