#pragma once

#include "menubar/Server.h"

#include <span>
#include <vector>

namespace pelistra::menubar {

// A rectangle in device pixels, relative to the root window unless its holder says otherwise.
struct PixelRect {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;

    bool operator==(const PixelRect&) const = default;
};

struct Monitor {
    PixelRect frame;
    bool primary = false;

    bool operator==(const Monitor&) const = default;
};

// The monitors as RandR has them now; the whole screen as one monitor when RandR has none.
[[nodiscard]] std::vector<Monitor> queryMonitors(const Server& server);

// The monitor that the bar belongs on: the primary one, else the first.
[[nodiscard]] PixelRect barMonitor(std::span<const Monitor> monitors);

// Whether space can be reserved at the top of `frame`: struts count from the screen's edge, so that
// a monitor above would be taken whole.
[[nodiscard]] bool canReserveTop(std::span<const Monitor> monitors, const PixelRect& frame);

// Asks for an event at every change of the monitors.
void watchMonitors(const Server& server);

} // namespace pelistra::menubar
