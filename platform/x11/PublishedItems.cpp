#include "platform/x11/PublishedItems.h"

#include <charconv>
#include <string_view>
#include <unordered_set>
#include <utility>

namespace pelistra::x11 {

namespace {

constexpr std::size_t textsOfItem = 4;
constexpr std::size_t numbersOfItem = 5;
constexpr std::size_t numbersOfOwnItem = 6;
// X has 16 bits for sizes and for the place in the parent, of which there are a few.
constexpr std::int64_t farthest = 1 << 20;
constexpr std::int64_t largest = UINT16_MAX;

std::string placeText(const PublishedItem& item) {
    return std::to_string(item.window) + " " + std::to_string(item.x) + " " +
           std::to_string(item.y) + " " + std::to_string(item.width) + " " +
           std::to_string(item.height) +
           (item.process ? std::string(" ").append(std::to_string(*item.process)) : "");
}

// The numbers of a text that consists of them, with a space between every two; none when it holds
// anything else or more than those of an item.
std::vector<std::int64_t> numbersIn(std::string_view text) {
    std::vector<std::int64_t> numbers;
    while (numbers.size() < numbersOfOwnItem) {
        const auto result =
            std::from_chars(text.data(), text.data() + text.size(), numbers.emplace_back());
        if (result.ec != std::errc()) {
            return {};
        }
        text.remove_prefix(static_cast<std::size_t>(result.ptr - text.data()));
        if (text.empty()) {
            return numbers;
        }
        if (text.front() != ' ') {
            return {};
        }
        text.remove_prefix(1);
    }
    return {};
}

std::optional<PublishedItem> placeIn(std::string_view text) {
    const std::vector<std::int64_t> numbers = numbersIn(text);
    if (numbers.size() < numbersOfItem) {
        return std::nullopt;
    }
    const auto isPlace = [](std::int64_t place) { return place >= -farthest && place <= farthest; };
    const auto isSize = [](std::int64_t size) { return size >= 0 && size <= largest; };
    if (numbers[0] <= 0 || numbers[0] > UINT32_MAX || !isPlace(numbers[1]) ||
        !isPlace(numbers[2]) || !isSize(numbers[3]) || !isSize(numbers[4])) {
        return std::nullopt;
    }
    PublishedItem item{.window = static_cast<xcb_window_t>(numbers[0]),
                       .x = static_cast<int>(numbers[1]),
                       .y = static_cast<int>(numbers[2]),
                       .width = static_cast<int>(numbers[3]),
                       .height = static_cast<int>(numbers[4]),
                       .title = {},
                       .instance = {},
                       .className = {},
                       .process = {}};
    if (numbers.size() == numbersOfOwnItem) {
        if (numbers.back() < 0 || numbers.back() > INT32_MAX) {
            return std::nullopt;
        }
        item.process = static_cast<std::int32_t>(numbers.back());
    }
    return item;
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
