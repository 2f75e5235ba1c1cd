#include "menubar/Painter.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

namespace pelistra::menubar {

namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr std::size_t requestHeaderBytes = 32;
// The title begins this far from the left edge.
constexpr double titleInsetInPoints = 12;

constexpr std::uint32_t swapped(std::uint32_t word) {
    return (word >> 24U) | ((word >> 8U) & 0xFF00U) | ((word << 8U) & 0xFF0000U) | (word << 24U);
}

// Sends the pixels in as many requests as the server's limit makes needed.
void putImage(xcb_connection_t* x, xcb_pixmap_t pixmap, const ArgbImage& image) {
    const bool serverIsLittle = xcb_get_setup(x)->image_byte_order == XCB_IMAGE_ORDER_LSB_FIRST;
    std::vector<std::uint32_t> pixels = image.pixels;
    if (serverIsLittle != (std::endian::native == std::endian::little)) {
        std::ranges::transform(pixels, pixels.begin(), swapped);
    }
    const ContextHandle context(x, xcb_generate_id(x));
    xcb_create_gc(x, context.id(), pixmap, 0, nullptr);
    const std::size_t rowBytes = static_cast<std::size_t>(image.width) * bytesPerPixel;
    const std::size_t limit =
        std::size_t{xcb_get_maximum_request_length(x)} * bytesPerPixel - requestHeaderBytes;
    const int rowsAtOnce = std::max(1, static_cast<int>(limit / rowBytes));
    for (int row = 0; row < image.height; row += rowsAtOnce) {
        const int rows = std::min(rowsAtOnce, image.height - row);
        const auto* data = reinterpret_cast<const std::uint8_t*>(
            pixels.data() + static_cast<std::size_t>(row) * static_cast<std::size_t>(image.width));
        xcb_put_image(x, XCB_IMAGE_FORMAT_Z_PIXMAP, pixmap, context.id(),
                      static_cast<std::uint16_t>(image.width), static_cast<std::uint16_t>(rows), 0,
                      static_cast<std::int16_t>(row), 0, x11::Connection::alphaDepth,
                      static_cast<std::uint32_t>(rowBytes * static_cast<std::size_t>(rows)), data);
    }
}

struct Area {
    int x = 0;
    int y = 0;
    int width = 0;
    int height = 0;
};

void composite(xcb_connection_t* x, xcb_render_pict_op_t operation, xcb_render_picture_t source,
               xcb_render_picture_t target, const Area& area) {
    xcb_render_composite(x, static_cast<std::uint8_t>(operation), source, XCB_NONE, target, 0, 0, 0,
                         0, static_cast<std::int16_t>(area.x), static_cast<std::int16_t>(area.y),
                         static_cast<std::uint16_t>(area.width),
                         static_cast<std::uint16_t>(area.height));
}

} // namespace

Painter::Painter(const Server& server, xcb_window_t bar)
    : server_(&server), bar_(bar), context_(server.xcb(), server.connection().newId()) {
    // Copies would else be answered with an event each.
    const std::uint32_t exposures = 0;
    xcb_create_gc(server.xcb(), context_.id(), bar, XCB_GC_GRAPHICS_EXPOSURES, &exposures);
}

Painter::Layer Painter::makeLayer(std::uint8_t depth, xcb_render_pictformat_t format, int width,
                                  int height) const {
    xcb_connection_t* x = server_->xcb();
    Layer layer;
    layer.width = width;
    layer.height = height;
    layer.pixmap = PixmapHandle(x, server_->connection().newId());
    xcb_create_pixmap(x, depth, layer.pixmap.id(), server_->root(),
                      static_cast<std::uint16_t>(width), static_cast<std::uint16_t>(height));
    layer.picture = PictureHandle(x, server_->connection().newId());
    const std::uint32_t repeat = XCB_RENDER_REPEAT_NORMAL;
    xcb_render_create_picture(x, layer.picture.id(), layer.pixmap.id(), format,
                              XCB_RENDER_CP_REPEAT, &repeat);
    return layer;
}

