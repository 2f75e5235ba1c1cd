#pragma once

#include <cstdint>
#include <utility>

#include <xcb/composite.h>
#include <xcb/damage.h>
#include <xcb/render.h>
#include <xcb/xcb.h>

namespace pelistra::menubar {

// An object on the X server that goes when its holder goes. Empty when default-made or moved from.
template <auto destroy>
class XResource {
public:
    XResource() = default;
    XResource(xcb_connection_t* connection, std::uint32_t id) : connection_(connection), id_(id) {}
    XResource(XResource&& other) noexcept
        : connection_(other.connection_), id_(std::exchange(other.id_, XCB_NONE)) {}
    XResource& operator=(XResource&& other) noexcept {
        if (this != &other) {
            reset();
            connection_ = other.connection_;
            id_ = std::exchange(other.id_, XCB_NONE);
        }
        return *this;
    }
    XResource(const XResource&) = delete;
    XResource& operator=(const XResource&) = delete;
    ~XResource() { reset(); }

    [[nodiscard]] std::uint32_t id() const { return id_; }
    explicit operator bool() const { return id_ != XCB_NONE; }
    void reset() {
        if (id_ != XCB_NONE) {
            destroy(connection_, std::exchange(id_, XCB_NONE));
        }
    }
    // Forgets it without destroying it: the server has done so already.
    void release() { id_ = XCB_NONE; }

private:
    xcb_connection_t* connection_ = nullptr;
    std::uint32_t id_ = XCB_NONE;
};

using WindowHandle = XResource<xcb_destroy_window>;
using PixmapHandle = XResource<xcb_free_pixmap>;
using ContextHandle = XResource<xcb_free_gc>;
using PictureHandle = XResource<xcb_render_free_picture>;
using DamageHandle = XResource<xcb_damage_destroy>;
using ColormapHandle = XResource<xcb_free_colormap>;

} // namespace pelistra::menubar
