#include "menubar/menu/MenuRequest.h"

#include <charconv>
#include <vector>

namespace pelistra::menubar {

namespace {

constexpr std::size_t partCount = 8;

std::optional<int> numberIn(std::string_view text) {
    int number = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size()
               ? std::optional(number)
               : std::nullopt;
}

} // namespace

std::string MenuRequest::text() const {
    std::string result = service;
    for (const std::string& part :
         {item, menu, std::to_string(x), std::to_string(y), std::string(dark ? "dark" : "light"),
          iconTheme, iconThemePath}) {
        result.append(1, '\0').append(part);
    }
    return result;
}

std::optional<MenuRequest> MenuRequest::parse(std::string_view text) {
    std::vector<std::string> parts;
    for (bool more = true; more;) {
        const std::size_t end = text.find('\0');
        more = end != std::string_view::npos;
        parts.emplace_back(text.substr(0, end));
        text.remove_prefix(more ? end + 1 : text.size());
    }
    if (parts.size() != partCount) {
        return std::nullopt;
    }
    const auto x = numberIn(parts[3]);
    const auto y = numberIn(parts[4]);
    if (!x || !y) {
        return std::nullopt;
    }
    return MenuRequest{.service = parts[0],
                       .item = parts[1],
                       .menu = parts[2],
                       .x = *x,
                       .y = *y,
                       .dark = parts[5] == "dark",
                       .iconTheme = parts[6],
                       .iconThemePath = parts[7]};
}

} // namespace pelistra::menubar
