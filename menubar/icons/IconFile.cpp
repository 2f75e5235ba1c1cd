#include "menubar/icons/IconFile.h"

#include "menubar/Canvas.h"
#include "menubar/Fitting.h"
#include "platform/posix/PrivateFile.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include <gdk-pixbuf/gdk-pixbuf.h>
#include <librsvg/rsvg.h>

namespace pelistra::menubar {

namespace {

constexpr std::size_t byteLimit = std::size_t{4} * 1024 * 1024;
constexpr int longestSide = 2048;
// Where a drawing says that it is one.
constexpr std::size_t headBytes = 4096;

struct ObjectDeleter {
    void operator()(void* object) const { g_object_unref(object); }
};
template <class T>
using ObjectPtr = std::unique_ptr<T, ObjectDeleter>;

bool isDrawing(std::string_view content) {
    return content.starts_with("\x1f\x8b") ||
           content.substr(0, headBytes).find("<svg") != std::string_view::npos;
}

bool isSymbolic(const std::filesystem::path& path) {
    const std::string stem = path.stem();
    return stem.ends_with("-symbolic") || stem.ends_with("-symbolic-rtl");
}

std::string styleFor(const IconRequest& request, bool symbolic) {
    // How drawings of one colour leave that to whoever shows them, in the two big families.
    std::string style = ".ColorScheme-Text{color:" + request.foreground +
                        " !important}.ColorScheme-NegativeText{color:" + request.error +
                        " !important}.ColorScheme-NeutralText{color:" + request.warning +
                        " !important}.ColorScheme-PositiveText{color:" + request.success +
                        " !important}";
    if (symbolic) {
        style += "rect,path,ellipse,circle,polygon{fill:" + request.foreground +
                 " !important}.error{fill:" + request.error +
                 " !important}.warning{fill:" + request.warning +
                 " !important}.success{fill:" + request.success + " !important}";
    }
    return style;
}

ArgbImage draw(const std::string& content, const IconRequest& request, bool symbolic) {
    const ObjectPtr<GInputStream> stream(g_memory_input_stream_new_from_data(
        content.data(), static_cast<gssize>(content.size()), nullptr));
    // Without a place of its own, a drawing can refer to no other file.
    const ObjectPtr<RsvgHandle> drawing(rsvg_handle_new_from_stream_sync(
        stream.get(), nullptr, RSVG_HANDLE_FLAGS_NONE, nullptr, nullptr));
    if (drawing == nullptr) {
        return {};
    }
    const std::string style = styleFor(request, symbolic);
    rsvg_handle_set_stylesheet(drawing.get(), reinterpret_cast<const std::uint8_t*>(style.data()),
                               style.size(), nullptr);
    Canvas canvas(request.side, request.side);
    const RsvgRectangle whole{
        .x = 0, .y = 0, .width = double(request.side), .height = double(request.side)};
    const bool drawn =
        rsvg_handle_render_document(drawing.get(), canvas.get(), &whole, nullptr) != 0;
    return drawn ? canvas.finish() : ArgbImage{};
}

void boundSize(GdkPixbufLoader* loader, int width, int height, void* /*data*/) {
    if (width > longestSide || height > longestSide) {
        // What is asked to be of no size is not read.
        gdk_pixbuf_loader_set_size(loader, 0, 0);
    }
}

std::uint32_t premultiplied(std::uint32_t part, std::uint32_t alpha) {
    constexpr std::uint32_t most = 255;
    return (part * alpha + most / 2) / most;
}

ArgbImage imageOf(GdkPixbuf* pixbuf) {
    const int width = gdk_pixbuf_get_width(pixbuf);
    const int height = gdk_pixbuf_get_height(pixbuf);
    const int channels = gdk_pixbuf_get_n_channels(pixbuf);
    const int stride = gdk_pixbuf_get_rowstride(pixbuf);
    const std::uint8_t* const bytes = gdk_pixbuf_read_pixels(pixbuf);
    ArgbImage image{.width = width, .height = height, .pixels = {}};
    image.pixels.reserve(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const std::uint8_t* const pixel =
                bytes + static_cast<std::ptrdiff_t>(y) * stride + std::ptrdiff_t{x} * channels;
            const std::uint32_t alpha = channels == 4 ? pixel[3] : 255;
            image.pixels.push_back(alpha << 24U | premultiplied(pixel[0], alpha) << 16U |
                                   premultiplied(pixel[1], alpha) << 8U |
                                   premultiplied(pixel[2], alpha));
        }
    }
    return image;
}

ArgbImage readPixels(const std::string& content, int side) {
    const ObjectPtr<GdkPixbufLoader> loader(gdk_pixbuf_loader_new());
    g_signal_connect(loader.get(), "size-prepared", G_CALLBACK(boundSize), nullptr);
    const bool written =
        gdk_pixbuf_loader_write(loader.get(), reinterpret_cast<const std::uint8_t*>(content.data()),
                                content.size(), nullptr) != 0;
    const bool closed = gdk_pixbuf_loader_close(loader.get(), nullptr) != 0;
    GdkPixbuf* const pixbuf = gdk_pixbuf_loader_get_pixbuf(loader.get());
    if (!written || !closed || pixbuf == nullptr) {
        return {};
    }
    return fitted(imageOf(pixbuf), side);
}

// Only its shape counts.
void recolor(ArgbImage& image, const std::string& color) {
    constexpr int hexadecimal = 16;
    const auto value =
        static_cast<std::uint32_t>(std::strtoul(color.c_str() + 1, nullptr, hexadecimal));
    for (std::uint32_t& pixel : image.pixels) {
        const std::uint32_t alpha = pixel >> 24U;
        pixel = alpha << 24U | premultiplied((value >> 16U) & 0xFFU, alpha) << 16U |
                premultiplied((value >> 8U) & 0xFFU, alpha) << 8U |
                premultiplied(value & 0xFFU, alpha);
    }
}

} // namespace

ArgbImage readIconFile(const std::filesystem::path& path, const IconRequest& request) {
    const auto content = posix::readFile(path, byteLimit);
    if (!content) {
        return {};
    }
    const bool symbolic = isSymbolic(path);
    if (isDrawing(*content)) {
        return draw(*content, request, symbolic);
    }
    ArgbImage image = readPixels(*content, request.side);
    if (symbolic) {
        recolor(image, request.foreground);
    }
    return image;
}

} // namespace pelistra::menubar
