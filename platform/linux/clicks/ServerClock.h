#pragma once

#include "platform/x11/Connection.h"
#include "platform/x11/Replies.h"

#include <optional>

#include <xcb/sync.h>

namespace pelistra::linux {

// The time of the X server as its events carry it: milliseconds since some start of its own.
class ServerClock {
public:
    // Both must outlive this object.
    ServerClock(const x11::Connection& connection, x11::Replies& replies)
        : connection_(&connection), replies_(&replies) {}

    // Works inside a task of the Replies object. XCB_CURRENT_TIME when the server does not say.
    [[nodiscard]] xcb_timestamp_t now();

private:
    [[nodiscard]] std::optional<xcb_sync_counter_t> findCounter();

    const x11::Connection* connection_;
    x11::Replies* replies_;
    // Empty until it was found.
    std::optional<xcb_sync_counter_t> counter_;
};

} // namespace pelistra::linux
