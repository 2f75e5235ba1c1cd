#pragma once

#include <variant>

namespace pelistra::ui {

// The largest circle in the middle of the area.
struct Circle {
    bool operator==(const Circle&) const = default;
};

// The whole area, its shorter sides rounded to half circles.
struct Capsule {
    bool operator==(const Capsule&) const = default;
};

// The whole area.
struct Rectangle {
    bool operator==(const Rectangle&) const = default;
};

// The whole area with rounded corners.
struct RoundedRectangle {
    double cornerRadius = 0;
    // Corners that run into the sides with continuous curvature instead of as arcs of a circle.
    bool continuous = true;

    bool operator==(const RoundedRectangle&) const = default;
};

using Outline = std::variant<Circle, Capsule, Rectangle, RoundedRectangle>;

} // namespace pelistra::ui
