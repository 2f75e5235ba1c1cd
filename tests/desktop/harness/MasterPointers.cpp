#include "tests/desktop/harness/MasterPointers.h"

#include "platform/x11/Handles.h"

#include <stdexcept>

#include <xcb/xinput.h>

namespace pelistra::testing {

std::vector<std::string> masterPointers(XClient& client) {
    std::vector<std::string> names;
    const x11::Owned<xcb_input_xi_query_version_reply_t> version(xcb_input_xi_query_version_reply(
        client.get(), xcb_input_xi_query_version(client.get(), 2, 2), nullptr));
    const x11::Owned<xcb_input_xi_query_device_reply_t> reply(xcb_input_xi_query_device_reply(
        client.get(), xcb_input_xi_query_device(client.get(), 0), nullptr));
    if (!reply) {
        throw std::runtime_error("the server lists no devices");
    }
    for (auto info = xcb_input_xi_query_device_infos_iterator(reply.get()); info.rem != 0;
         xcb_input_xi_device_info_next(&info)) {
        if (info.data->type == XCB_INPUT_DEVICE_TYPE_MASTER_POINTER) {
            names.emplace_back(xcb_input_xi_device_info_name(info.data),
                               xcb_input_xi_device_info_name_length(info.data));
        }
    }
    return names;
}

} // namespace pelistra::testing
