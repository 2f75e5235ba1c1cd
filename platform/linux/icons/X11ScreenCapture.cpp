#include "platform/linux/icons/X11ScreenCapture.h"

#include "platform/linux/images/PixelBitmap.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include <xcb/composite.h>

namespace pelistra::linux {

namespace {

constexpr std::uint8_t depthWithAlpha = 32;
constexpr std::uint8_t depthWithoutAlpha = 24;
constexpr std::uint32_t allPlanes = ~std::uint32_t{0};

} // namespace

struct X11ScreenCapture::Source {
    WindowId parent = 0;
    // Inside the parent.
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
    std::uint8_t depth = 0;
};

X11ScreenCapture::X11ScreenCapture(const x11::Connection& connection)
    : connection_(&connection), replies_(connection) {
    // Pixmaps of windows can be named since version 0.2.
    constexpr std::uint32_t minor = 2;
    if (connection.extension(xcb_composite_id) == nullptr || !replies_.begin(patience)) {
        return;
    }
    const auto version = replies_.take<xcb_composite_query_version_reply_t>(
        xcb_composite_query_version(connection.get(), 0, minor));
    hasComposite_ = version && (version->major_version > 0 || version->minor_version >= minor);
}

CaptureResult X11ScreenCapture::captureWindow(WindowId window, WindowImageOptions /*options*/) {
    Pixels pixels = pixelsOf(window);
    if (pixels.isEmpty()) {
        return CaptureRefusal::NoImage;
    }
    return std::make_unique<PixelBitmap>(std::move(pixels));
}

Pixels X11ScreenCapture::pixelsOf(WindowId window) {
    if (!hasComposite_ || !replies_.begin(patience)) {
        return {};
    }
    const auto source = describe(window);
    if (!source) {
        return {};
    }
    // Asked together: which of the two is redirected is seen by the answers. The root never is.
    const auto own = askRedirected(window, 0, 0, *source);
    const auto inParent = askRedirected(source->parent, source->x, source->y, *source);
    Pixels pixels = takePixels(own, *source);
    Pixels part = takePixels(inParent, *source);
    if (pixels.isEmpty()) {
        pixels = std::move(part);
    }
    return pixels.isEmpty() ? fromTemporaryRedirection(window, *source) : pixels;
}

std::optional<X11ScreenCapture::Source> X11ScreenCapture::describe(WindowId window) {
    xcb_connection_t* const server = connection_->get();
    const auto geometryRequest = xcb_get_geometry(server, window);
    const auto attributesRequest = xcb_get_window_attributes(server, window);
    const auto treeRequest = xcb_query_tree(server, window);
    const auto geometry = replies_.take<xcb_get_geometry_reply_t>(geometryRequest);
    const auto attributes = replies_.take<xcb_get_window_attributes_reply_t>(attributesRequest);
    const auto tree = replies_.take<xcb_query_tree_reply_t>(treeRequest);
    if (!geometry || !attributes || !tree || attributes->_class != XCB_WINDOW_CLASS_INPUT_OUTPUT ||
        attributes->map_state != XCB_MAP_STATE_VIEWABLE ||
        std::uint32_t{geometry->width} * geometry->height > mostPixels ||
        (geometry->depth != depthWithAlpha && geometry->depth != depthWithoutAlpha)) {
        return std::nullopt;
    }
    return Source{.parent = tree->parent,
                  .x = geometry->x + geometry->border_width,
                  .y = geometry->y + geometry->border_width,
                  .width = geometry->width,
                  .height = geometry->height,
                  .depth = geometry->depth};
}

xcb_get_image_cookie_t X11ScreenCapture::askRedirected(WindowId redirected, int x, int y,
                                                       const Source& source) {
    const xcb_pixmap_t pixmap = nameWindowPixmap(redirected);
    const auto request = xcb_get_image(connection_->get(), XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap,
                                       static_cast<std::int16_t>(x), static_cast<std::int16_t>(y),
                                       static_cast<std::uint16_t>(source.width),
                                       static_cast<std::uint16_t>(source.height), allPlanes);
    freePixmap(pixmap);
    return request;
}

Pixels X11ScreenCapture::fromTemporaryRedirection(WindowId window, const Source& source) {
    xcb_connection_t* const server = connection_->get();
    // Nobody sees the window in between, and nothing of it is drawn elsewhere meanwhile.
    xcb_grab_server(server);
    connection_->ignoreErrorOf(
        xcb_composite_redirect_window_checked(server, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
    const xcb_pixmap_t pixmap = nameWindowPixmap(window);
    const auto request = xcb_get_image(server, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, 0, 0,
                                       static_cast<std::uint16_t>(source.width),
                                       static_cast<std::uint16_t>(source.height), allPlanes);
    freePixmap(pixmap);
    connection_->ignoreErrorOf(
        xcb_composite_unredirect_window_checked(server, window, XCB_COMPOSITE_REDIRECT_AUTOMATIC));
    xcb_ungrab_server(server);
    return takePixels(request, source);
}

Pixels X11ScreenCapture::takePixels(xcb_get_image_cookie_t request, const Source& source) {
    const auto reply = replies_.take<xcb_get_image_reply_t>(request);
    if (!reply || reply->depth != source.depth) {
        return {};
    }
    const std::span<const std::uint8_t> data(
        xcb_get_image_data(reply.get()),
        static_cast<std::size_t>(xcb_get_image_data_length(reply.get())));
    Pixels pixels{.width = source.width, .height = source.height, .values = {}};
    const auto count =
        static_cast<std::size_t>(source.width) * static_cast<std::size_t>(source.height);
    if (count == 0 || data.size() < count * sizeof(std::uint32_t)) {
        return {};
    }
    pixels.values.resize(count);
    // The alpha of X pictures is already multiplied into their colours.
    std::memcpy(pixels.values.data(), data.data(), count * sizeof(std::uint32_t));
    if (source.depth != depthWithAlpha) {
        constexpr std::uint32_t opaque = 0xff000000;
        std::ranges::for_each(pixels.values, [](std::uint32_t& value) { value |= opaque; });
    }
    return pixels;
}

xcb_pixmap_t X11ScreenCapture::nameWindowPixmap(WindowId window) const {
    const xcb_pixmap_t pixmap = connection_->newId();
    connection_->ignoreErrorOf(
        xcb_composite_name_window_pixmap_checked(connection_->get(), window, pixmap));
    return pixmap;
}

void X11ScreenCapture::freePixmap(xcb_pixmap_t pixmap) const {
    connection_->ignoreErrorOf(xcb_free_pixmap_checked(connection_->get(), pixmap));
}

} // namespace pelistra::linux
