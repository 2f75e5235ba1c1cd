#pragma once

#include "menubar/Layout.h"
#include "menubar/Metrics.h"
#include "menubar/Monitors.h"

#include <optional>

namespace pelistra::menubar {

// The room that the bar has for its items.
struct BarGeometry {
    Metrics metrics;
    // In root coordinates.
    PixelRect frame;
    // Where no item may stand because of the camera housing.
    std::optional<Gap> housing;
};

} // namespace pelistra::menubar
