#include "platform/x11/Monitors.h"

#include <algorithm>

namespace pelistra::x11 {

MonitorsRequest requestMonitors(const Connection& connection) {
    if (!connection.hasMonitors()) {
        return std::nullopt;
    }
    return xcb_randr_get_monitors(connection.get(), connection.root(), 1);
}

std::vector<Monitor> monitorsIn(const xcb_randr_get_monitors_reply_t* reply) {
    std::vector<Monitor> monitors;
    if (reply == nullptr) {
        return monitors;
    }
    for (auto monitor = xcb_randr_get_monitors_monitors_iterator(reply); monitor.rem != 0;
         xcb_randr_monitor_info_next(&monitor)) {
        const xcb_randr_monitor_info_t& info = *monitor.data;
        if (info.width > 0 && info.height > 0) {
            monitors.push_back(
                {.frame = {.x = info.x, .y = info.y, .width = info.width, .height = info.height},
                 .isPrimary = info.primary != 0});
        }
    }
    return monitors;
}

const Monitor* primaryOf(std::span<const Monitor> monitors) {
    if (monitors.empty()) {
        return nullptr;
    }
    const auto primary = std::ranges::find_if(monitors, &Monitor::isPrimary);
    return primary == monitors.end() ? &monitors.front() : &*primary;
}

void watchMonitors(const Connection& connection) {
    if (connection.hasMonitors()) {
        xcb_randr_select_input(
            connection.get(), connection.root(),
            XCB_RANDR_NOTIFY_MASK_SCREEN_CHANGE | XCB_RANDR_NOTIFY_MASK_CRTC_CHANGE |
                XCB_RANDR_NOTIFY_MASK_OUTPUT_CHANGE | XCB_RANDR_NOTIFY_MASK_RESOURCE_CHANGE);
    }
}

bool isMonitorChange(const Connection& connection, const xcb_generic_event_t& event) {
    if (!connection.hasMonitors()) {
        return false;
    }
    const int first = connection.extension(xcb_randr_id)->first_event;
    const int type = typeOf(event);
    return type == first + XCB_RANDR_SCREEN_CHANGE_NOTIFY || type == first + XCB_RANDR_NOTIFY;
}

} // namespace pelistra::x11
