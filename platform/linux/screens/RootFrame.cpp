#include "platform/linux/screens/RootFrame.h"

namespace pelistra::linux {

FrameRequest requestFrame(const x11::Connection& connection, xcb_window_t window) {
    return {.geometry = xcb_get_geometry(connection.get(), window),
            .place = xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0)};
}

std::optional<RootRect> rootFrameOf(const x11::Connection& connection, xcb_window_t window) {
    return takeFrame(connection, requestFrame(connection, window));
}

} // namespace pelistra::linux
