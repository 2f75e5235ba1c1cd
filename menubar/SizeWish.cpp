#include "menubar/SizeWish.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace pelistra::menubar {

namespace {

constexpr double greatestWidthInPoints = 10000;
constexpr std::uint32_t greatestXSize = 65535;

// WM_NORMAL_HINTS, section 4.1.2.3 of the ICCCM: 18 words, the first one the flags.
constexpr std::uint32_t minimumSizeFlag = 1U << 4U;
constexpr std::uint32_t baseSizeFlag = 1U << 8U;
constexpr std::size_t minimumSizeIndex = 5;
constexpr std::size_t baseSizeIndex = 15;

std::optional<PixelSize> sizeAt(std::span<const std::uint32_t> words, std::size_t index) {
    if (index + 1 >= words.size()) {
        return std::nullopt;
    }
    const auto bounded = [](std::uint32_t word) {
        // Negative numbers are as meaningless as a size of nothing.
        const bool negative = word > INT32_MAX;
        return negative ? 0 : static_cast<int>(std::min(word, greatestXSize));
    };
    return PixelSize{.width = bounded(words[index]), .height = bounded(words[index + 1])};
}

// The width of a picture taller than the bar once it is as tall as the bar.
int shrunk(const PixelSize& size, int barHeight) {
    return static_cast<int>(static_cast<std::int64_t>(size.width) * barHeight / size.height);
}

int widthOfHint(const PixelSize& size, int barHeight) {
    if (size.width <= 1) {
        // A toolkit's way of saying "no matter".
        return barHeight;
    }
    if (size.height > barHeight) {
        return shrunk(size, barHeight);
    }
    const bool fillsHeight = size.height == barHeight;
    return fillsHeight || size.width > barHeight ? size.width : barHeight;
}

int widthOfRequest(const PixelSize& size, int barHeight) {
    if (size.width > size.height) {
        return size.width;
    }
    return size.width == size.height ? barHeight : std::min(size.width, barHeight);
}

int widthOf(const SizeWish& wish, int barHeight) {
    switch (wish.source) {
    case WishSource::SizeHints:
        return wish.exact ? wish.size.width : widthOfHint(wish.size, barHeight);
    case WishSource::ResizeRequest:
        return wish.exact ? wish.size.width : widthOfRequest(wish.size, barHeight);
    case WishSource::None:
        break;
    }
    return barHeight;
}

} // namespace

std::optional<PixelSize> sizeFromHints(std::span<const std::uint32_t> words) {
    if (words.empty()) {
        return std::nullopt;
    }
    if ((words[0] & minimumSizeFlag) != 0) {
        return sizeAt(words, minimumSizeIndex);
    }
    if ((words[0] & baseSizeFlag) != 0) {
        return sizeAt(words, baseSizeIndex);
    }
    return std::nullopt;
}

int grantedWidth(const SizeWish& wish, const Metrics& metrics) {
    // No X window is wider than this either.
    const int most = std::min(metrics.pixels(greatestWidthInPoints), INT16_MAX);
    return std::clamp(widthOf(wish, metrics.barHeight()), 1, most);
}

} // namespace pelistra::menubar
