#include "menubar/notifier/Pixmaps.h"

#include "menubar/Fitting.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <span>
#include <utility>

namespace pelistra::menubar {

namespace {

constexpr std::size_t bytesPerPixel = 4;
constexpr int mostPixmaps = 64;
// Of one list: all sizes up to the largest.
constexpr std::size_t mostBytes = std::size_t{8} * longestPixmapSide * longestPixmapSide;

struct Pixmap {
    int width = 0;
    int height = 0;
    // The message's own.
    std::span<const std::uint8_t> bytes;

    [[nodiscard]] bool isValid() const {
        return width > 0 && height > 0 && width <= longestPixmapSide &&
               height <= longestPixmapSide &&
               bytes.size() == bytesPerPixel * static_cast<std::size_t>(width) *
                                   static_cast<std::size_t>(height);
    }
    [[nodiscard]] int side() const { return std::max(width, height); }
};

// The smallest that need not be enlarged is the sharpest; without one, the largest.
bool isBetter(const Pixmap& candidate, const Pixmap& best, int side) {
    if (!best.isValid()) {
        return true;
    }
    const bool isEnough = candidate.side() >= side;
    const bool bestIsEnough = best.side() >= side;
    if (isEnough != bestIsEnough) {
        return isEnough;
    }
    return isEnough ? candidate.side() < best.side() : candidate.side() > best.side();
}

std::uint32_t premultiplied(std::uint32_t part, std::uint32_t alpha) {
    constexpr std::uint32_t most = 255;
    return (part * alpha + most / 2) / most;
}

ArgbImage imageOf(const Pixmap& pixmap) {
    ArgbImage image{.width = pixmap.width, .height = pixmap.height, .pixels = {}};
    image.pixels.reserve(pixmap.bytes.size() / bytesPerPixel);
    for (std::size_t i = 0; i < pixmap.bytes.size(); i += bytesPerPixel) {
        const std::uint32_t alpha = pixmap.bytes[i];
        image.pixels.push_back(alpha << 24U | premultiplied(pixmap.bytes[i + 1], alpha) << 16U |
                               premultiplied(pixmap.bytes[i + 2], alpha) << 8U |
                               premultiplied(pixmap.bytes[i + 3], alpha));
    }
    return image;
}

// Reads one (iiay); false when it is none.
bool readPixmap(sd_bus_message& message, Pixmap& pixmap) {
    const void* data = nullptr;
    std::size_t size = 0;
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_STRUCT, "iiay") <= 0 ||
        sd_bus_message_read(&message, "ii", &pixmap.width, &pixmap.height) <= 0 ||
        sd_bus_message_read_array(&message, SD_BUS_TYPE_BYTE, &data, &size) < 0 ||
        sd_bus_message_exit_container(&message) < 0) {
        return false;
    }
    pixmap.bytes = {static_cast<const std::uint8_t*>(data), size};
    return true;
}

} // namespace

std::optional<ArgbImage> readPixmaps(sd_bus_message& message, int side) {
    if (sd_bus_message_enter_container(&message, SD_BUS_TYPE_ARRAY, "(iiay)") < 0) {
        return std::nullopt;
    }
    Pixmap best;
    std::size_t bytes = 0;
    for (int count = 0; sd_bus_message_at_end(&message, 0) == 0; ++count) {
        Pixmap pixmap;
        if (count == mostPixmaps || !readPixmap(message, pixmap)) {
            return std::nullopt;
        }
        bytes += pixmap.bytes.size();
        if (bytes > mostBytes) {
            return std::nullopt;
        }
        if (pixmap.isValid() && isBetter(pixmap, best, side)) {
            best = pixmap;
        }
    }
    if (sd_bus_message_exit_container(&message) < 0) {
        return std::nullopt;
    }
    return best.isValid() ? fitted(imageOf(best), side) : ArgbImage{};
}

} // namespace pelistra::menubar
