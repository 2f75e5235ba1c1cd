#pragma once

#include <optional>

#include <xcb/xproto.h>

namespace pelistra::menubar {

// The window that a message asks the tray to dock, after the system-tray protocol. Empty when the
// message is not for `owner` (the owner of the tray selection), is no message of the protocol
// (`opcode` is the atom _NET_SYSTEM_TRAY_OPCODE), asks for something else, or names no window.
[[nodiscard]] std::optional<xcb_window_t> requestedDock(const xcb_client_message_event_t& message,
                                                        xcb_window_t owner, xcb_atom_t opcode);

} // namespace pelistra::menubar