Painter::Layer Painter::upload(const ArgbImage& image) const {
    if (image.pixels.empty()) {
        return {};
    }
    Layer layer =
        makeLayer(x11::Connection::alphaDepth, server_->alphaFormat(), image.width, image.height);
    putImage(server_->xcb(), layer.pixmap.id(), image);
    return layer;
}

bool Painter::setLook(const Look& look) {
    if (look == look_ && composed_.picture) {
        return false;
    }
    look_ = look;
    const xcb_screen_t& screen = server_->connection().screen();
    const xcb_render_pictformat_t format = server_->formatOf(screen.root_visual);
    column_ = upload(backgroundColumn(look.palette, look.metrics));
    columnTile_ = makeLayer(screen.root_depth, format, 1, height());
    composite(server_->xcb(), XCB_RENDER_PICT_OP_SRC, column_.picture.id(),
              columnTile_.picture.id(), {.width = 1, .height = height()});
    housing_ = {};
    if (look.housing) {
        housing_ = upload(housingImage(look.housing->end - look.housing->begin, look.metrics));
    }
    backdrop_ = makeLayer(screen.root_depth, format, look.width, height());
    composed_ = makeLayer(screen.root_depth, format, look.width, height());
    plate_ = {};
    titleLimit_ = -1; // The title is drawn anew in the new look.
    backdropStale_ = true;
    invalidate(0, look.width);
    return true;
}

void Painter::setTitle(const BarTitle& title, int limit) {
    if (title == title_ && limit == titleLimit_) {
        return;
    }
    title_ = title;
    titleLimit_ = limit;
    const int inset = look_.metrics.pixels(titleInsetInPoints);
    const int before = titleLayer_.width;
    titleLayer_ = upload(titleImage(title, limit - 2 * inset, look_.palette, look_.metrics));
    backdropStale_ = true;
    invalidate(inset, inset + std::max(before, titleLayer_.width));
}

void Painter::setBackground(const DockedItem& item) const {
    xcb_connection_t* x = server_->xcb();
    if (item.depth == server_->connection().screen().root_depth) {
        const std::uint32_t pixmap = columnTile_.pixmap.id();
        xcb_change_window_attributes(x, item.container.id(), XCB_CW_BACK_PIXMAP, &pixmap);
    }
    // The client may show the container's background through its own: let it draw that again.
    xcb_clear_area(x, 0, item.container.id(), 0, 0, 0, 0);
    xcb_clear_area(x, 1, item.client, 0, 0, 0, 0);
}

void Painter::fill(xcb_window_t window, std::uint8_t depth, const ArgbImage& image) const {
    xcb_connection_t* x = server_->xcb();
    Layer layer = upload(image);
    if (depth != x11::Connection::alphaDepth) {
        const xcb_screen_t& screen = server_->connection().screen();
        Layer opaque = makeLayer(screen.root_depth, server_->formatOf(screen.root_visual),
                                 image.width, image.height);
        const Area whole{.width = image.width, .height = image.height};
        composite(x, XCB_RENDER_PICT_OP_SRC, column_.picture.id(), opaque.picture.id(), whole);
        composite(x, XCB_RENDER_PICT_OP_OVER, layer.picture.id(), opaque.picture.id(), whole);
        layer = std::move(opaque);
    }
    const std::uint32_t pixmap = layer.pixmap.id();
    xcb_change_window_attributes(x, window, XCB_CW_BACK_PIXMAP, &pixmap);
    xcb_clear_area(x, 0, window, 0, 0, 0, 0);
}

