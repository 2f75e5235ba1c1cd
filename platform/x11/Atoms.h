#pragma once

#include "platform/x11/Connection.h"

#include <array>
#include <cstddef>
#include <span>
#include <string>
#include <string_view>

namespace pelistra::x11 {

// Interns every name in one round trip; result[i] is the atom of names[i], XCB_ATOM_NONE when the
// server did not answer.
void internAtoms(const Connection& connection, std::span<const std::string_view> names,
                 std::span<xcb_atom_t> result);

template <std::size_t N>
[[nodiscard]] std::array<xcb_atom_t, N> internAtoms(const Connection& connection,
                                                    const std::array<std::string_view, N>& names) {
    std::array<xcb_atom_t, N> atoms{};
    internAtoms(connection, names, atoms);
    return atoms;
}

// The selection whose owner is the tray of a screen: "_NET_SYSTEM_TRAY_S0" of screen 0.
[[nodiscard]] std::string traySelectionName(int screenNumber);

} // namespace pelistra::x11
