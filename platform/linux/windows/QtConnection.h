#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include <xcb/xcb.h>

namespace pelistra::linux {

// Qt's own connection to the X server: what is asked for on it comes after what Qt itself has asked
// for. Null on another platform than X11. Needs the QApplication.
[[nodiscard]] xcb_connection_t* qtConnection();

// Whether Qt has made that window.
[[nodiscard]] bool isQtWindow(xcb_window_t window);
// Qt's windows on the screen.
[[nodiscard]] std::vector<xcb_window_t> shownQtWindows();

// Gives a window a property of 32-bit values instead of the one that it had.
template <std::size_t N>
void setWords(xcb_connection_t* connection, xcb_window_t window, xcb_atom_t property,
              xcb_atom_t type, const std::array<std::uint32_t, N>& values) {
    constexpr std::uint8_t bits = 32;
    xcb_change_property(connection, XCB_PROP_MODE_REPLACE, window, property, type, bits, N,
                        values.data());
}

} // namespace pelistra::linux
