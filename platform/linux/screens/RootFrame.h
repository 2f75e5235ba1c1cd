#pragma once

#include "platform/linux/screens/Coordinates.h"
#include "platform/x11/Connection.h"

#include <optional>

namespace pelistra::linux {

// A question for a window's place that has been sent and not yet answered.
struct FrameRequest {
    xcb_get_geometry_cookie_t geometry;
    xcb_translate_coordinates_cookie_t place;
};
[[nodiscard]] FrameRequest requestFrame(const x11::Connection& connection, xcb_window_t window);

// Where the window is, in root pixels, without its border. Waits for the answer with a Connection
// or Replies; empty when the window is gone, is on another screen, or there is no answer in time.
template <class Source>
[[nodiscard]] std::optional<RootRect> takeFrame(Source& source, const FrameRequest& request) {
    const auto geometry = source.template take<xcb_get_geometry_reply_t>(request.geometry);
    const auto place = source.template take<xcb_translate_coordinates_reply_t>(request.place);
    if (!geometry || !place || place->same_screen == 0) {
        return std::nullopt;
    }
    return RootRect{
        .x = place->dst_x, .y = place->dst_y, .width = geometry->width, .height = geometry->height};
}

// The same in one round trip.
[[nodiscard]] std::optional<RootRect> rootFrameOf(const x11::Connection& connection,
                                                  xcb_window_t window);

} // namespace pelistra::linux
