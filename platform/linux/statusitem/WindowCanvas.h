#pragma once

#include "platform/linux/images/Pixels.h"
#include "platform/x11/Connection.h"

#include <xcb/render.h>

namespace pelistra::linux {

// Draws pictures with an alpha channel on windows, by the Render extension.
class WindowCanvas {
public:
    explicit WindowCanvas(const x11::Connection& connection);

    // Clears the window to its background and draws the picture over it at that place. Does nothing
    // but clear without the Render extension.
    void show(xcb_window_t window, xcb_visualid_t visual, const Pixels& pixels, int x, int y) const;

private:
    void composite(xcb_window_t window, xcb_render_pictformat_t format, const Pixels& pixels, int x,
                   int y) const;

    const x11::Connection& connection_;
    // Null without the extension.
    x11::Owned<xcb_render_query_pict_formats_reply_t> formats_;
    // Eight bits each of alpha and the colours; 0 without the extension.
    xcb_render_pictformat_t alphaFormat_ = 0;
};

} // namespace pelistra::linux
