#pragma once

#include <cstdint>
#include <variant>

namespace pelistra::ui {

// Starts fast and slows down to its end.
struct EaseOut {
    double seconds = 0;

    bool operator==(const EaseOut&) const = default;
};

// A damped spring: response is the period in seconds of the undamped spring, a damping fraction of
// 1 does not overshoot.
struct Spring {
    double response = 0;
    double dampingFraction = 1;
    double blendDuration = 0;

    bool operator==(const Spring&) const = default;
};

using Animation = std::variant<EaseOut, Spring>;

// How a view comes and goes when it enters or leaves the tree inside an animated change: from and
// to opacity 0, and from and to the given scale about its centre (1: no scaling).
struct Transition {
    double scale = 1;

    bool operator==(const Transition&) const = default;
};

} // namespace pelistra::ui
