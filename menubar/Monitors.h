#pragma once

#include "menubar/Server.h"
#include "platform/x11/Monitors.h"

#include <span>
#include <vector>

namespace pelistra::menubar {

using x11::Monitor;
using x11::PixelRect;

// The monitors as RandR has them now; the whole screen as one monitor when RandR has none.
[[nodiscard]] std::vector<Monitor> queryMonitors(const Server& server);

// The monitor that the bar belongs on: the primary one, else the first.
[[nodiscard]] PixelRect barMonitor(std::span<const Monitor> monitors);

// Whether space can be reserved at the top of `frame`: struts count from the screen's edge, so that
// a monitor above would be taken whole.
[[nodiscard]] bool canReserveTop(std::span<const Monitor> monitors, const PixelRect& frame);

} // namespace pelistra::menubar
