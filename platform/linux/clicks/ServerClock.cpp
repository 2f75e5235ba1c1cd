#include "platform/linux/clicks/ServerClock.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace pelistra::linux {

namespace {

// By the Synchronization extension, the counter of the server's own time.
constexpr std::string_view timeCounter = "SERVERTIME";
// An entry of the list of counters: id, resolution, length of the name, name; filled up to whole
// units. libxcb takes the name to begin two bytes later, where its own structure ends.
constexpr std::size_t lengthOffset = 12;
constexpr std::size_t nameOffset = 14;
constexpr std::size_t unit = 4;

} // namespace

std::optional<xcb_sync_counter_t> ServerClock::findCounter() {
    if (connection_->extension(xcb_sync_id) == nullptr) {
        return std::nullopt;
    }
    const auto counters = replies_->take<xcb_sync_list_system_counters_reply_t>(
        xcb_sync_list_system_counters(connection_->get()));
    if (!counters) {
        return std::nullopt;
    }
    // The list follows the reply's head.
    std::string_view list(reinterpret_cast<const char*>(counters.get() + 1),
                          std::size_t{counters->length} * unit);
    while (list.size() >= nameOffset) {
        std::uint16_t length = 0;
        std::memcpy(&length, list.data() + lengthOffset, sizeof(length));
        if (list.substr(nameOffset, length) == timeCounter) {
            xcb_sync_counter_t counter = 0;
            std::memcpy(&counter, list.data(), sizeof(counter));
            return counter;
        }
        const std::size_t size = (nameOffset + length + unit - 1) / unit * unit;
        list.remove_prefix(std::min(size, list.size()));
    }
    return std::nullopt;
}

xcb_timestamp_t ServerClock::now() {
    if (!counter_) {
        counter_ = findCounter();
    }
    const auto time = counter_ ? replies_->take<xcb_sync_query_counter_reply_t>(
                                     xcb_sync_query_counter(connection_->get(), *counter_))
                               : nullptr;
    return time ? time->counter_value.lo : xcb_timestamp_t{XCB_CURRENT_TIME};
}

} // namespace pelistra::linux