void Painter::invalidate(int begin, int end) {
    begin = std::max(begin, 0);
    end = std::min(end, look_.width);
    if (begin >= end) {
        return;
    }
    for (Gap& gap : invalid_) {
        if (begin <= gap.end && end >= gap.begin) {
            gap.begin = std::min(gap.begin, begin);
            gap.end = std::max(gap.end, end);
            return;
        }
    }
    invalid_.push_back({.begin = begin, .end = end});
}

void Painter::composeBackdrop() {
    xcb_connection_t* x = server_->xcb();
    composite(x, XCB_RENDER_PICT_OP_SRC, column_.picture.id(), backdrop_.picture.id(),
              {.width = look_.width, .height = height()});
    if (titleLayer_.picture) {
        composite(x, XCB_RENDER_PICT_OP_OVER, titleLayer_.picture.id(), backdrop_.picture.id(),
                  {.x = look_.metrics.pixels(titleInsetInPoints),
                   .width = titleLayer_.width,
                   .height = titleLayer_.height});
    }
    if (housing_.picture && look_.housing) {
        composite(x, XCB_RENDER_PICT_OP_OVER, housing_.picture.id(), backdrop_.picture.id(),
                  {.x = look_.housing->begin, .width = housing_.width, .height = height()});
    }
    backdropStale_ = false;
}

bool Painter::isInvalid(const DockedItem& item) const {
    return std::ranges::any_of(invalid_, [&item](const Gap& gap) {
        return item.x < gap.end && item.x + item.width > gap.begin;
    });
}

void Painter::composeItem(DockedItem& item) {
    if (const xcb_render_picture_t picture = item.picture.prepare(); picture != XCB_NONE) {
        composite(server_->xcb(), XCB_RENDER_PICT_OP_OVER, picture, composed_.picture.id(),
                  {.x = item.x, .width = item.width, .height = item.height});
    }
}

void Painter::composePlate(const DockedItem& item) {
    // A stretched divider is wider than any plate has to be.
    const int width = std::min(item.width, look_.width);
    if (!plate_.picture || plateWidth_ != width) {
        plate_ = upload(plateImage(width, look_.palette, look_.metrics));
        plateWidth_ = width;
    }
    composite(server_->xcb(), XCB_RENDER_PICT_OP_OVER, plate_.picture.id(), composed_.picture.id(),
              {.x = item.x + item.width - width - plateReach(),
               .width = plate_.width,
               .height = plate_.height});
}

void Painter::paint(std::span<DockedItem* const> items, const DockedItem* lifted) {
    xcb_connection_t* x = server_->xcb();
    if (backdropStale_) {
        composeBackdrop();
    }
    if (exposed_) {
        invalidate(0, look_.width);
        exposed_ = false;
    }
    if (invalid_.empty()) {
        return;
    }
    const auto barHeight = static_cast<std::uint16_t>(height());
    std::vector<xcb_rectangle_t> clip;
    clip.reserve(invalid_.size());
    for (const Gap& gap : invalid_) {
        clip.push_back({.x = static_cast<std::int16_t>(gap.begin),
                        .y = 0,
                        .width = static_cast<std::uint16_t>(gap.end - gap.begin),
                        .height = barHeight});
    }
    xcb_render_set_picture_clip_rectangles(x, composed_.picture.id(), 0, 0,
                                           static_cast<std::uint32_t>(clip.size()), clip.data());
    composite(x, XCB_RENDER_PICT_OP_SRC, backdrop_.picture.id(), composed_.picture.id(),
              {.width = look_.width, .height = height()});
    for (DockedItem* item : items) {
        if (item != lifted && isInvalid(*item)) {
            composeItem(*item);
        }
    }
    for (DockedItem* item : items) {
        if (item == lifted) {
            composePlate(*item);
            composeItem(*item);
        }
    }
    for (const xcb_rectangle_t& part : clip) {
        xcb_copy_area(x, composed_.pixmap.id(), bar_, context_.id(), part.x, part.y, part.x, part.y,
                      part.width, part.height);
    }
    invalid_.clear();
}

} // namespace pelistra::menubar
