#pragma once

#include "menubar/Server.h"
#include "menubar/XResource.h"

#include <cstdint>

namespace pelistra::menubar {

// The picture of one docked window: the pixmap of its container, and the news that it was drawn on.
class ItemPicture {
public:
    ItemPicture() = default;
    // `container` must be redirected by now and outlive this; `format` is the picture format of its
    // visual.
    ItemPicture(const Server& server, xcb_window_t container, xcb_render_pictformat_t format);

    // The server gives a window a new pixmap at every map and resize: name it again before use.
    void renew();
    // The window was drawn on. Nothing more is reported until prepare() is called, so that an item
    // off the screen costs nothing however often it draws.
    void noteDamage() { damaged_ = true; }

    // Takes note of what was drawn so far and returns the picture to compose, XCB_NONE when there
    // is none. Call it right before composing.
    xcb_render_picture_t prepare();

    // An error answered the request with this sequence number. Returns whether it was about the
    // window's pixmap, which is then named again when it is next composed.
    bool failed(std::uint32_t sequence);

private:
    const Server* server_ = nullptr;
    xcb_window_t container_ = XCB_NONE;
    xcb_render_pictformat_t format_ = 0;
    DamageHandle damage_;
    PixmapHandle pixmap_;
    PictureHandle picture_;
    bool stale_ = true;
    bool damaged_ = false;
    std::uint32_t namingSequence_ = 0;
    std::uint32_t pictureSequence_ = 0;
};

} // namespace pelistra::menubar
