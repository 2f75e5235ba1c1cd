#include "platform/linux/clicks/WindowsAt.h"

namespace pelistra::linux {

std::vector<WindowId> windowsAt(const x11::Connection& connection, x11::Replies& replies,
                                RootPlace place) {
    std::vector<WindowId> chain;
    WindowId window = connection.root();
    for (int depth = 0; depth < deepestWindow && window != XCB_NONE; ++depth) {
        const auto reply =
            replies.take<xcb_translate_coordinates_reply_t>(xcb_translate_coordinates(
                connection.get(), connection.root(), window, static_cast<std::int16_t>(place.x),
                static_cast<std::int16_t>(place.y)));
        window = reply ? reply->child : WindowId{XCB_NONE};
        if (window != XCB_NONE) {
            chain.push_back(window);
        }
    }
    return chain;
}

} // namespace pelistra::linux
