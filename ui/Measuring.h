#pragma once

#include "ui/Arrangement.h"

namespace pelistra::ui {

// What all boxes of an arrangement measure with.
struct Measuring {
    const Measures& measures;
    double scale;

    // A place on whole device pixels.
    [[nodiscard]] double snapped(double points) const;
    [[nodiscard]] Area snapped(const Area& area) const;
    // What a front end answered: finite, not negative, on whole device pixels that hold it all.
    [[nodiscard]] Size whole(const Size& size) const;
};

// A length that can be reckoned with: what is no number is none, what is endless is far beyond any
// screen.
[[nodiscard]] double reckonable(double length);

// The same on both sides, that long or high.
[[nodiscard]] double across(const Edges& edges);
[[nodiscard]] double down(const Edges& edges);
[[nodiscard]] Area within(const Area& area, const Edges& edges);

} // namespace pelistra::ui
