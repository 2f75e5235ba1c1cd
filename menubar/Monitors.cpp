#include "menubar/Monitors.h"

#include <algorithm>

#include <xcb/randr.h>

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
            .primary = true};
}

} // namespace

std::vector<Monitor> queryMonitors(const Server& server) {
    std::vector<Monitor> monitors;
    if (server.hasMonitors()) {
        const auto reply = server.connection().take<xcb_randr_get_monitors_reply_t>(
            xcb_randr_get_monitors(server.xcb(), server.root(), 1));
        if (reply) {
            for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply.get());
                 monitor.rem != 0; xcb_randr_monitor_info_next(&monitor)) {
                const xcb_randr_monitor_info_t& data = *monitor.data;
                if (data.width > 0 && data.height > 0) {
                    monitors.push_back({.frame = {.x = data.x,
                                                  .y = data.y,
                                                  .width = data.width,
                                                  .height = data.height},
                                        .primary = data.primary != 0});
                }
            }
        }
    }
    if (monitors.empty()) {
        monitors.push_back(wholeScreen(server));
    }
    return monitors;
}

PixelRect barMonitor(std::span<const Monitor> monitors) {
    const auto primary = std::ranges::find_if(monitors, &Monitor::primary);
    if (primary != monitors.end()) {
        return primary->frame;
    }
    return monitors.empty() ? PixelRect{} : monitors.front().frame;
}

bool canReserveTop(std::span<const Monitor> monitors, const PixelRect& frame) {
    return std::ranges::none_of(monitors, [&frame](const Monitor& other) {
        return other.frame.y < frame.y && other.frame.x < frame.x + frame.width &&
               other.frame.x + other.frame.width > frame.x;
    });
}

void watchMonitors(const Server& server) {
    if (server.randrEvent() != 0) {
        xcb_randr_select_input(server.xcb(), server.root(),
                               XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE |
                                   XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE);
    }
}

} // namespace pelistra::menubar
