#include "platform/x11/PublishedItems.h"

#include <array>
#include <charconv>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace pelistra::x11 {

namespace {

constexpr std::size_t textsOfItem = 4;
constexpr std::size_t numbersOfItem = 5;
// X has 16 bits for sizes and for the place in the parent, of which there are a few.
constexpr std::int64_t farthest = 1 << 20;
constexpr std::int64_t largest = UINT16_MAX;

std::string placeText(const PublishedItem& item) {
    return std::to_string(item.window) + " " + std::to_string(item.x) + " " +
           std::to_string(item.y) + " " + std::to_string(item.width) + " " +
           std::to_string(item.height);
}

std::optional<std::array<std::int64_t, numbersOfItem>> numbersIn(std::string_view text) {
    std::array<std::int64_t, numbersOfItem> numbers{};
    for (std::int64_t& number : numbers) {
        const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
        if (result.ec != std::errc()) {
            return std::nullopt;
        }
        text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
        const bool isLast = &number == &numbers.back();
        if (text.empty() != isLast || (!isLast && text.front() != ' ')) {
            return std::nullopt;
        }
        text.remove_prefix(isLast ? 0 : 1);
    }
    return numbers;
}

std::optional<PublishedItem> placeIn(std::string_view text) {
    const auto numbers = numbersIn(text);
    if (!numbers) {
        return std::nullopt;
    }
    const auto [window, x, y, width, height] = *numbers;
    const auto isPlace = [](std::int64_t place) { return place >= -farthest && place <= farthest; };
    const auto isSize = [](std::int64_t size) { return size >= 0 && size <= largest; };
    if (window <= 0 || window > UINT32_MAX || !isPlace(x) || !isPlace(y) || !isSize(width) ||
        !isSize(height)) {
        return std::nullopt;
    }
    return PublishedItem{.window = static_cast<xcb_window_t>(window),
                         .x = static_cast<int>(x),
                         .y = static_cast<int>(y),
                         .width = static_cast<int>(width),
                         .height = static_cast<int>(height),
                         .title = {},
                         .instance = {},
                         .className = {}};
}

} // namespace

std::optional<std::string> publishedText(std::span<const PublishedItem> items) {
    std::string result;
    for (const PublishedItem& item : items) {
        result.append(placeText(item)).push_back('\0');
        for (const std::string* text : {&item.title, &item.instance, &item.className}) {
            result.append(*text).push_back('\0');
        }
    }
    return result.size() > publishedItemsByteLimit ? std::nullopt
                                                   : std::optional(std::move(result));
}

std::optional<std::vector<PublishedItem>> publishedItemsIn(const PropertyValue& property) {
    std::vector<std::string> texts = property.texts();
    if (property.format != bitsOfByte || texts.size() % textsOfItem != 0) {
        return std::nullopt;
    }
    std::vector<PublishedItem> items;
    items.reserve(texts.size() / textsOfItem);
    std::unordered_set<xcb_window_t> seen;
    for (std::size_t i = 0; i < texts.size(); i += textsOfItem) {
        auto item = placeIn(texts[i]);
        if (!item || !seen.insert(item->window).second) {
            return std::nullopt;
        }
        item->title = std::move(texts[i + 1]);
        item->instance = std::move(texts[i + 2]);
        item->className = std::move(texts[i + 3]);
        items.push_back(*std::move(item));
    }
    return items;
}

} // namespace pelistra::x11
