#include "menubar/DockRequest.h"

#include "platform/x11/Properties.h"

#include <cstdint>

namespace pelistra::menubar {

namespace {

constexpr std::uint32_t dockRequest = 0;

} // namespace

std::optional<xcb_window_t> requestedDock(const xcb_client_message_event_t& message,
                                          xcb_window_t owner, xcb_atom_t opcode) {
    // A time, what is asked, the window.
    const auto& words = message.data.data32;
    const bool asks = message.window == owner && message.type == opcode &&
                      message.format == x11::bitsOfWord && words[1] == dockRequest;
    return asks && words[2] != XCB_NONE ? std::optional(words[2]) : std::nullopt;
}

} // namespace pelistra::menubar
