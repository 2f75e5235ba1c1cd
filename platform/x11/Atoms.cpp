#include "platform/x11/Atoms.h"

#include <vector>

namespace pelistra::x11 {

void internAtoms(const Connection& connection, std::span<const std::string_view> names,
                 std::span<xcb_atom_t> result) {
    std::vector<xcb_intern_atom_cookie_t> cookies;
    cookies.reserve(names.size());
    for (const std::string_view name : names) {
        cookies.push_back(xcb_intern_atom(connection.get(), 0,
                                          static_cast<std::uint16_t>(name.size()), name.data()));
    }
    for (std::size_t i = 0; i < cookies.size(); ++i) {
        const auto reply = connection.take<xcb_intern_atom_reply_t>(cookies[i]);
        result[i] = reply ? reply->atom : xcb_atom_t{XCB_ATOM_NONE};
    }
}

std::string traySelectionName(int screenNumber) {
    return "_NET_SYSTEM_TRAY_S" + std::to_string(screenNumber);
}

} // namespace pelistra::x11
