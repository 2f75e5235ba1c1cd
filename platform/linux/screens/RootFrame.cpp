#include "platform/linux/screens/RootFrame.h"

namespace pelistra::linux {

std::optional<RootRect> rootFrameOf(const x11::Connection& connection, xcb_window_t window) {
    const auto geometryCookie = xcb_get_geometry(connection.get(), window);
    const auto placeCookie =
        xcb_translate_coordinates(connection.get(), window, connection.root(), 0, 0);
    const auto geometry = connection.take<xcb_get_geometry_reply_t>(geometryCookie);
    const auto place = connection.take<xcb_translate_coordinates_reply_t>(placeCookie);
    if (!geometry || !place) {
        return std::nullopt;
    }
    return RootRect{
        .x = place->dst_x, .y = place->dst_y, .width = geometry->width, .height = geometry->height};
}

} // namespace pelistra::linux
