#include "menubar/Monitors.h"

#include <algorithm>

namespace pelistra::menubar {

namespace {

Monitor wholeScreen(const Server& server) {
    const auto geometry = server.connection().take<xcb_get_geometry_reply_t>(
        xcb_get_geometry(server.xcb(), server.root()));
    const xcb_screen_t& screen = server.connection().screen();
    return {.frame = {.x = 0,
                      .y = 0,
                      .width = geometry ? geometry->width : screen.width_in_pixels,
                      .height = geometry ? geometry->height : screen.height_in_pixels},
            .isPrimary = true};
}

} // namespace

std::vector<Monitor> queryMonitors(const Server& server) {
    auto monitors =
        x11::takeMonitors(server.connection(), x11::requestMonitors(server.connection()));
    if (monitors.empty()) {
        monitors.push_back(wholeScreen(server));
    }
    return monitors;
}

PixelRect barMonitor(std::span<const Monitor> monitors) {
    const Monitor* const primary = x11::primaryOf(monitors);
    return primary != nullptr ? primary->frame : PixelRect{};
}

bool canReserveTop(std::span<const Monitor> monitors, const PixelRect& frame) {
    return std::ranges::none_of(monitors, [&frame](const Monitor& other) {
        return other.frame.y < frame.y && other.frame.x < frame.x + frame.width &&
               other.frame.x + other.frame.width > frame.x;
    });
}

} // namespace pelistra::menubar
