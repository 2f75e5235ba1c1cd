#include "platform/linux/statusitem/WindowCanvas.h"

#include <cstdint>
#include <span>

#include <xcb/xcb_renderutil.h>

namespace pelistra::linux {

WindowCanvas::WindowCanvas(const x11::Connection& connection) : connection_(connection) {
    if (connection.extension(xcb_render_id) == nullptr) {
        return;
    }
    // The server answers in the version that the client says it speaks.
    const auto version = xcb_render_query_version(connection.get(), XCB_RENDER_MAJOR_VERSION,
                                                  XCB_RENDER_MINOR_VERSION);
    xcb_discard_reply(connection.get(), version.sequence);
    formats_ = connection.take<xcb_render_query_pict_formats_reply_t>(
        xcb_render_query_pict_formats(connection.get()));
    if (formats_ == nullptr) {
        return;
    }
    const auto* alpha =
        xcb_render_util_find_standard_format(formats_.get(), XCB_PICT_STANDARD_ARGB_32);
    alphaFormat_ = alpha != nullptr ? alpha->id : 0;
}

void WindowCanvas::show(xcb_window_t window, xcb_visualid_t visual, const Pixels& pixels, int x,
                        int y) const {
    xcb_clear_area(connection_.get(), 0, window, 0, 0, 0, 0);
    if (alphaFormat_ == 0 || pixels.isEmpty()) {
        return;
    }
    if (const auto* format = xcb_render_util_find_visual_format(formats_.get(), visual)) {
        composite(window, format->format, pixels, x, y);
    }
}

void WindowCanvas::composite(xcb_window_t window, xcb_render_pictformat_t format,
                             const Pixels& pixels, int x, int y) const {
    xcb_connection_t* const server = connection_.get();
    const auto width = static_cast<std::uint16_t>(pixels.width);
    const auto height = static_cast<std::uint16_t>(pixels.height);
    const xcb_pixmap_t pixmap = connection_.newId();
    const xcb_gcontext_t context = connection_.newId();
    const xcb_render_picture_t source = connection_.newId();
    const xcb_render_picture_t target = connection_.newId();
    xcb_create_pixmap(server, x11::Connection::alphaDepth, pixmap, connection_.root(), width,
                      height);
    xcb_create_gc(server, context, pixmap, 0, nullptr);
    const auto bytes = std::as_bytes(std::span(pixels.values));
    xcb_put_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context, width, height, 0, 0, 0,
                  x11::Connection::alphaDepth, static_cast<std::uint32_t>(bytes.size()),
                  reinterpret_cast<const std::uint8_t*>(bytes.data()));
    xcb_render_create_picture(server, source, pixmap, alphaFormat_, 0, nullptr);
    xcb_render_create_picture(server, target, window, format, 0, nullptr);
    xcb_render_composite(server, XCB_RENDER_PICT_OP_OVER, source, XCB_RENDER_PICTURE_NONE, target,
                         0, 0, 0, 0, static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                         width, height);
    xcb_render_free_picture(server, target);
    xcb_render_free_picture(server, source);
    xcb_free_gc(server, context);
    xcb_free_pixmap(server, pixmap);
}

} // namespace pelistra::linux
