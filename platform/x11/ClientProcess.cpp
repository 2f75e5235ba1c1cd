#include "platform/x11/ClientProcess.h"

#include <xcb/res.h>

namespace pelistra::x11 {

std::optional<std::uint32_t> processOf(const Connection& connection, xcb_window_t window) {
    if (connection.extension(xcb_res_id) == nullptr) {
        return std::nullopt;
    }
    const xcb_res_client_id_spec_t spec{.client = window,
                                        .mask = XCB_RES_CLIENT_ID_MASK_LOCAL_CLIENT_PID};
    const auto reply = connection.take<xcb_res_query_client_ids_reply_t>(
        xcb_res_query_client_ids(connection.get(), 1, &spec));
    if (!reply) {
        return std::nullopt;
    }
    const auto id = xcb_res_query_client_ids_ids_iterator(reply.get());
    if (id.rem == 0 || xcb_res_client_id_value_value_length(id.data) < 1) {
        return std::nullopt;
    }
    return *xcb_res_client_id_value_value(id.data);
}

} // namespace pelistra::x11
