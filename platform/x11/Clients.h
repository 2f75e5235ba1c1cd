#pragma once

#include "platform/x11/Connection.h"

#include <cstdint>
#include <optional>
#include <span>
#include <unordered_map>

#include <xcb/res.h>

namespace pelistra::x11 {

// The client that made a window or other resource: the server numbers its clients in the bits of
// an id that it leaves to none of them.
[[nodiscard]] std::uint32_t clientOf(const Connection& connection, std::uint32_t resource);

// The process ids of clients, by client; clients on other machines are missing.
using Processes = std::unordered_map<std::uint32_t, std::int32_t>;

// A question for the processes of clients that has been sent and not yet answered; empty where the
// server lacks the X-Resource extension.
using ProcessesRequest = std::optional<xcb_res_query_client_ids_cookie_t>;
// Of the clients that made these windows, each asked about once.
[[nodiscard]] ProcessesRequest requestProcesses(const Connection& connection,
                                                std::span<const xcb_window_t> windows);

[[nodiscard]] Processes processesIn(const xcb_res_query_client_ids_reply_t& reply);

// Waits for the answer with a Connection or Replies. Empty without an answer in time.
template <class Source>
[[nodiscard]] std::optional<Processes> takeProcesses(Source& source,
                                                     const ProcessesRequest& request) {
    if (!request) {
        return std::nullopt;
    }
    const auto reply = source.template take<xcb_res_query_client_ids_reply_t>(*request);
    return reply ? std::optional(processesIn(*reply)) : std::nullopt;
}

// The process that made the window; empty when the server does not know it or does not answer.
template <class Source>
[[nodiscard]] std::optional<std::int32_t> processOf(const Connection& connection, Source& source,
                                                    xcb_window_t window) {
    const auto processes = takeProcesses(source, requestProcesses(connection, {{window}}));
    if (!processes) {
        return std::nullopt;
    }
    const auto found = processes->find(clientOf(connection, window));
    return found == processes->end() ? std::nullopt : std::optional(found->second);
}
[[nodiscard]] std::optional<std::int32_t> processOf(const Connection& connection,
                                                    xcb_window_t window);

} // namespace pelistra::x11
