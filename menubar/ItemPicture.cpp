#include "menubar/ItemPicture.h"

#include <xcb/composite.h>

namespace pelistra::menubar {

ItemPicture::ItemPicture(const Server& server, xcb_window_t container,
                         xcb_render_pictformat_t format)
    : server_(&server), container_(container), format_(format),
      damage_(server.xcb(), server.connection().newId()) {
    xcb_damage_create(server.xcb(), damage_.id(), container, XCB_DAMAGE_REPORT_LEVEL_NON_EMPTY);
}

void ItemPicture::renew() {
    stale_ = true;
}

xcb_render_picture_t ItemPicture::prepare() {
    if (server_ == nullptr || format_ == 0) {
        return XCB_NONE;
    }
    xcb_connection_t* x = server_->xcb();
    if (damaged_ && damage_) {
        // Before the picture is read: what is drawn from now on is reported anew.
        xcb_damage_subtract(x, damage_.id(), XCB_NONE, XCB_NONE);
        damaged_ = false;
    }
    if (stale_) {
        stale_ = false;
        picture_.reset();
        pixmap_ = PixmapHandle(x, server_->connection().newId());
        namingSequence_ = xcb_composite_name_window_pixmap(x, container_, pixmap_.id()).sequence;
        picture_ = PictureHandle(x, server_->connection().newId());
        pictureSequence_ =
            xcb_render_create_picture(x, picture_.id(), pixmap_.id(), format_, 0, nullptr).sequence;
    }
    return picture_.id();
}

bool ItemPicture::failed(std::uint32_t sequence) {
    if (!picture_ || (sequence != namingSequence_ && sequence != pictureSequence_)) {
        return false;
    }
    picture_.release();
    if (sequence == namingSequence_) {
        pixmap_.release();
    }
    // Worth another try when it is composed again.
    stale_ = true;
    return true;
}

} // namespace pelistra::menubar
