#include "platform/x11/Clients.h"

#include <vector>

namespace pelistra::x11 {

namespace {

constexpr std::uint32_t processId = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID;

} // namespace

std::uint32_t clientOf(const Connection& connection, std::uint32_t resource) {
    return resource & ~xcb_get_setup(connection.get())->resource_id_mask;
}

ProcessesRequest requestProcesses(const Connection& connection,
                                  std::span<const xcb_window_t> windows) {
    if (connection.extension(xcb_res_id) == nullptr) {
        return std::nullopt;
    }
    // A client may have any number of windows.
    std::unordered_map<std::uint32_t, xcb_window_t> clients;
    for (const xcb_window_t window : windows) {
        clients.emplace(clientOf(connection, window), window);
    }
    std::vector<xcb_res_client_id_spec_t> questions;
    questions.reserve(clients.size());
    for (const auto& [client, window] : clients) {
        questions.push_back({.client = window, .mask = processId});
    }
    return xcb_res_query_client_ids(connection.get(), static_cast<std::uint32_t>(questions.size()),
                                    questions.data());
}

Processes processesIn(const xcb_res_query_client_ids_reply_t& reply) {
    Processes processes;
    for (auto id = xcb_res_query_client_ids_ids_iterator(&reply); id.rem != 0;
         xcb_res_client_id_value_next(&id)) {
        if (id.data->spec.mask == processId && xcb_res_client_id_value_value_length(id.data) > 0) {
            processes[id.data->spec.client] =
                static_cast<std::int32_t>(*xcb_res_client_id_value_value(id.data));
        }
    }
    return processes;
}

std::optional<std::int32_t> processOf(const Connection& connection, xcb_window_t window) {
    return processOf(connection, connection, window);
}

} // namespace pelistra::x11
