#include "menubar/DockedItem.h"

#include <array>
#include <charconv>

namespace pelistra::menubar {

void DockedItem::noteHints(const std::optional<PixelSize>& size) {
    if (size == hintedSize) {
        return;
    }
    hintedSize = size;
    wish.source = size ? WishSource::SizeHints : WishSource::None;
    wish.size = size.value_or(PixelSize{});
}

std::string describe(const DockedItem& item) {
    return "'" + item.identity.instance + "' (window " + hexadecimal(item.client) + ")";
}

std::string hexadecimal(xcb_window_t window) {
    constexpr int base = 16;
    std::array<char, 8> digits{};
    const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), window, base);
    return "0x" + std::string(digits.data(), result.ptr);
}

} // namespace pelistra::menubar
