#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/PixelRect.h"

#include <optional>
#include <span>
#include <vector>

#include <xcb/randr.h>

namespace pelistra::x11 {

// A monitor as RandR describes it.
struct Monitor {
    PixelRect frame;
    bool isPrimary = false;

    bool operator==(const Monitor&) const = default;
};

// A request for the monitors that has been sent and not yet answered; empty where RandR knows none.
using MonitorsRequest = std::optional<xcb_randr_get_monitors_cookie_t>;
[[nodiscard]] MonitorsRequest requestMonitors(const Connection& connection);

// Those that have an area, in RandR's order; null counts as none.
[[nodiscard]] std::vector<Monitor> monitorsIn(const xcb_randr_get_monitors_reply_t* reply);

// Waits for the answer with a Connection or Replies. Empty without an answer in time.
template <class Source>
[[nodiscard]] std::vector<Monitor> takeMonitors(Source& source, const MonitorsRequest& request) {
    return request
               ? monitorsIn(source.template take<xcb_randr_get_monitors_reply_t>(*request).get())
               : std::vector<Monitor>{};
}

// The primary one, else the first; null when there is none.
[[nodiscard]] const Monitor* primaryOf(std::span<const Monitor> monitors);

// Asks for an event at every change of the monitors, of which isMonitorChange() tells.
void watchMonitors(const Connection& connection);
[[nodiscard]] bool isMonitorChange(const Connection& connection, const xcb_generic_event_t& event);

} // namespace pelistra::x11
